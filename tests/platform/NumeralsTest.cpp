#include "platform/Numerals.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include "platform/RunTimeError.h"
#include "twins/Seed.h"
#include "twins/TemporaryFolder.h"

namespace qrv {
namespace {

template <typename Action>
int codeOf(Action action) {
    try {
        static_cast<void>(action());
    } catch (const RunTimeError& error) {
        return error.code();
    }
    return 0;
}

constexpr int kOverflow = 6;
constexpr int kTypeMismatch = 13;

TEST(Numerals, TakesTheseTextsAsNumbers) {
    const std::pair<const char*, double> kTexts[] = {
        {"0", 0},
        {"704", 704},
        {" 12 ", 12},
        {"+5", 5},
        {"-5", -5},
        {"1e3", 1000},
        {"1E3", 1000},
        {"1d3", 1000},
        {"1D-2", 0.01},
        {"2.5", 2.5},
        {".5", 0.5},
        {"5.", 5},
        {"-.25e+1", -2.5},
        {"00012", 12},
        {"1e-400", 0},
        {"0e999", 0},
        {"0.1e-310", 0.1e-310},
        {"-0", 0},
        {"1e-99999999999999999999", 0},
        {"123456789012345", 123456789012345.0},
    };
    for (const auto& [text, value] : kTexts) {
        EXPECT_TRUE(isNumeric(text)) << text;
        EXPECT_EQ(numberFrom(text), value) << text;
        EXPECT_EQ(numberOrZero(text), value) << text;
    }
}

TEST(Numerals, RefusesTheseTexts) {
    for (const char* text : {"",      " ",        ".",    "+",    "-",     "e3",    "1e",    "1e+", "nan", "NAN", "inf",
                             "-inf",  "infinity", "0x10", "&H10", "1,000", "1 000", "1.2.3", "--5", "- 5", "5-",  "12a",
                             "1e2.5", "1e3e4",    "$5",   "5%",   "(5)",   "1_000", "\t5",   "5\n", "1p3"}) {
        EXPECT_FALSE(isNumeric(text)) << text;
        EXPECT_EQ(codeOf([&] { return numberFrom(text); }), kTypeMismatch) << text;
        EXPECT_EQ(numberOrZero(text), 0) << text;
    }
}

TEST(Numerals, RefusesAZeroByteInATextAsNumber) { EXPECT_FALSE(isNumeric(std::string_view("5\0", 2))); }

TEST(Numerals, RaisesOnATextBeyondEveryNumber) {
    for (const char* text : {"1e309", "-1e309", "0.1e400", "1e99999999999999999999", "10000e305"}) {
        EXPECT_TRUE(isNumeric(text));
        EXPECT_EQ(codeOf([&] { return numberFrom(text); }), kOverflow) << text;
    }
    EXPECT_EQ(codeOf([] { return numberFrom(std::string(400, '9')); }), kOverflow);
    EXPECT_EQ(numberFrom("0." + std::string(400, '0') + "1"), 0);
}

TEST(Numerals, RoundsHalvesToTheEvenNeighbour) {
    const std::pair<double, double> kRows[] = {{0.5, 0},   {1.5, 2},   {2.5, 2},        {3.5, 4},    {-0.5, 0},
                                               {-1.5, -2}, {-2.5, -2}, {2.4999, 2},     {2.5001, 3}, {1e10 + 0.5, 1e10},
                                               {-7.6, -8}, {0, 0},     {32766.5, 32766}};
    for (const auto& [value, whole] : kRows) EXPECT_EQ(roundedHalfEven(value), whole) << value;
    EXPECT_EQ(toInt16(2.5), 2);
    EXPECT_EQ(toInt32(-3.5), -4);
    EXPECT_EQ(toByte(0.5), 0);
}

TEST(Numerals, NarrowsWhatFits) {
    EXPECT_EQ(toInt16(32767.4), 32767);
    EXPECT_EQ(toInt16(-32768.5), -32768);
    EXPECT_EQ(toInt32(2147483647.0), 2147483647);
    EXPECT_EQ(toInt32(-2147483648.0), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(toByte(255.4), 255);
    EXPECT_EQ(toByte(-0.5), 0);
    EXPECT_EQ(toInt16(std::int64_t{-32768}), -32768);
    EXPECT_EQ(toInt16(32767U), 32767);
    EXPECT_EQ(toInt32(std::int64_t{2147483647}), 2147483647);
    EXPECT_EQ(toByte(255), 255);
    EXPECT_EQ(int16From(" 2.5 "), 2);
    EXPECT_EQ(int32From("-1e5"), -100000);
}

TEST(Numerals, NarrowsToASingleWhatIsOne) {
    EXPECT_EQ(toSingle(0.1), 0.1F);
    EXPECT_EQ(toSingle(-3.4028234663852886e38), -3.4028234663852886e38F);
    for (const double bad : {3.4028235e38, -1e39, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
        EXPECT_THROW(static_cast<void>(toSingle(bad)), RunTimeError) << bad;
    }
}

TEST(Numerals, RaisesWhereANumberDoesNotFit) {
    EXPECT_EQ(codeOf([] { return toInt16(32767.5); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toInt16(-32768.51); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toInt32(2147483647.5); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toInt32(-2147483649.0); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toByte(255.5); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toByte(-0.51); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toInt16(32768); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toInt16(65535U); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toInt32(4294967295U); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toByte(-1); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toByte(256); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toInt16(std::nan("")); }), kOverflow);
    EXPECT_EQ(codeOf([] { return toInt32(std::numeric_limits<double>::infinity()); }), kOverflow);
    EXPECT_EQ(codeOf([] { return int16From("99999"); }), kOverflow);
    EXPECT_EQ(codeOf([] { return int16From("x"); }), kTypeMismatch);
}

struct FormatRow {
    double value;
    int decimals;
    const char* text;
};

TEST(Numerals, FormatsByTheCountOfDecimals) {
    const FormatRow kRows[] = {
        {0, 0, "0"},
        {0, 1, "0.0"},
        {0, 4, "0.0000"},
        {12.35, 1, "12.4"},
        {12.45, 1, "12.5"},
        {0.5, 0, "1"},
        {1.5, 0, "2"},
        {2.5, 0, "3"},
        {-2.5, 0, "-3"},
        {-0.5, 0, "-1"},
        {0.05, 1, "0.1"},
        {0.049, 1, "0.0"},
        {-0.04, 1, "0.0"},
        {-0.05, 1, "-0.1"},
        {0.005, 2, "0.01"},
        {1.005, 2, "1.01"},
        {2.675, 2, "2.68"},
        {99.95, 1, "100.0"},
        {9.9999, 3, "10.000"},
        {999.5, 0, "1000"},
        {100, 2, "100.00"},
        {-20000, 4, "-20000.0000"},
        {0.0001, 4, "0.0001"},
        {0.00005, 4, "0.0001"},
        {0.00004, 4, "0.0000"},
        {123456.789, 2, "123456.79"},
        {0.1 + 0.2, 4, "0.3000"},
        {1e15, 0, "1000000000000000"},
        {0.95, 0, "1"},
        {0.3, 0, "0"},
        {5e-324, 2, "0.00"},
        {1e20, 1, "100000000000000000000.0"},
    };
    for (const FormatRow& row : kRows) EXPECT_EQ(formatNumber(row.value, row.decimals), row.text) << row.value;
    EXPECT_EQ(codeOf([] { return formatNumber(std::nan(""), 1); }), kOverflow);
}

TEST(Numerals, FormatsStoredCountsInWholeNumbers) {
    EXPECT_EQ(formatScaled(1235, 3, 2), "1.24");
    EXPECT_EQ(formatScaled(-1235, 3, 2), "-1.24");
    EXPECT_EQ(formatScaled(1234, 3, 2), "1.23");
    EXPECT_EQ(formatScaled(12350, 3, 1), "12.4");
    EXPECT_EQ(formatScaled(5, 3, 3), "0.005");
    EXPECT_EQ(formatScaled(5, 3, 2), "0.01");
    EXPECT_EQ(formatScaled(4, 3, 2), "0.00");
    EXPECT_EQ(formatScaled(-4, 3, 2), "0.00");
    EXPECT_EQ(formatScaled(0, 0, 0), "0");
    EXPECT_EQ(formatScaled(0, 3, 1), "0.0");
    EXPECT_EQ(formatScaled(7, 0, 3), "7.000");
    EXPECT_EQ(formatScaled(20000, 4, 4), "2.0000");
    EXPECT_EQ(formatScaled(-500, 2, 2), "-5.00");
    EXPECT_EQ(formatScaled(std::numeric_limits<std::int32_t>::min(), 3, 3), "-2147483.648");
    EXPECT_EQ(formatScaled(std::numeric_limits<std::int32_t>::max(), 0, 0), "2147483647");
    EXPECT_EQ(formatScaled(999950, 3, 1), "1000.0");
}

TEST(Numerals, JoinsNumbersWithoutBlanksOrNeedlessZeros) {
    const std::pair<double, const char*> kRows[] = {
        {200, "200"},
        {-0.5, "-0.5"},
        {0.001, "0.001"},
        {0, "0"},
        {-0.0, "0"},
        {12.50, "12.5"},
        {1e6, "1000000"},
        {0.1 + 0.2, "0.3"},
        {-20000, "-20000"},
        {0.00001, "0.00001"},
        {1.0 / 3, "0.333333333333333"},
        {2.0 / 3, "0.666666666666667"},
        {1e14, "100000000000000"},
        {123456789012345, "123456789012345"},
        {1e15, "1E+15"},
        {1.5e300, "1.5E+300"},
        {-1e-20, "-1E-20"},
    };
    for (const auto& [value, text] : kRows) EXPECT_EQ(joined(value), text);
    EXPECT_EQ(joined(std::int16_t{-32768}), "-32768");
    EXPECT_EQ(joined(std::uint8_t{65}), "65");
    EXPECT_EQ(joined(704), "704");
}

TEST(Numerals, PrintsNumbersWithABlankOnEitherSide) {
    EXPECT_EQ(printed(128), " 128 ");
    EXPECT_EQ(printed(-1), "-1 ");
    EXPECT_EQ(printed(0), " 0 ");
    EXPECT_EQ(printed(2.5), " 2.5 ");
    EXPECT_EQ(printed(std::int16_t{7}), " 7 ");
}

TEST(Numerals, GoesFromTextToNumberAndBackUnchanged) {
    const auto seed = seedOfRun();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937_64 random(seed);
    for (int round = 0; round < 20000; ++round) {
        const auto stored = static_cast<std::int32_t>(random());
        const int decimals = static_cast<int>(random() % 5);
        const std::string text = formatScaled(stored, decimals, decimals);
        ASSERT_EQ(toInt32(numberFrom(text) * std::pow(10.0, decimals)), stored) << text;
        ASSERT_EQ(formatNumber(numberFrom(text), decimals), text);
        ASSERT_EQ(numberFrom(joined(numberFrom(text))), numberFrom(text)) << text;
    }
}

/// A German locale, made for this test and in force while it lives.
class GermanLocale {
 public:
    GermanLocale() {
        const std::string command = "localedef -i de_DE -f UTF-8 '" + folder_.file("de_DE.UTF-8") + "' >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0) return;
        ::setenv("LOCPATH", folder_.path().c_str(), 1);
        isInForce_ = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    }
    ~GermanLocale() {
        std::setlocale(LC_ALL, "C");
        ::unsetenv("LOCPATH");
    }
    GermanLocale(const GermanLocale&) = delete;
    GermanLocale& operator=(const GermanLocale&) = delete;

    [[nodiscard]] bool isInForce() const { return isInForce_; }

 private:
    TemporaryFolder folder_;
    bool isInForce_ = false;
};

TEST(Numerals, NeverMindsTheLocale) {
    const GermanLocale german;
    ASSERT_TRUE(german.isInForce()) << "localedef makes no German locale: the package locales is missing";
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    EXPECT_EQ(formatNumber(1234.5, 2), "1234.50");
    EXPECT_EQ(joined(0.5), "0.5");
    EXPECT_EQ(numberFrom("0.5"), 0.5);
    EXPECT_FALSE(isNumeric("0,5"));
}

TEST(Numerals, TakesAnyBytesWithoutHarm) {
    const auto seed = seedOfRun();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const std::string letters = "0123456789.+-eEdD xn";
    for (int round = 0; round < 50000; ++round) {
        std::string text(random() % 10, '\0');
        for (char& c : text) c = letters[random() % letters.size()];
        const int code = codeOf([&] { return numberFrom(text); });
        ASSERT_EQ(code != kTypeMismatch, isNumeric(text)) << text;
    }
}

}  // namespace
}  // namespace qrv
