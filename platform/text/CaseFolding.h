// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace zel {
inline namespace v1 {

/// The character that stands for both cases of a letter; any other character stays as it is.
/// One character for one (Unicode's simple case folding): "ß" does not become "ss" here. Pure.
char32_t foldCase(char32_t character) noexcept;

} // namespace v1
} // namespace zel
