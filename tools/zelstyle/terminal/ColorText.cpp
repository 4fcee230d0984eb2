// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/terminal/ColorText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace zel::tool {
namespace {

std::uint8_t byteOf(double component) {
    const double held = component > 0 ? std::min(component, 1.0) : 0.0;
    return static_cast<std::uint8_t>(std::lround(held * 255));
}

void appendHex(std::string& text, std::uint8_t byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    text += digits[byte >> 4U];
    text += digits[byte & 0xFU];
}

} // namespace

ColorBytes bytesOf(const ZelRGBA& color) {
    return {byteOf(color.red), byteOf(color.green), byteOf(color.blue), byteOf(color.alpha)};
}

std::string hexOf(const ZelRGBA& color) {
    const ColorBytes bytes = bytesOf(color);
    std::string text = "#";
    for (const std::uint8_t byte : {bytes.red, bytes.green, bytes.blue, bytes.alpha}) {
        appendHex(text, byte);
    }
    return text;
}

std::string shortHexOf(const ZelRGBA& color) {
    std::string text = hexOf(color);
    if (bytesOf(color).alpha == 255) {
        text.resize(text.size() - 2);
    }
    return text;
}

std::optional<ZelRGBA> colorFromHex(std::string_view text) {
    unsigned value = 0;
    if (text.size() != 7 || text.front() != '#') {
        return std::nullopt;
    }
    const char* const end = text.data() + text.size();
    if (const auto read = std::from_chars(text.data() + 1, end, value, 16); read.ptr != end) {
        return std::nullopt;
    }
    const auto component = [value](unsigned shift) { return ((value >> shift) & 0xFFU) / 255.0; };
    return ZelRGBA{component(16), component(8), component(0), 1};
}

std::string swatchOf(const ZelRGBA& color, const ZelRGBA& background) {
    const auto over = [alpha = color.alpha](double top, double below) {
        return top * alpha + below * (1 - alpha);
    };
    const ColorBytes shown =
        bytesOf({over(color.red, background.red), over(color.green, background.green),
                 over(color.blue, background.blue), 1});
    std::string text = "\x1b[48;2;";
    text += std::to_string(shown.red) + ';' + std::to_string(shown.green) + ';' +
            std::to_string(shown.blue);
    return text + "m  \x1b[0m";
}

std::string padded(std::string_view text, std::size_t width) {
    std::string result(text);
    result.resize(std::max(width, text.size()), ' ');
    return result;
}

} // namespace zel::tool
