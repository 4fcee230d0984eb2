// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace zeltest {
namespace {

using nlohmann::json;

std::vector<json> deliveriesOf(const Outcome& outcome) {
    std::vector<json> deliveries;
    for (const std::string& line : linesOf(outcome.output)) {
        deliveries.push_back(json::parse(line));
    }
    return deliveries;
}

TEST(ToolWatch, EveryLineIsAJsonObjectOfItsOwn) {
    const Outcome outcome = User().run({"watch", "--source", "stdin", "--json"}, "dark\nlight\n");
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    const std::vector<json> deliveries = deliveriesOf(outcome);
    ASSERT_EQ(deliveries.size(), 8U + 7U + 7U);
    EXPECT_EQ(deliveries[0], json::parse(R"({
        "owner": "window", "event": 0, "eventName": "initial", "style": "main", "scheme": "light",
        "colours": {
            "backgroundColor": {"hex": "#FFFFFFFF", "srgb": [1, 1, 1, 1]},
            "labelColor": {"hex": "#000000FF", "srgb": [0, 0, 0, 1]},
            "accentColor": {"hex": "#007AFFFF", "srgb": [0, 0.47843137254901963, 1, 1]}}})"));
    EXPECT_EQ(deliveries[11], json::parse(R"({
        "owner": "card", "event": 1, "eventName": "changed", "style": "card", "scheme": "dark",
        "colours": {
            "backgroundColor": {"hex": "#1C1C1CFF",
                "srgb": [0.10980392156862745, 0.10980392156862745, 0.10980392156862745, 1]},
            "labelColor": {"hex": "#FFFFFFFF", "srgb": [1, 1, 1, 1]},
            "separatorColor": {"hex": "#007AFF40",
                "srgb": [0, 0.47843137254901963, 1, 0.25]}}})"));
}

TEST(ToolWatch, ADeliveryIsThereBeforeTheNextCommand) {
    const User user;
    Process watch(ZELSTYLE_COMMAND, {"watch", "--source", "stdin"}, user.surroundings());
    ASSERT_TRUE(watch.readUntil("statusIcon  initial"));
    watch.write("dark\n");
    ASSERT_TRUE(watch.readUntil("statusIcon  changed  main  dark "));
    watch.write("light\n");
    ASSERT_TRUE(watch.readUntil("statusIcon  changed  main  light"));
    EXPECT_EQ(watch.finish().code, 0);
}

TEST(ToolWatch, ATerminalGetsSwatchesUnlessNoColorIsSet) {
    const User user;
    const auto firstLine = [&](Variables variables, Arguments more) {
        Surroundings surroundings = user.surroundings(std::move(variables));
        surroundings.onTerminal = true;
        Arguments arguments{"watch", "--source", "stdin"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        Process watch(ZELSTYLE_COMMAND, arguments, surroundings);
        return watch.readLine().value_or("nothing");
    };
    // A terminal's lines end with a carriage return.
    const std::string plain = "window      initial  main  light  background #FFFFFF    "
                              "text #000000    accent #007AFF\r";
    const std::string colored = "window      initial  main  light  "
                                "\x1b[48;2;255;255;255m  \x1b[0m background #FFFFFF    "
                                "\x1b[48;2;0;0;0m  \x1b[0m text #000000    "
                                "\x1b[48;2;0;122;255m  \x1b[0m accent #007AFF\r";
    EXPECT_EQ(firstLine({}, {}), colored);
    EXPECT_EQ(firstLine({{"NO_COLOR", ""}}, {}), colored); // empty counts as not set
    EXPECT_EQ(firstLine({{"NO_COLOR", "1"}}, {}), plain);
    EXPECT_EQ(firstLine({{"TERM", "dumb"}}, {}), plain);
    EXPECT_EQ(firstLine({}, {"--color", "never"}), plain);
    EXPECT_EQ(firstLine({{"NO_COLOR", "1"}}, {"--color", "always"}), colored);
}

TEST(ToolWatch, APipeGetsNoSwatchesUnlessTheyAreAskedFor) {
    const User user;
    EXPECT_EQ(user.run({"watch", "--source", "stdin"}).output.find('\x1b'), std::string::npos);
    EXPECT_NE(user.run({"watch", "--source", "stdin", "--color", "always"}).output.find('\x1b'),
              std::string::npos);
}

TEST(ToolWatch, WithoutASessionBusItReadsStandardInputAndSaysSo) {
    const Outcome outcome = User().run({"watch"}, "dark\n");
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(linesWith(outcome.output, "window      changed  main  dark ").size(), 1U);
    EXPECT_EQ(linesOf(outcome.errors).size(), 1U);
    EXPECT_NE(outcome.errors.find("; reading commands from standard input ('help' lists them)\n"),
              std::string::npos)
        << outcome.errors;
}

} // namespace
} // namespace zeltest
