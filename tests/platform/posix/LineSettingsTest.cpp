#include "platform/posix/LineSettings.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

namespace qrv::test {
namespace {

struct ParityRow {
    const char* name;
    const char* settings;
    tcflag_t parity;  ///< of the control flags
    tcflag_t checks;  ///< of the input flags
};

class LineSettingsParity : public testing::TestWithParam<ParityRow> {};

TEST_P(LineSettingsParity, IsHonouredBothWays) {
    const auto settings = lineSettingsOf(GetParam().settings);
    ASSERT_TRUE(settings.has_value());
    const termios line = rawTermios(*settings);
    EXPECT_EQ(line.c_cflag & (PARENB | PARODD), GetParam().parity);
    // A byte of bad parity is kept and spoils the checksum: dropped, it would shift those behind it.
    EXPECT_EQ(line.c_iflag & (INPCK | IGNPAR | PARMRK), GetParam().checks);
}

INSTANTIATE_TEST_SUITE_P(Letters, LineSettingsParity,
                         testing::Values(ParityRow{"odd", "38400,O,8, 1", PARENB | PARODD, INPCK},
                                         ParityRow{"even", "38400,E,8, 1", PARENB, INPCK},
                                         ParityRow{"none", "38400,N,8, 1", 0, 0}),
                         [](const auto& row) { return row.param.name; });

TEST(LineSettings, ALineHasEightBitsOneStopBitAndNothingInItsWay) {
    const termios line = rawTermios(*lineSettingsOf("9600,O,8, 1"));
    EXPECT_EQ(line.c_cflag & (CSIZE | CSTOPB), static_cast<tcflag_t>(CS8));
    EXPECT_EQ(line.c_cflag & (CREAD | CLOCAL), static_cast<tcflag_t>(CREAD | CLOCAL));
    EXPECT_EQ(line.c_iflag & (ISTRIP | INLCR | IGNCR | ICRNL | IXON | IXOFF), 0U);
    EXPECT_EQ(line.c_oflag, 0U);
    EXPECT_EQ(line.c_lflag, 0U);
    EXPECT_EQ(cfgetispeed(&line), static_cast<speed_t>(B9600));
    EXPECT_EQ(cfgetospeed(&line), static_cast<speed_t>(B9600));
}

struct RateRow {
    const char* text;
    speed_t code;
};

TEST(LineSettings, KnowTheRatesOfTheList) {
    for (const RateRow& row :
         {RateRow{"38400", B38400}, RateRow{"19200", B19200}, RateRow{"9600", B9600}, RateRow{"4800", B4800},
          RateRow{"2400", B2400}, RateRow{"1200", B1200}, RateRow{"300", B300}}) {
        const auto settings = lineSettingsOf(std::string(row.text) + ",O,8, 1");
        ASSERT_TRUE(settings.has_value()) << row.text;
        const termios line = rawTermios(*settings);
        EXPECT_EQ(cfgetospeed(&line), row.code) << row.text;
    }
}

TEST(LineSettings, WhatIsNoLineIsRefused) {
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    EXPECT_FALSE(applyTo(nothing, *lineSettingsOf("9600,O,8, 1")));
    ::close(nothing);
}

}  // namespace
}  // namespace qrv::test
