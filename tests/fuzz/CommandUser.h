// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/fuzz/TemporaryFolder.h"

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace zelfuzz {

/// Whoever runs the command in this process: folders of their own, no session bus, no locale, and
/// the standard streams.
/// Owns: the folders, standard input and output, and what the C library calls `stderr`; the
/// descriptor of standard error stays as it was, for whoever reports what goes wrong.
class CommandUser {
public:
    CommandUser();
    CommandUser(const CommandUser&) = delete;
    CommandUser& operator=(const CommandUser&) = delete;
    ~CommandUser() = default;

    /// Empties the folders and the output, has the input hold these bytes, and moves into the
    /// folder to work in.
    void begin(std::string_view input) const;
    /// Goes back to where the process was, for whoever knows its files by relative paths.
    void end() const;

    [[nodiscard]] std::string errors() const;
    [[nodiscard]] std::size_t outputSize() const;
    /// The command writes its defaults, and files into the folder that it runs in: nothing else.
    void requireNothingElsewhere() const;

private:
    const TemporaryFolder folder_;
    const std::filesystem::path before_ = std::filesystem::current_path();
    const int input_;
    const int output_;
    char* errorsBegin_ = nullptr; // the stream's, which keeps both up to date
    std::size_t errorsSize_ = 0;
};

} // namespace zelfuzz
