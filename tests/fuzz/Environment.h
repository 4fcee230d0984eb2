// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

namespace zelfuzz {

/// An environment variable that is set over and over: its text stands here, since the C library
/// keeps every text that `setenv` is given for good. Lives for the process; not copied.
class Variable {
public:
    explicit Variable(std::string_view name) : name_(name) {
        text_[name.copy(text_.data(), longestName)] = '=';
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

    /// Up to the first NUL, or to what there is room for.
    void set(std::string_view value) {
        value = value.substr(0, std::min(value.find('\0'), text_.size() - name_.size() - 2));
        char* const begin = text_.data() + name_.size() + 1;
        begin[value.copy(begin, value.size())] = '\0';
        ::putenv(text_.data());
    }
    void unset() { ::unsetenv(name_.c_str()); }
    [[nodiscard]] std::string value() const {
        const char* const value = std::getenv(name_.c_str());
        return value != nullptr ? value : "";
    }

private:
    static constexpr std::size_t longestName = 64;

    const std::string name_;
    std::array<char, 4096> text_{};
};

} // namespace zelfuzz
