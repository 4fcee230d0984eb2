// SPDX-License-Identifier: Apache-2.0
// The user's defaults file, whatever bytes it holds. An input is the file's text and, behind a line
// "%%", writes, one in each line: a key, then s TEXT, u N, l N, d NUMBER or b N, or nothing to
// remove the key.
#include "platform/defaults/DefaultsText.h"
#include "tests/fuzz/DefaultsChecks.h"
#include "tests/fuzz/Script.h"
#include "tests/fuzz/TemporaryFolder.h"

#include <ZelStyleKit/NSProcessInfo.h>

#include <fstream>
#include <iterator>
#include <set>

namespace zelfuzz {
namespace {

std::vector<Write> writesOf(std::string_view text) {
    constexpr std::size_t most = 8;
    std::vector<Write> writes;
    for (Script script(text); writes.size() < most && script.nextLine();) {
        Write write{script.text(), std::nullopt};
        switch (script.letter()) {
        case 's':
            write.value = script.textToLineEnd();
            break;
        case 'u':
            write.value = zel::NSNumber::numberWithUnsignedLong(script.integer());
            break;
        case 'l':
            write.value =
                zel::NSNumber::numberWithLong(static_cast<std::int64_t>(script.integer()));
            break;
        case 'd':
            write.value = zel::NSNumber::numberWithDouble(script.number());
            break;
        case 'b':
            write.value = zel::NSNumber::numberWithBool(script.integer() % 2 != 0);
            break;
        default:
            break;
        }
        writes.push_back(std::move(write));
    }
    return writes;
}

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The same through the store and a real file.
void checkFile(std::string_view text, const std::vector<Write>& writes) {
    static const TemporaryFolder folder;
    const auto configuration = folder.emptied("config");
    ::setenv("XDG_CONFIG_HOME", configuration.c_str(), 1);
    zel::NSProcessInfo::setProcessName("fuzz");
    std::filesystem::create_directory(configuration / "fuzz");
    const auto path = configuration / "fuzz" / "defaults.conf";
    std::ofstream(path, std::ios::binary) << text;

    zel::NSUserDefaults defaults;
    std::string expected(text);
    for (const Write& write : writes) {
        for (const auto& [key, value] : zel::parseDefaultsText(expected)) {
            require(isSame(defaults.objectForKey(key), value), "an entry is read", key);
        }
        require(defaults.setObject(write.value, write.key), "a write succeeds", write.key);
        expected = zel::editDefaultsText(expected, write.key, write.value);
        require(bytesOf(path) == expected, "the file holds what was written", expected);
        require(isSame(zel::NSUserDefaults().objectForKey(write.key), write.value),
                "who reads the file afresh finds what was written", write.key);
    }
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(configuration / "fuzz")) {
        names.insert(entry.path().filename());
    }
    names.erase("defaults.conf");
    names.erase("defaults.conf.lock");
    require(names.empty(), "nothing else is left in the folder");
}

} // namespace
} // namespace zelfuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zelfuzz;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const TwoParts parts(input);
    const std::vector<Write> writes = writesOf(parts.second);
    checkEntries(parts.first);
    std::string text(parts.first);
    for (const Write& write : writes) {
        checkWrite(text, write);
        text = zel::editDefaultsText(text, write.key, write.value);
    }
    if (isOneOf(64, input)) {
        checkFile(parts.first, writes);
    }
    return 0;
}
