// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <set>

namespace zeltest {
namespace {

using nlohmann::json;

json schemesOf(const std::string& scheme) {
    const Outcome outcome = User().run({"palette", "--scheme", scheme, "--format", "json"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.errors, "");
    return json::parse(outcome.output).at("schemes");
}

json attribute(const json& scheme, const std::string& key) {
    for (const json& each : scheme.at("attributes")) {
        if (each.at("key") == key) {
            return each;
        }
    }
    return nullptr;
}

TEST(ToolPalette, JsonHasAllAttributesOnceInTheirGroups) {
    const json schemes = schemesOf("both");
    ASSERT_EQ(schemes.size(), 2U);
    EXPECT_EQ(schemes[0].at("scheme"), "light");
    EXPECT_EQ(schemes[1].at("scheme"), "dark");
    for (const json& scheme : schemes) {
        std::set<std::string> keys;
        std::map<std::string, int> groups;
        for (const json& each : scheme.at("attributes")) {
            keys.insert(each.at("key"));
            ++groups[each.at("group")];
        }
        EXPECT_EQ(keys.size(), 55U);
        EXPECT_EQ(groups, (std::map<std::string, int>{{"base", 22}, {"main", 33}}));
    }
}

TEST(ToolPalette, JsonGivesColoursAsDigitsAndAsSrgbNumbers) {
    const json schemes = schemesOf("both");
    EXPECT_EQ(attribute(schemes[0], "labelColorSecondary"),
              json::parse(R"({"key": "labelColorSecondary", "group": "main", "kind": "color",
                              "hex": "#3D3D3D99", "srgb": [0.24, 0.24, 0.24, 0.6]})"));
    EXPECT_EQ(attribute(schemes[1], "labelColorSecondary"),
              json::parse(R"({"key": "labelColorSecondary", "group": "main", "kind": "color",
                              "hex": "#EBEBEBF5", "srgb": [0.92, 0.92, 0.92, 0.96]})"));
    EXPECT_EQ(attribute(schemes[1], "accentColorSecondary").at("hex"), "#007AFF40");
}

TEST(ToolPalette, TheStyleTypeIsANumberAndTellsTheScheme) {
    EXPECT_EQ(
        attribute(schemesOf("light")[0], "styleType"),
        json::parse(R"({"key": "styleType", "group": "base", "kind": "number", "value": 1})"));
    EXPECT_EQ(attribute(schemesOf("dark")[0], "styleType").at("value"), 2);
    EXPECT_EQ(attribute(schemesOf("default")[0], "styleType").at("value"), 0);
}

TEST(ToolPalette, TheDefaultSchemeHasTheLightColours) {
    const json scheme = schemesOf("default").at(0);
    EXPECT_EQ(scheme.at("scheme"), "default");
    EXPECT_EQ(attribute(scheme, "backgroundColor").at("hex"), "#FFFFFFFF");
}

TEST(ToolPalette, TextPutsTheSchemesSideBySide) {
    const Outcome outcome = User().run({"palette"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(linesOf(outcome.output).size(), 57U); // 55 attributes under two headings
    EXPECT_EQ(linesOf(outcome.output).front(),
              "Base palette                            light       dark");
    EXPECT_EQ(linesWith(outcome.output, "  styleType").at(0),
              "  styleType                             1           2");
    EXPECT_EQ(linesWith(outcome.output, "  labelColorQuarternary").at(0),
              "  labelColorQuarternary                 #3D3D3D2E   #EBEBEB29");
    EXPECT_EQ(outcome.output.find('\x1b'), std::string::npos);
}

TEST(ToolPalette, SwatchesShowTranslucentColoursOnTheBackground) {
    const Outcome outcome = User().run({"palette", "--color", "always"});
    // A quarter of the accent colour on black.
    EXPECT_EQ(linesWith(outcome.output, "  accentColorSecondary").at(0),
              "  accentColorSecondary                  "
              "\x1b[48;2;217;235;255m  \x1b[0m #007AFF26   "
              "\x1b[48;2;0;31;64m  \x1b[0m #007AFF40");
}

TEST(ToolPalette, AFileGetsWhatStandardOutputGets) {
    const Folder folder;
    const std::string path = folder.path() + "/palette.txt";
    const Outcome outcome = User().run({"palette", "--output", path});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(contentOf(path), User().run({"palette"}).output);
}

TEST(ToolPalette, AFileThatCannotBeWrittenIsAFailure) {
    const Outcome missing = User().run({"palette", "--output", "/no/such/folder/palette.txt"});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.errors,
              "zelstyle: cannot write '/no/such/folder/palette.txt': No such file or directory\n");
    const Outcome full = User().run({"palette", "--output", "/dev/full"});
    EXPECT_EQ(full.code, 1);
    EXPECT_EQ(full.errors, "zelstyle: cannot write '/dev/full': No space left on device\n");
}

} // namespace
} // namespace zeltest
