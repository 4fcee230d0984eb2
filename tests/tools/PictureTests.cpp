// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <gtest/gtest.h>

namespace zeltest {
namespace {

std::size_t countOf(const std::string& text, std::string_view what) {
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) {
        ++count;
    }
    return count;
}

std::string pictureOf(const std::string& scheme) {
    const Outcome outcome = User().run({"palette", "--scheme", scheme, "--format", "svg"});
    EXPECT_EQ(outcome.code, 0);
    return outcome.output;
}

TEST(ToolPicture, ThePictureInTheDocumentationIsUpToDate) {
    const std::string picture = pictureOf("both");
    ASSERT_FALSE(picture.empty());
    EXPECT_TRUE(picture == contentOf(ZELSTYLE_SOURCE_DIR "/docs/palettes.svg"))
        << "make it anew: zelstyle palette --scheme both --format svg --output docs/palettes.svg";
}

TEST(ToolPicture, EveryAttributeHasALabelledSwatch) {
    const std::string picture = pictureOf("both");
    EXPECT_EQ(countOf(picture, "<text class=\"key\""), 55U);
    EXPECT_EQ(countOf(picture, "<g clip-path=\"url(#swatch)\">"), 55U);
    EXPECT_NE(picture.find(">overlayTableBackgroundSelectedColor</text>"), std::string::npos);
    EXPECT_NE(picture.find(">#E6E6E6 / #1B1B1B</text>"), std::string::npos);
    EXPECT_NE(picture.find(">#007AFF</text>"), std::string::npos); // the same in both
}

TEST(ToolPicture, TranslucentColoursLieOnAChequerboard) {
    // Clear, three labels, the secondary accent and two separators.
    EXPECT_EQ(countOf(pictureOf("light"), "fill=\"url(#under-light)\""), 7U);
    EXPECT_EQ(countOf(pictureOf("light"), "fill=\"url(#under-dark)\""), 0U);
    EXPECT_EQ(countOf(pictureOf("dark"), "fill=\"url(#under-dark)\""), 7U);
    EXPECT_EQ(countOf(pictureOf("dark"), "fill-opacity=\"0.96\""), 1U);
}

TEST(ToolPicture, ItsElementsAreWellNested) {
    const std::string picture = pictureOf("both");
    EXPECT_TRUE(picture.starts_with("<svg xmlns=\"http://www.w3.org/2000/svg\""));
    EXPECT_TRUE(picture.ends_with("</g>\n</svg>\n"));
    std::vector<std::string> open;
    for (std::size_t at = picture.find('<'); at != std::string::npos;
         at = picture.find('<', at + 1)) {
        const std::size_t end = picture.find('>', at);
        ASSERT_NE(end, std::string::npos);
        const std::string tag = picture.substr(at + 1, end - at - 1);
        const std::string name = tag.substr(0, tag.find_first_of(" >"));
        if (name.front() == '/') {
            ASSERT_FALSE(open.empty());
            ASSERT_EQ(open.back(), name.substr(1));
            open.pop_back();
        } else if (tag.back() != '/') {
            open.push_back(name);
        }
    }
    EXPECT_TRUE(open.empty());
}

} // namespace
} // namespace zeltest
