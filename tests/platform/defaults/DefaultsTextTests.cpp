// SPDX-License-Identifier: Apache-2.0
#include "platform/defaults/DefaultsText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zel_tests {
namespace {

using zel::editDefaultsText;
using zel::NSNumber;
using zel::NSUserDefaultsValue;
using zel::parseDefaultsText;

constexpr char byteOrderMark[] = "\xEF\xBB\xBF";

std::optional<NSUserDefaultsValue> valueIn(std::string_view text, std::string_view key = "k") {
    const auto entries = parseDefaultsText(text);
    const auto found = entries.find(key);
    return found == entries.end() ? std::nullopt : std::optional(found->second);
}

TEST(DefaultsText, HasOneReadableLineForEachEntry) {
    std::string text = editDefaultsText("", "style-manager-active-mode", "always-dark");
    text = editDefaultsText(text, "a key = with \"signs\"", NSNumber::numberWithBool(true));
    text = editDefaultsText(text, "", NSNumber::numberWithDouble(0.1));
    EXPECT_EQ(text, "style-manager-active-mode = \"always-dark\"\n"
                    "\"a key = with \\\"signs\\\"\" = true\n"
                    "\"\" = 0.1\n");
    EXPECT_EQ(valueIn(text, "style-manager-active-mode"), NSUserDefaultsValue("always-dark"));
    EXPECT_EQ(valueIn(text, "a key = with \"signs\""),
              NSUserDefaultsValue(NSNumber::numberWithBool(true)));
    EXPECT_EQ(valueIn(text, ""), NSUserDefaultsValue(NSNumber::numberWithDouble(0.1)));
}

struct Written {
    NSUserDefaultsValue value;
    const char* text;
};
class AValueInTheDefaultsText : public ::testing::TestWithParam<Written> {};

TEST_P(AValueInTheDefaultsText, IsWrittenAndReadExactly) {
    const std::string line = "k = " + std::string(GetParam().text) + '\n';
    EXPECT_EQ(editDefaultsText("", "k", GetParam().value), line);
    EXPECT_EQ(valueIn(line), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, AValueInTheDefaultsText,
    ::testing::Values(
        Written{NSNumber::numberWithUnsignedLong(5), "5u"},
        Written{NSNumber::numberWithLong(5), "5"}, Written{NSNumber::numberWithDouble(5), "5.0"},
        Written{NSNumber::numberWithBool(true), "true"},
        Written{NSNumber::numberWithBool(false), "false"},
        Written{NSNumber::numberWithUnsignedLong(UINT64_MAX), "18446744073709551615u"},
        Written{NSNumber::numberWithLong(INT64_MIN), "-9223372036854775808"},
        Written{NSNumber::numberWithLong(INT64_MAX), "9223372036854775807"},
        Written{NSNumber::numberWithDouble(1e22), "1e+22"},
        Written{NSNumber::numberWithDouble(-1.0 / 3), "-0.3333333333333333"},
        Written{NSNumber::numberWithDouble(std::numeric_limits<double>::denorm_min()), "5e-324"},
        Written{NSNumber::numberWithDouble(std::numeric_limits<double>::max()),
                "1.7976931348623157e+308"},
        Written{NSNumber::numberWithDouble(-std::numeric_limits<double>::infinity()), "-inf"},
        Written{"", R"("")"}, Written{"a\"b\\c\nd\re\tf", R"("a\"b\\c\nd\re\tf")"},
        Written{std::string("nul\0\x01\x7F", 6), R"("nul\x00\x01\x7F")"},
        Written{"Grüße 🎨", R"("Grüße 🎨")"},
        // A lone byte, an overlong form, a surrogate, a cut character, a value too large.
        Written{"\xFF \xC0\x80 \xED\xA0\x80 \xE2\x82 \xF4\x90\x80\x80",
                R"("\xFF \xC0\x80 \xED\xA0\x80 \xE2\x82 \xF4\x90\x80\x80")"}));

TEST(DefaultsText, KeepsTheSignOfZeroAndWhatIsNoNumber) {
    const auto zero = editDefaultsText("", "k", NSNumber::numberWithDouble(-0.0));
    EXPECT_EQ(zero, "k = -0.0\n");
    EXPECT_TRUE(std::signbit(std::get<NSNumber>(valueIn(zero).value()).doubleValue()));
    const auto nan = editDefaultsText("", "k", NSNumber::numberWithDouble(std::nan("")));
    EXPECT_TRUE(std::isnan(std::get<NSNumber>(valueIn(nan).value()).doubleValue()));
}

TEST(DefaultsText, CanBeWrittenByHand) {
    EXPECT_EQ(valueIn("k = \"x\"   # a remark"), NSUserDefaultsValue("x"));
    EXPECT_EQ(valueIn("k = 12# a remark"), NSUserDefaultsValue(NSNumber::numberWithLong(12)));
    EXPECT_EQ(valueIn("\t k = -7\t\r\n"), NSUserDefaultsValue(NSNumber::numberWithLong(-7)));
    EXPECT_EQ(valueIn("\"k\"=1.5e3"), NSUserDefaultsValue(NSNumber::numberWithDouble(1500)));
    EXPECT_EQ(valueIn("k = \"# no remark\""), NSUserDefaultsValue("# no remark"));
    EXPECT_EQ(valueIn("k = \"\\x4a\\x4B\""), NSUserDefaultsValue("JK"));
}

TEST(DefaultsText, TakesNoLineThatItDoesNotWhollyUnderstand) {
    for (const char* const value :
         {"", "word", "\"open", "\"a\" \"b\"", "\"\\q\"", "\"\\x4\"", "\"\\x+1\"", "1 2", "12x",
          "-1u", "+5", "0x10", "1e999", "18446744073709551616u", "True", "\"end\\", "\"\\x",
          "\"\\x4"}) {
        EXPECT_EQ(valueIn("k = " + std::string(value)), std::nullopt) << value;
    }
    for (const char* const line : {"k", "= \"v\"", "k k = 1", "#k = 1", "[k] = 1", "k : 1"}) {
        EXPECT_TRUE(parseDefaultsText(line).empty()) << line;
    }
}

struct Edit {
    std::string before;
    std::optional<NSUserDefaultsValue> value; ///< written under "k"
    std::string after;
};
class AWriteIntoADefaultsText : public ::testing::TestWithParam<Edit> {};

TEST_P(AWriteIntoADefaultsText, LeavesEveryOtherByte) {
    const Edit& edit = GetParam();
    EXPECT_EQ(editDefaultsText(edit.before, "k", edit.value), edit.after);
    EXPECT_EQ(valueIn(edit.after), edit.value);
}

const NSUserDefaultsValue nine = NSNumber::numberWithLong(9);
const std::string foreign = "# a comment\n\n[section]\n\xFF\xFE raw\nother = 1\n\"open\n";

INSTANTIATE_TEST_SUITE_P(
    Lines, AWriteIntoADefaultsText,
    ::testing::Values(
        Edit{foreign + "  k\t=  \"old\"  # mine\nend", "new",
             foreign + "  k\t=  \"new\"  # mine\nend"},
        Edit{foreign + "k = 1\nend", std::nullopt, foreign + "end"},
        Edit{foreign, nine, foreign + "k = 9\n"},
        Edit{"# no line end", nine, "# no line end\nk = 9\n"}, //
        Edit{"\n", nine, "\nk = 9\n"}, Edit{"l = 1\r\nm", nine, "l = 1\r\nm\r\nk = 9\r\n"},
        Edit{"l = 1\r\nm = 2\r", nine, "l = 1\r\nm = 2\r\nk = 9\r\n"}, // half a line end
        Edit{"k = 1\r\nl = 2\r\n", nine, "k = 9\r\nl = 2\r\n"},
        // The last line that can be understood counts, and all of them are removed.
        Edit{"k = 1\nk = 2\nk = damaged\n", nine, "k = 1\nk = 9\nk = damaged\n"},
        Edit{"k = 1\n# k\n\"k\" = 2\nk = damaged\nk = 3", std::nullopt, "# k\nk = damaged\n"},
        // A byte order mark is part of its line, and a second one damage.
        Edit{byteOrderMark + std::string("k = 1\n"), nine, byteOrderMark + std::string("k = 9\n")},
        Edit{std::string("l = 1\n") + byteOrderMark + "k = 1\n", std::nullopt, "l = 1\n"},
        Edit{std::string(byteOrderMark) + byteOrderMark + "k = 1\n", nine,
             std::string(byteOrderMark) + byteOrderMark + "k = 1\nk = 9\n"}));

TEST(DefaultsText, KeepsEntriesAmongGarbage) {
    std::string garbage;
    for (std::uint32_t i = 0, state = 12345; i < 200'000; ++i) {
        state = state * 1664525u + 1013904223u;
        garbage += static_cast<char>(state >> 24);
    }
    const std::string after = editDefaultsText(garbage, "my-key", "new");
    EXPECT_TRUE(after.starts_with(garbage));
    EXPECT_EQ(valueIn(after, "my-key"), NSUserDefaultsValue("new"));
}

} // namespace
} // namespace zel_tests
