// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <gtest/gtest.h>

#include <random>

namespace zeltest {
namespace {

constexpr std::size_t partCount = 8;

Outcome watch(std::string_view input) {
    return User().run({"watch", "--source", "stdin"}, input);
}

/// What was delivered beyond the first styles.
std::vector<std::string> changesOf(const Outcome& outcome) {
    std::vector<std::string> lines = linesOf(outcome.output);
    EXPECT_GE(lines.size(), partCount);
    lines.erase(lines.begin(), lines.begin() + partCount);
    return lines;
}

TEST(ToolInput, PinnedPartsKeepTheirScheme) {
    const Outcome outcome = watch("pin content dark\nunpin content\n");
    EXPECT_EQ(changesOf(outcome),
              (std::vector<std::string>{
                  "content     changed  main  dark   background #000000    text #FFFFFF    accent "
                  "#007AFF",
                  "card        changed  card  dark   background #1C1C1C    text #FFFFFF    border "
                  "#007AFF40",
                  "badge       changed  card  dark   background #007AFF40  text #007AFF    border "
                  "#007AFF40",
                  "content     changed  main  light  background #FFFFFF    text #000000    accent "
                  "#007AFF",
                  "card        changed  card  light  background #ECECEC    text #000000    border "
                  "#007AFF26",
                  "badge       changed  card  light  background #007AFF26  text #007AFF    border "
                  "#007AFF26"}));
}

TEST(ToolInput, AStyleReachesWhatIsBelowThePart) {
    const Outcome outcome = watch("style badge main\nunstyle badge\n");
    EXPECT_EQ(changesOf(outcome),
              (std::vector<std::string>{
                  "badge       changed  main  light  background #007AFF26  text #007AFF    border "
                  "#3D3D3D4D",
                  "badge       changed  card  light  background #007AFF26  text #007AFF    border "
                  "#007AFF26"}));
}

TEST(ToolInput, TheControllerHearsForItselfOnly) {
    const Outcome outcome = watch("pin controller dark\n");
    EXPECT_EQ(changesOf(outcome),
              std::vector<std::string>{"controller  changed  main  dark   background #000000    "
                                       "text #FFFFFF    accent #007AFF"});
}

TEST(ToolInput, ALineThatMakesNoSenseIsToldAndPassedOver) {
    const Outcome outcome = watch("sing\n"
                                  "pin sidebar purple\n"
                                  "pin nobody dark\n"
                                  "pin statusIcon dark\n"
                                  "style card fancy\n"
                                  "mode purple\n"
                                  "mode\n"
                                  "dark now\n"
                                  "accent orange\n"
                                  "accent #12345G\n"
                                  "Dark\n"
                                  "dark\n");
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(changesOf(outcome).size(), 7U); // the last line was understood
    const std::string parts =
        "there are: window, toolbar, content, sidebar, card, badge, controller";
    EXPECT_EQ(
        linesOf(outcome.errors),
        (std::vector<std::string>{
            "zelstyle: unknown command 'sing'; 'help' lists them",
            "zelstyle: unknown scheme 'purple'; known: light, dark, default",
            "zelstyle: no part 'nobody'; " + parts, "zelstyle: no part 'statusIcon'; " + parts,
            "zelstyle: unknown style 'fancy'; known: main, card",
            "zelstyle: unknown mode 'purple'; known: always-light, always-dark, follow-system",
            "zelstyle: usage: mode IDENTIFIER", "zelstyle: usage: dark",
            "zelstyle: 'orange' is no colour like #FF9500",
            "zelstyle: '#12345G' is no colour like #FF9500",
            "zelstyle: unknown command 'Dark'; 'help' lists them"}));
}

TEST(ToolInput, HelpListsTheCommandsWithoutDisturbingTheOutput) {
    const Outcome outcome = watch("help\n");
    EXPECT_EQ(linesOf(outcome.output).size(), partCount);
    for (const char* command :
         {"dark ", "light ", "mode IDENTIFIER ", "pin NAME SCHEME ", "unpin NAME ",
          "style NAME IDENTIFIER ", "unstyle NAME ", "accent #RRGGBB ", "help ", "quit "}) {
        EXPECT_EQ(linesWith(outcome.errors, std::string("zelstyle: ") + command).size(), 1U)
            << command;
    }
}

TEST(ToolInput, BlanksAndLineEndsOfEitherKindAreFine) {
    const Outcome outcome = watch("\r\n   \n\t\n  pin \t card   dark \r\n");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(changesOf(outcome).size(), 2U);
}

TEST(ToolInput, TheLastLineNeedsNoEnd) {
    const Outcome outcome = watch("dark");
    EXPECT_EQ(changesOf(outcome).size(), 7U);
}

TEST(ToolInput, NothingAfterQuitCounts) {
    const Outcome outcome = watch("quit\ndark\nsing\n");
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(linesOf(outcome.output).size(), partCount);
}

TEST(ToolInput, ALineThatIsFarTooLongIsOneMistake) {
    const Outcome outcome = watch(std::string(200'000, 'x') + "\ndark\n");
    EXPECT_EQ(outcome.errors, "zelstyle: a line of more than 1024 bytes is no command\n");
    EXPECT_EQ(changesOf(outcome).size(), 7U);
}

TEST(ToolInput, ControlCharactersDoNotReachTheTerminal) {
    const Outcome outcome = watch("\x1b[2Jx\n");
    EXPECT_EQ(outcome.errors, "zelstyle: unknown command '?[2Jx'; 'help' lists them\n");
}

/// Words of the language, words that are none, and bytes of all kinds.
std::string randomLines(unsigned seed) {
    constexpr const char* words[] = {
        "dark",    "light",  "mode",        "pin",           "unpin",   "style",
        "unstyle", "accent", "window",      "card",          "main",    "help",
        "\n",      "\n",     "always-dark", "follow-system", "#00FF00", "statusIcon"};
    std::mt19937 random(seed);
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        if (random() % 8 == 0) {
            for (auto left = random() % 40; left > 0; --left) {
                text += static_cast<char>(random() % 256);
            }
        } else {
            text += words[random() % std::size(words)];
        }
        text += random() % 3 == 0 ? '\n' : ' ';
    }
    return text;
}

TEST(ToolInput, NoInputKeepsItFromGoingOn) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        const Outcome outcome = watch(randomLines(seed) + "\nmode follow-system\nlight\n"
                                                          "unpin window\nunstyle window\n"
                                                          "accent #010203\n");
        EXPECT_EQ(outcome.code, 0) << seed;
        EXPECT_FALSE(linesWith(outcome.output, "window      changed  main  light  background "
                                               "#FFFFFF    text #000000    accent #010203")
                         .empty())
            << seed;
    }
}

} // namespace
} // namespace zeltest
