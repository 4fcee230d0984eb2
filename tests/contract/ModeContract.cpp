// SPDX-License-Identifier: Apache-2.0
// A mode that the user chose, across starts of the application.
#include "tests/contract/ContractFixture.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace {

using namespace zeltest;

/// Starts this program as an application, with a configuration folder of its own.
class ModeContract : public testing::Test {
protected:
    ModeContract() {
        std::string name = (std::filesystem::temp_directory_path() / "zel-mode-XXXXXX").string();
        if (!mkdtemp(name.data())) {
            throw std::runtime_error("no folder for the test");
        }
        folder = name;
    }
    ~ModeContract() override { std::filesystem::remove_all(folder); }

    /// What the application prints, started with these words after "--application".
    [[nodiscard]] std::string start(const std::string& mode = "") const {
        const std::string command = "XDG_CONFIG_HOME='" + folder.string() + "' '" + programPath() +
                                    "' --application " + mode;
        FILE* output = popen(command.c_str(), "r");
        if (!output) {
            return "not started";
        }
        std::string text;
        std::array<char, 64> part{};
        while (std::fgets(part.data(), static_cast<int>(part.size()), output)) {
            text += part.data();
        }
        return pclose(output) == 0 ? text : "failed: " + text;
    }

    std::filesystem::path folder;
};

TEST_F(ModeContract, AModeOnceChosenIsObeyedAtTheNextStart) {
    EXPECT_EQ(start(), "light\n");
    EXPECT_EQ(start("always-dark"), "dark\n");
    EXPECT_EQ(start(), "dark\n");
    EXPECT_EQ(start("follow-system"), "light\n");
    EXPECT_EQ(start(), "light\n");
}

} // namespace
