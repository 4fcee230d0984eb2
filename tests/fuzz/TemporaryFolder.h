// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/fuzz/Require.h"

#include <cstdlib>
#include <filesystem>
#include <string>

namespace zelfuzz {

/// A folder of the process's own for as long as it runs.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "zelfuzz-XXXXXX";
        require(::mkdtemp(pattern.data()) != nullptr, "a temporary folder can be made", pattern);
        path_ = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }
    /// A folder in it, made empty.
    [[nodiscard]] std::filesystem::path emptied(const char* name) const {
        const auto folder = path_ / name;
        std::filesystem::remove_all(folder);
        std::filesystem::create_directory(folder);
        return folder;
    }

private:
    std::filesystem::path path_;
};

} // namespace zelfuzz
