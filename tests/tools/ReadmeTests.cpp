// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zeltest {
namespace {

/// What stands between the first fence of C++ and its end.
std::string exampleInReadme() {
    const std::string readme = contentOf(ZELSTYLE_SOURCE_DIR "/README.md");
    const std::string fence = "```cpp\n";
    const std::size_t begin = readme.find(fence);
    const std::size_t end = readme.find("```", begin + fence.size());
    return begin == std::string::npos || end == std::string::npos
               ? std::string()
               : readme.substr(begin + fence.size(), end - begin - fence.size());
}

TEST(Readme, ItsExampleIsTheOneThatIsBuilt) {
    const std::string source =
        contentOf(ZELSTYLE_SOURCE_DIR "/examples/01-follow-the-appearance/main.cpp");
    const std::string license = "// SPDX-License-Identifier: Apache-2.0\n\n";
    ASSERT_TRUE(source.starts_with(license));
    EXPECT_EQ(exampleInReadme(), source.substr(license.size()));
}

TEST(Readme, ItsExampleIsShort) {
    const std::string example = exampleInReadme();
    ASSERT_FALSE(example.empty());
    EXPECT_LE(std::ranges::count(example, '\n'), 25);
}

TEST(Readme, ItsExamplePrintsWhatTheReadmeSays) {
    const User user;
    const Outcome outcome = Process(ZELSTYLE_EXAMPLE, {}, user.surroundings()).finish();
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.output, "light: label 0.0\ndark: label 1.0\nlight: label 0.0\n");

    const std::string readme = contentOf(ZELSTYLE_SOURCE_DIR "/README.md");
    for (const char* line : {"`light: label 0.0`", "`dark: label 1.0`"}) {
        EXPECT_NE(readme.find(line), std::string::npos) << line;
    }
}

TEST(Readme, TheFilesThatItLinksToAreThere) {
    std::string prose;
    bool isCode = false;
    for (const std::string& line : linesOf(contentOf(ZELSTYLE_SOURCE_DIR "/README.md"))) {
        isCode = isCode != line.starts_with("```");
        prose += isCode ? "" : line + '\n';
    }
    int links = 0;
    for (std::size_t at = prose.find("]("); at != std::string::npos;
         at = prose.find("](", at + 1)) {
        const std::string target = prose.substr(at + 2, prose.find(')', at) - at - 2);
        EXPECT_TRUE(exists(ZELSTYLE_SOURCE_DIR "/" + target)) << target;
        ++links;
    }
    EXPECT_GE(links, 5); // they were found
}

} // namespace
} // namespace zeltest
