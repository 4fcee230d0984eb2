// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleAttributes.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

namespace zeltest {
namespace {

struct Attribute {
    std::string key;
    std::string setter;
    std::string kind;
    std::string group;
};

/// The library's list.
std::vector<Attribute> attributes() {
    return {
#define ZELTEST_ATTRIBUTE(key, Key, Kind, group) {#key, "set" #Key, "NS" #Kind, #group},
        ZEL_STYLE_ATTRIBUTES(ZELTEST_ATTRIBUTE)
#undef ZELTEST_ATTRIBUTE
    };
}

std::string textOf(const std::string& header) {
    std::ifstream file(ZEL_SOURCE_DIR "/include/ZelStyleKit/" + header);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::ptrdiff_t countOf(const std::string& pattern, const std::string& text) {
    const std::regex expression(pattern);
    return std::distance(std::sregex_iterator(text.begin(), text.end(), expression), {});
}

/// A getter and its setter under a comment that begins with both selectors and goes on with words.
std::string declarationOf(const Attribute& attribute) {
    const std::string& key = attribute.key;
    const std::string type = "std::optional<" + attribute.kind + ">";
    return "    /// `" + key + "`, `" + attribute.setter + ":`\\.(?: |\n    /// )[A-Z][^\n]+\n" +
           "(?:    /// [^\n]+\n)*" +                                             //
           "    \\[\\[nodiscard\\]\\] " + type + " " + key + "\\(\\) const;\n" + //
           "    void " + attribute.setter + "\\(const " + type + "& value\\);\n";
}

/// Expects the header to declare each attribute of the group once, and nothing else of the kind.
void expectGroup(const std::string& header, const std::string& group, std::ptrdiff_t count) {
    const std::string text = textOf(header);
    for (const Attribute& each : attributes()) {
        EXPECT_EQ(countOf(declarationOf(each), text), each.group == group ? 1 : 0)
            << each.key << " in " << header;
    }
    EXPECT_EQ(countOf("> \\w+\\(\\) const;", text), count) << "reads in " << header;
    EXPECT_EQ(countOf("void set\\w+\\(", text), count) << "writes in " << header;
}

TEST(AccessorHeaderTests, EachBaseAttributeIsDeclaredOnceWithItsSelectorsAndItsUse) {
    expectGroup("ZelStyleBasePalette.h", "Base", 22);
}

TEST(AccessorHeaderTests, EachSemanticColourIsDeclaredOnceWithItsSelectorsAndItsUse) {
    expectGroup("ZelStyleSemanticColors.h", "Main", 33);
}

} // namespace
} // namespace zeltest
