// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <gtest/gtest.h>

namespace zeltest {
namespace {

/// The owners of the deliveries between one command and what follows it.
std::vector<std::string> ownersAfter(const std::string& transcript, const std::string& command) {
    std::vector<std::string> owners;
    const std::size_t at = transcript.find("\n> " + command + '\n');
    if (at == std::string::npos) {
        return {"the command is missing"};
    }
    for (const std::string& line : linesOf(transcript.substr(at + 4 + command.size()))) {
        if (line.empty()) {
            break;
        }
        owners.push_back(line.substr(0, line.find(' ')));
    }
    return owners;
}

using Owners = std::vector<std::string>;

TEST(ToolDemo, EndsByItselfAndSaysSo) {
    const Outcome outcome = User().run({"demo"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(linesOf(outcome.output).back(), "That was all. Nothing was stored.");
}

TEST(ToolDemo, EveryPartHearsOfItsFirstStyle) {
    const Outcome outcome = User().run({"demo"});
    const std::vector<std::string> lines = linesOf(outcome.output);
    const std::vector<std::string> expected{
        "The window opens on a light system. The sidebar is pinned to the dark scheme.",
        "window      initial  main  light  background #FFFFFF    text #000000    accent #007AFF",
        "toolbar     initial  main  light  background #F8F8F8    text #000000    tint #007AFF",
        "content     initial  main  light  background #FFFFFF    text #000000    accent #007AFF",
        "sidebar     initial  main  dark   background #181818    text #FFFFFF    accent #007AFF",
        "card        initial  card  light  background #ECECEC    text #000000    border #007AFF26",
        "badge       initial  card  light  background #007AFF26  text #007AFF    border #007AFF26",
        "controller  initial  main  light  background #FFFFFF    text #000000    accent #007AFF",
        "statusIcon  initial  main  light  background #FFFFFF    text #000000    accent #007AFF"};
    ASSERT_GT(lines.size(), 13U);
    EXPECT_EQ(std::vector<std::string>(lines.begin() + 4, lines.begin() + 13), expected);
}

TEST(ToolDemo, EachStepReachesThoseWhomItConcerns) {
    const std::string transcript = User().run({"demo"}).output;
    const Owners withoutCards{"window", "toolbar", "content", "controller", "statusIcon"};
    EXPECT_EQ(ownersAfter(transcript, "dark"), (Owners{"window", "toolbar", "content", "card",
                                                       "badge", "controller", "statusIcon"}));
    EXPECT_EQ(ownersAfter(transcript, "pin card light"), (Owners{"card", "badge"}));
    EXPECT_EQ(ownersAfter(transcript, "mode always-light"), withoutCards);
    EXPECT_EQ(ownersAfter(transcript, "mode follow-system"), withoutCards);
    EXPECT_EQ(ownersAfter(transcript, "light"), withoutCards);
    EXPECT_EQ(ownersAfter(transcript, "unpin card"), Owners{});
    EXPECT_EQ(ownersAfter(transcript, "accent #FF9500"),
              (Owners{"card", "badge", "window", "toolbar", "content", "card", "badge",
                      "controller", "statusIcon", "sidebar"}));
}

TEST(ToolDemo, TheColoursFollow) {
    const std::string transcript = User().run({"demo"}).output;
    EXPECT_NE(transcript.find("\ntoolbar     changed  main  dark   background #181818"),
              std::string::npos);
    EXPECT_NE(transcript.find("\ncard        changed  card  dark   background #1C1C1C"),
              std::string::npos);
    EXPECT_NE(transcript.find("\nbadge       changed  card  light  background #FF950026  text "
                              "#FF9500    border #FF950026\n"),
              std::string::npos);
}

TEST(ToolDemo, TouchesNeitherTheUsersFileNorTheUsersMode) {
    const User user;
    const std::string transcript = user.run({"demo"}).output;
    EXPECT_FALSE(exists(user.configFile()));

    ASSERT_EQ(user.run({"mode", "always-dark"}).code, 0);
    const std::string stored = contentOf(user.configFile());
    EXPECT_EQ(user.run({"demo"}).output, transcript);
    EXPECT_EQ(contentOf(user.configFile()), stored);
}

} // namespace
} // namespace zeltest
