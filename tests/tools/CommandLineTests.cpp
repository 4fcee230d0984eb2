// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <gtest/gtest.h>

#include <ostream>

namespace zeltest {
namespace {

/// Arguments that ask for what there is not, and the one line that says so.
struct Misuse {
    const char* name;
    Arguments arguments;
    std::string line;
};

void PrintTo(const Misuse& misuse, std::ostream* stream) {
    *stream << misuse.name;
}

class Misuses : public testing::TestWithParam<Misuse> {
protected:
    User user;
};

TEST_P(Misuses, EndWithCodeTwoAndOneLine) {
    const Outcome outcome = user.run(GetParam().arguments);
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, GetParam().line + '\n');
}

INSTANTIATE_TEST_SUITE_P(
    Tool, Misuses,
    testing::Values(
        Misuse{"Command",
               {"sing"},
               "zelstyle: unknown command 'sing'; known: watch, demo, mode, palette "
               "(see 'zelstyle --help')"},
        Misuse{"Option",
               {"--sing"},
               "zelstyle: The following argument was not expected: --sing (see 'zelstyle --help')"},
        Misuse{"Argument",
               {"watch", "loudly"},
               "zelstyle: The following argument was not expected: loudly (see 'zelstyle --help')"},
        Misuse{"Mode",
               {"mode", "always-purple"},
               "zelstyle: unknown mode 'always-purple'; known: always-light, always-dark, "
               "follow-system"},
        Misuse{"EmptyMode",
               {"mode", ""},
               "zelstyle: unknown mode ''; known: always-light, always-dark, follow-system"},
        Misuse{"ModeOfSeveralLines",
               {"mode", "a\nb\x1b[31m"},
               "zelstyle: unknown mode 'a?b?[31m'; known: always-light, always-dark, "
               "follow-system"},
        Misuse{"Scheme",
               {"palette", "--scheme", "purple"},
               "zelstyle: unknown scheme 'purple'; known: light, dark, default, both "
               "(see 'zelstyle --help')"},
        Misuse{"Format",
               {"palette", "--format", "gif"},
               "zelstyle: unknown format 'gif'; known: text, json, svg (see 'zelstyle --help')"},
        Misuse{"Source",
               {"watch", "--source", "radio"},
               "zelstyle: unknown source 'radio'; known: portal, stdin (see 'zelstyle --help')"},
        Misuse{"ColourChoice",
               {"demo", "--color", "blue"},
               "zelstyle: unknown colour choice 'blue'; known: auto, always, never "
               "(see 'zelstyle --help')"},
        Misuse{"Wait",
               {"watch", "--wait", "-1"},
               "zelstyle: --wait: Value -1 not in range 0 to 60000 (see 'zelstyle --help')"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(Tool, HelpNamesEveryCommand) {
    const Outcome outcome = User().run({"--help"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    for (const char* command : {"  watch ", "  demo ", "  mode ", "  palette "}) {
        EXPECT_NE(outcome.output.find(command), std::string::npos) << command;
    }
}

TEST(Tool, WithoutArgumentsItPrintsTheHelp) {
    const User user;
    const Outcome outcome = user.run({});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.output, user.run({"--help"}).output);
}

TEST(Tool, EachCommandHasAHelpOfItsOwn) {
    const Outcome outcome = User().run({"palette", "--help"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_NE(outcome.output.find("--format"), std::string::npos);
    EXPECT_EQ(outcome.output.find("--source"), std::string::npos);
}

TEST(Tool, TheVersionIsThatOfTheLibrary) {
    const Outcome outcome = User().run({"--version"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.output, "zelstyle 1.0.0\n");
}

TEST(Tool, AFullDiskIsAFailure) {
    const User user;
    for (const Arguments& arguments :
         {Arguments{"palette"}, Arguments{"mode"}, Arguments{"demo"}, Arguments{"--help"}}) {
        Surroundings surroundings = user.surroundings();
        surroundings.outputFile = "/dev/full";
        const Outcome outcome = Process(ZELSTYLE_COMMAND, arguments, surroundings).finish();
        EXPECT_EQ(outcome.code, 1) << arguments.front();
        EXPECT_EQ(outcome.errors,
                  "zelstyle: cannot write to standard output: No space left on device\n");
    }
}

} // namespace
} // namespace zeltest
