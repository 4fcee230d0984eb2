// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/Value.h"

#include <sstream>

namespace zeltest {

std::string valueOf(const WriteName& write) {
    const std::uint32_t mixed = (write.round * 31 + write.writer) * 31 + write.number * 97;
    return std::to_string(write.round) + ' ' + std::to_string(write.writer) + ' ' +
           std::to_string(write.number) + ' ' +
           std::string(mixed % 251, static_cast<char>('a' + mixed % 26));
}

std::optional<WriteName> writeOf(const std::string& value) {
    std::istringstream words(value);
    WriteName write;
    if (!(words >> write.round >> write.writer >> write.number) || valueOf(write) != value) {
        return std::nullopt;
    }
    return write;
}

} // namespace zeltest
