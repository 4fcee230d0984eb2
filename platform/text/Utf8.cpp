// SPDX-License-Identifier: Apache-2.0
#include "platform/text/Utf8.h"

namespace zel::inline v1 {
namespace {

/// What a lead byte announces: how long its character is, and the least value that needs so many
/// bytes. Length 0: no lead byte.
struct Lead {
    std::size_t length;
    char32_t bits;
    char32_t least;
};

Lead leadOf(unsigned char byte) noexcept {
    if (byte < 0x80) {
        return {1, byte, 0};
    }
    if (byte >= 0xC0 && byte < 0xE0) {
        return {2, byte & 0x1Fu, 0x80};
    }
    if (byte >= 0xE0 && byte < 0xF0) {
        return {3, byte & 0x0Fu, 0x800};
    }
    if (byte >= 0xF0 && byte < 0xF8) {
        return {4, byte & 0x07u, 0x10000};
    }
    return {0, 0, 0};
}

} // namespace

Utf8Step readUtf8(std::string_view text, std::size_t offset) noexcept {
    const auto first = static_cast<unsigned char>(text[offset]);
    const Utf8Step broken{first, 1, false};
    const Lead lead = leadOf(first);
    if (lead.length == 0 || lead.length > text.size() - offset) {
        return broken;
    }
    char32_t character = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[offset + i]);
        if ((byte & 0xC0u) != 0x80u) {
            return broken;
        }
        character = (character << 6) | (byte & 0x3Fu);
    }
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    if (character < lead.least || character > 0x10FFFF || surrogate) {
        return broken;
    }
    return {character, lead.length, true};
}

} // namespace zel::inline v1
