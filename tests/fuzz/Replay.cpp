// SPDX-License-Identifier: Apache-2.0
// Runs a fuzz target once on each file named, or in or below a folder named: what libFuzzer does
// with them too, for builds without it. Options of libFuzzer's are passed over.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <stdio.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesNamedBy(const std::filesystem::path& path) {
    if (!std::filesystem::is_directory(path)) {
        return {path};
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

bool replay(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open() || file.bad()) {
        ::dprintf(STDERR_FILENO, "cannot read '%s'\n", path.c_str());
        return false;
    }
    ::dprintf(STDERR_FILENO, "%s\n", path.filename().c_str()); // before whatever it breaks
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    (void)LLVMFuzzerTestOneInput(input.data(), input.size());
    return true;
}

} // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (const std::string_view argument : std::vector<std::string_view>(argv + 1, argv + argc)) {
        if (argument.starts_with('-')) {
            continue;
        }
        for (const auto& file : filesNamedBy(argument)) {
            if (!replay(file)) {
                return 2;
            }
            ++count;
        }
    }
    ::dprintf(STDERR_FILENO, "%zu inputs hold\n", count);
    return count > 0 ? 0 : 2;
}
