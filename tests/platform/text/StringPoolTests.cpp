// SPDX-License-Identifier: Apache-2.0
#include "platform/text/Identifier.h"
#include "platform/text/StringPool.h"
#include "platform/text/TextWords.h"
#include "tests/support/Watchdog.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using zel::PooledString;
using zel::StringPool;
using zel::TextWords;

TEST(StringPool, OneTextHasOneAddress) {
    StringPool pool;
    const PooledString* const red = pool.intern("red");
    EXPECT_EQ(red->text, "red");
    EXPECT_EQ(pool.intern(std::string("re") + "d"), red);
    EXPECT_EQ(pool.find("red"), red);
}

TEST(StringPool, DifferentTextsHaveDifferentAddresses) {
    StringPool pool;
    std::set<const PooledString*> found;
    for (const std::string_view text : {"", "r", "re", "red", "Red", "red ", "backgroundColor",
                                        "backgroundColor2", "backgroundColour"}) {
        found.insert(pool.intern(text));
    }
    EXPECT_EQ(found.size(), 9U);
}

TEST(StringPool, FindingAddsNothing) {
    StringPool pool;
    EXPECT_EQ(pool.find("red"), nullptr);
    EXPECT_EQ(pool.find("red"), nullptr);
    EXPECT_EQ(pool.intern("blue")->index, 0U);
}

TEST(StringPool, TextsThatDifferBehindAZeroByteAreDifferent) {
    StringPool pool;
    const PooledString* const first = pool.intern(std::string_view("a\0b", 3));
    EXPECT_NE(pool.intern(std::string_view("a\0c", 3)), first);
    EXPECT_NE(pool.intern("a"), first);
    EXPECT_NE(pool.intern(std::string_view("a\0", 2)), pool.intern("a"));
    EXPECT_EQ(first->text.size(), 3U);
}

TEST(StringPool, StringsAreNumberedInTheOrderInWhichTheyCame) {
    StringPool pool;
    EXPECT_EQ(pool.intern("red")->index, 0U);
    EXPECT_EQ(pool.intern("blue")->index, 1U);
    EXPECT_EQ(pool.intern("red")->index, 0U);
    EXPECT_EQ(pool.intern("")->index, 2U);
    EXPECT_EQ(pool.at(1).text, "blue");
    EXPECT_EQ(&pool.at(2), pool.find(""));
}

TEST(StringPool, AStringKeepsItsPlaceWhileThePoolGrows) {
    StringPool pool;
    std::vector<const PooledString*> strings;
    for (int i = 0; i < 5000; ++i) {
        strings.push_back(pool.intern("key" + std::to_string(i)));
    }
    for (std::size_t i = 0; i < 5000; ++i) {
        const std::string text = "key" + std::to_string(i);
        ASSERT_EQ(pool.find(text), strings[i]);
        ASSERT_EQ(strings[i]->text, text);
        ASSERT_EQ(&pool.at(static_cast<std::uint32_t>(i)), strings[i]);
    }
    EXPECT_EQ(pool.find("key5000"), nullptr);
}

TEST(StringPool, EqualTextsHashAlikeWhateverTheirLength) {
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string text(length, 'x');
        const std::string shifted = "_" + text; // the same bytes at another alignment
        EXPECT_EQ(TextWords::hashOf(text), TextWords::hashOf(std::string_view(shifted).substr(1)));
        EXPECT_NE(TextWords::hashOf(text), TextWords::hashOf(shifted));
    }
}

TEST(StringPool, ThreadsThatAddTheSameTextsAgreeOnTheirAddresses) {
    StringPool pool;
    constexpr std::size_t texts = 2000;
    std::vector<std::vector<const PooledString*>> found(4);
    std::vector<std::function<void()>> adding;
    for (auto& mine : found) {
        adding.emplace_back([&] {
            for (std::size_t i = 0; i < texts; ++i) {
                mine.push_back(pool.intern(std::to_string(i)));
            }
        });
    }
    zeltest::runAtOnce(adding);
    for (const auto& each : found) {
        EXPECT_EQ(each, found[0]);
    }
    EXPECT_EQ(std::set<const PooledString*>(found[0].begin(), found[0].end()).size(), 2000U);
    EXPECT_EQ(pool.intern("one more")->index, 2000U);
}

TEST(AtomicIdentifier, NilAndTheEmptyStringAreDifferent) {
    zel::AtomicIdentifier identifier;
    EXPECT_EQ(identifier.copy(), std::nullopt);
    identifier.store("");
    EXPECT_EQ(identifier.copy(), "");
    identifier.store("main");
    EXPECT_EQ(identifier.copy(), "main");
    identifier.store(std::nullopt);
    EXPECT_EQ(identifier.copy(), std::nullopt);
    EXPECT_FALSE(identifier.load());
}

TEST(AtomicIdentifier, AReaderSeesOneOfTheWrittenTextsAndNothingElse) {
    const std::string first(64, 'a');
    const std::string second(100, 'b');
    zel::AtomicIdentifier identifier;
    identifier.store(first);
    std::atomic<bool> done = false;
    std::atomic<int> torn = 0;
    zeltest::runAtOnce({[&] {
                            for (int i = 0; i < 20'000; ++i) {
                                identifier.store(i % 2 ? first : second);
                            }
                            done = true;
                        },
                        [&] {
                            while (!done) {
                                const auto read = identifier.copy();
                                torn += read != first && read != second;
                            }
                        }});
    EXPECT_EQ(torn, 0);
}

TEST(TextWords, TextsAreTheSameWhereEveryByteIs) {
    const std::string text = "a text of several words of eight bytes";
    EXPECT_TRUE(TextWords::isSame(text, std::string(text)));
    for (std::size_t at = 0; at < text.size(); ++at) {
        std::string other = text;
        other[at] = '#';
        EXPECT_FALSE(TextWords::isSame(text, other)) << at;
    }
    for (std::size_t size = 0; size < text.size(); ++size) {
        EXPECT_FALSE(TextWords::isSame(text, text.substr(0, size))) << size;
        EXPECT_TRUE(TextWords::isSame(text.substr(0, size), text.substr(0, size))) << size;
    }
}

} // namespace
