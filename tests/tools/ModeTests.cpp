// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <fstream>

namespace zeltest {
namespace {

constexpr const char* followSystemChosen = "  always-light   Light\n"
                                           "  always-dark    Dark\n"
                                           "* follow-system  Follow system appearance\n";
constexpr const char* alwaysDarkChosen = "  always-light   Light\n"
                                         "* always-dark    Dark\n"
                                         "  follow-system  Follow system appearance\n";

TEST(ToolMode, AUserWhoHasChosenNothingFollowsTheSystem) {
    const User user;
    const Outcome outcome = user.run({"mode"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.output, followSystemChosen);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_FALSE(exists(user.configFile()));
}

TEST(ToolMode, TheChoiceIsRememberedAcrossRuns) {
    const User user;
    const Outcome choosing = user.run({"mode", "always-dark"});
    EXPECT_EQ(choosing.code, 0);
    EXPECT_EQ(choosing.output, alwaysDarkChosen);
    EXPECT_TRUE(exists(user.configFile()));
    EXPECT_EQ(user.run({"mode"}).output, alwaysDarkChosen);
    EXPECT_EQ(User().run({"mode"}).output, followSystemChosen);
}

TEST(ToolMode, WatchBeginsInTheModeThatWasChosen) {
    const User user;
    ASSERT_EQ(user.run({"mode", "always-dark"}).code, 0);
    const Outcome outcome = user.run({"watch", "--source", "stdin"}, "light\n");
    EXPECT_EQ(linesWith(outcome.output, "window "),
              std::vector<std::string>{"window      initial  main  dark   background #000000    "
                                       "text #FFFFFF    accent #007AFF"});
    EXPECT_EQ(outcome.errors, "zelstyle: the mode is always-dark; what the system looks like "
                              "counts again in follow-system\n");
}

TEST(ToolMode, AModeChosenDuringWatchIsRemembered) {
    const User user;
    ASSERT_EQ(user.run({"watch", "--source", "stdin"}, "mode always-dark\n").code, 0);
    EXPECT_EQ(user.run({"mode"}).output, alwaysDarkChosen);
}

TEST(ToolMode, AnUnknownModeStoresNothing) {
    const User user;
    ASSERT_EQ(user.run({"mode", "always-dark"}).code, 0);
    EXPECT_EQ(user.run({"mode", "always-purple"}).code, 2);
    EXPECT_EQ(user.run({"mode"}).output, alwaysDarkChosen);

    const User newcomer;
    EXPECT_EQ(newcomer.run({"mode", "always-purple"}).code, 2);
    EXPECT_FALSE(exists(newcomer.configFile()));
}

TEST(ToolMode, AChoiceThatCannotBeStoredIsAFailure) {
    const User user;
    // A file stands where the folder would be.
    std::ofstream(user.folder() + "/zelstyle") << "in the way";
    const Outcome outcome = user.run({"mode", "always-dark"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "zelstyle: the mode could not be stored in the user defaults; is "
                              "$XDG_CONFIG_HOME/zelstyle (or ~/.config/zelstyle) writable?\n");
}

TEST(ToolMode, TheListAsJsonMarksTheChosenMode) {
    const User user;
    ASSERT_EQ(user.run({"mode", "always-light"}).code, 0);
    const auto document = nlohmann::json::parse(user.run({"mode", "--json"}).output);
    const auto expected = nlohmann::json::parse(R"({"modes": [
        {"identifier": "always-light", "name": "Light", "rank": 0, "chosen": true},
        {"identifier": "always-dark", "name": "Dark", "rank": 10, "chosen": false},
        {"identifier": "follow-system", "name": "Follow system appearance", "rank": 100,
         "chosen": false}]})");
    EXPECT_EQ(document, expected);
}

TEST(ToolMode, TheNamesAreInTheUsersLanguage) {
    const Outcome outcome = User().run({"mode"}, {}, {{"LANG", "de_DE.UTF-8"}});
    EXPECT_EQ(linesOf(outcome.output).at(0), "  always-light   Hell");
    EXPECT_EQ(linesOf(outcome.output).at(1), "  always-dark    Dunkel");
}

} // namespace
} // namespace zeltest
