// SPDX-License-Identifier: Apache-2.0
#include "UserDefaultsTestsFolder.h"

#include <cmath>
#include <limits>

namespace zel_tests {
namespace {

using zel::NSNumber;
using zel::NSUserDefaults;
using zel::NSUserDefaultsValue;

struct DefaultsFileFormat : UserDefaultsFolder {
    /// Writes the value into a fresh file, and answers the file's text.
    std::string written(const NSUserDefaultsValue& value) {
        std::filesystem::remove(file());
        EXPECT_TRUE(NSUserDefaults().setObject(value, "k"));
        EXPECT_EQ(NSUserDefaults().objectForKey("k"), value);
        return text().value_or("(no file)");
    }
    /// What is read of a file that holds nothing but one line with this value.
    std::optional<NSUserDefaultsValue> read(std::string_view value) {
        write("k = " + std::string(value) + "\n");
        return NSUserDefaults().objectForKey("k");
    }
};

TEST_F(DefaultsFileFormat, HoldsOneReadableLineForEachEntry) {
    NSUserDefaults defaults;
    EXPECT_TRUE(defaults.setObject("always-dark", "style-manager-active-mode"));
    EXPECT_TRUE(defaults.setObject(NSNumber::numberWithBool(true), "a key = with \"signs\""));
    EXPECT_TRUE(defaults.setObject(NSNumber::numberWithDouble(0.1), ""));
    EXPECT_EQ(text(), "style-manager-active-mode = \"always-dark\"\n"
                      "\"a key = with \\\"signs\\\"\" = true\n"
                      "\"\" = 0.1\n");
    EXPECT_EQ(defaults.objectForKey("a key = with \"signs\""),
              NSUserDefaultsValue(NSNumber::numberWithBool(true)));
    EXPECT_EQ(defaults.objectForKey(""), NSUserDefaultsValue(NSNumber::numberWithDouble(0.1)));
}

TEST_F(DefaultsFileFormat, KeepsTheKindOfEachNumber) {
    EXPECT_EQ(written(NSNumber::numberWithUnsignedLong(5)), "k = 5u\n");
    EXPECT_EQ(written(NSNumber::numberWithLong(5)), "k = 5\n");
    EXPECT_EQ(written(NSNumber::numberWithDouble(5)), "k = 5.0\n");
    EXPECT_EQ(written(NSNumber::numberWithBool(true)), "k = true\n");
    EXPECT_EQ(written(NSNumber::numberWithBool(false)), "k = false\n");
}

TEST_F(DefaultsFileFormat, KeepsNumbersAtTheEndsOfTheirRanges) {
    EXPECT_EQ(written(NSNumber::numberWithUnsignedLong(UINT64_MAX)), "k = 18446744073709551615u\n");
    EXPECT_EQ(written(NSNumber::numberWithLong(INT64_MIN)), "k = -9223372036854775808\n");
    EXPECT_EQ(written(NSNumber::numberWithLong(INT64_MAX)), "k = 9223372036854775807\n");
}

TEST_F(DefaultsFileFormat, KeepsEveryDoubleExactly) {
    using Limits = std::numeric_limits<double>;
    for (const double number :
         {0.1, 1.0 / 3, -1e300, 123456789.0, 1e22, Limits::max(), Limits::min(),
          Limits::denorm_min(), Limits::epsilon(), Limits::infinity(), -Limits::infinity()}) {
        written(NSNumber::numberWithDouble(number));
    }
    EXPECT_EQ(written(NSNumber::numberWithDouble(-0.0)), "k = -0.0\n");
    const auto zero = NSUserDefaults().objectForKey("k");
    EXPECT_TRUE(zero && std::signbit(std::get<NSNumber>(*zero).doubleValue()));
    EXPECT_TRUE(NSUserDefaults().setObject(NSNumber::numberWithDouble(std::nan("")), "k"));
    const auto nan = NSUserDefaults().objectForKey("k");
    EXPECT_TRUE(nan && std::isnan(std::get<NSNumber>(*nan).doubleValue()));
}

TEST_F(DefaultsFileFormat, EscapesWhatWouldBreakALine) {
    EXPECT_EQ(written("a\"b\\c\nd\re\tf"), "k = \"a\\\"b\\\\c\\nd\\re\\tf\"\n");
    EXPECT_EQ(written(std::string("nul\0\x01\x7F", 6)), "k = \"nul\\x00\\x01\\x7F\"\n");
    EXPECT_EQ(written("Grüße 🎨"), "k = \"Grüße 🎨\"\n");
    EXPECT_EQ(written(""), "k = \"\"\n");
}

TEST_F(DefaultsFileFormat, StaysTextWhateverBytesAStringHolds) {
    // A lone byte, an overlong form, a surrogate, a cut character, a value too large.
    EXPECT_EQ(written("\xFF \xC0\x80 \xED\xA0\x80 \xE2\x82 \xF4\x90\x80\x80"),
              "k = \"\\xFF \\xC0\\x80 \\xED\\xA0\\x80 \\xE2\\x82 \\xF4\\x90\\x80\\x80\"\n");
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    written(all + all);
    EXPECT_TRUE(NSUserDefaults().setObject("value", all));
    EXPECT_EQ(storedString(all), "value");
}

TEST_F(DefaultsFileFormat, CanBeWrittenByHand) {
    EXPECT_EQ(read("\"x\"   # a remark"), NSUserDefaultsValue("x"));
    EXPECT_EQ(read("12# a remark"), NSUserDefaultsValue(NSNumber::numberWithLong(12)));
    EXPECT_EQ(read("-7\t"), NSUserDefaultsValue(NSNumber::numberWithLong(-7)));
    EXPECT_EQ(read("1.5e3"), NSUserDefaultsValue(NSNumber::numberWithDouble(1500)));
    EXPECT_EQ(read("\"# no remark\""), NSUserDefaultsValue("# no remark"));
    write("\xEF\xBB\xBFk=\"first\"\r\n\t \"l\"\t=  true");
    EXPECT_EQ(storedString("k"), "first");
    EXPECT_EQ(NSUserDefaults().objectForKey("l"),
              NSUserDefaultsValue(NSNumber::numberWithBool(true)));
}

TEST_F(DefaultsFileFormat, ALineMeansTheSameWhateverIsRemovedBeforeIt) {
    const NSUserDefaultsValue two = NSNumber::numberWithLong(2);
    for (const std::string& mark : {std::string(), std::string("\xEF\xBB\xBF")}) {
        write(mark + "k = 1\n\xEF\xBB\xBFl = 2\n");
        EXPECT_EQ(NSUserDefaults().objectForKey("l"), two);
        EXPECT_TRUE(NSUserDefaults().setObject(std::nullopt, "k"));
        EXPECT_EQ(text(), mark + "\xEF\xBB\xBFl = 2\n");
        EXPECT_EQ(NSUserDefaults().objectForKey("l"), two);
    }
}

TEST_F(DefaultsFileFormat, TakesNoLineThatItDoesNotWhollyUnderstand) {
    for (const char* const value :
         {"", "word", "\"open", "\"a\" \"b\"", "\"\\q\"", "\"\\x4\"", "\"\\x+1\"", "1 2", "12x",
          "-1u", "+5", "0x10", "1e999", "18446744073709551616u", "True", "\"end\\", "\"\\x",
          "\"\\x4"}) {
        EXPECT_EQ(read(value), std::nullopt) << value;
    }
    for (const char* const line : {"k", "= \"v\"", "k k = 1", "#k = 1", "[k] = 1", "k : 1"}) {
        write(line);
        EXPECT_EQ(storedString("k"), "(none)") << line;
    }
}

TEST_F(DefaultsFileFormat, AWriteTouchesNothingButTheValueOfItsLine) {
    write("# a comment\n\n  k\t=  \"old\"  # mine\n[section]\n\xFF\xFE raw\nother = 1\nend");
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(text(),
              "# a comment\n\n  k\t=  \"new\"  # mine\n[section]\n\xFF\xFE raw\nother = 1\nend");
    EXPECT_TRUE(NSUserDefaults().setObject(NSNumber::numberWithLong(3), "k"));
    EXPECT_EQ(text(), "# a comment\n\n  k\t=  3  # mine\n[section]\n\xFF\xFE raw\nother = 1\nend");
}

TEST_F(DefaultsFileFormat, ANewEntryStandsBehindAnUnfinishedLastLine) {
    write("# no line end");
    EXPECT_TRUE(NSUserDefaults().setObject("v", "k"));
    EXPECT_EQ(text(), "# no line end\nk = \"v\"\n");
}

TEST_F(DefaultsFileFormat, ANewEntryStandsBehindAnEmptyFirstLine) {
    write("\n");
    EXPECT_TRUE(NSUserDefaults().setObject("v", "k"));
    EXPECT_EQ(text(), "\nk = \"v\"\n");
}

TEST_F(DefaultsFileFormat, ANewEntryCompletesHalfALineEnd) {
    write("k = 1\r\nl = 2\r");
    EXPECT_TRUE(NSUserDefaults().setObject("x", "m"));
    EXPECT_EQ(text(), "k = 1\r\nl = 2\r\nm = \"x\"\r\n");
    EXPECT_EQ(NSUserDefaults().objectForKey("l"), NSUserDefaultsValue(NSNumber::numberWithLong(2)));
}

TEST_F(DefaultsFileFormat, KeepsAndContinuesWindowsLineEnds) {
    write("one = 1\r\ntwo = 2\r\nthree");
    EXPECT_TRUE(NSUserDefaults().setObject(NSNumber::numberWithLong(9), "one"));
    EXPECT_TRUE(NSUserDefaults().setObject(NSNumber::numberWithLong(4), "four"));
    EXPECT_EQ(text(), "one = 9\r\ntwo = 2\r\nthree\r\nfour = 4\r\n");
    EXPECT_TRUE(NSUserDefaults().setObject(std::nullopt, "two"));
    EXPECT_EQ(text(), "one = 9\r\nthree\r\nfour = 4\r\n");
}

TEST_F(DefaultsFileFormat, TheLastLineOfAKeyCounts) {
    write("k = \"first\"\nk = \"last\"\nk = damaged\n");
    EXPECT_EQ(storedString("k"), "last");
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(text(), "k = \"first\"\nk = \"new\"\nk = damaged\n");
    EXPECT_EQ(storedString("k"), "new");
}

TEST_F(DefaultsFileFormat, ARemovalTakesEveryLineOfTheKeyThatHeldAValue) {
    write("k = \"first\"\n# k\nother = 1\n\"k\" = 2\nk = damaged\nk = 3");
    EXPECT_TRUE(NSUserDefaults().setObject(std::nullopt, "k"));
    EXPECT_EQ(text(), "# k\nother = 1\nk = damaged\n");
    EXPECT_EQ(storedString("k"), "(none)");
}

TEST_F(DefaultsFileFormat, ARemovalOfWhatIsNotThereMakesNoFile) {
    EXPECT_TRUE(NSUserDefaults().setObject(std::nullopt, "k"));
    EXPECT_FALSE(std::filesystem::exists(folder + "/Painter"));
}

} // namespace
} // namespace zel_tests
