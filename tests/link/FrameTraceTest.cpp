// The lines of a trace, word for word.
#include "link/FrameTrace.h"

#include <gtest/gtest.h>

#include "ScriptedLine.h"

namespace qrv::test {
namespace {

using namespace std::chrono_literals;

struct TraceRig {
    FalseClock clock;
    std::vector<std::string> lines;
    FrameTrace trace{clock, [this](const std::string& line) { lines.push_back(line); }};
};

TEST(FrameTrace, TellsWhatARequestAsks) {
    TraceRig rig;
    rig.trace.sent(Bytes{0x04, 0x03, 0x80, 0x01, 0x00, 0xFF, 0x77}, 1);
    EXPECT_EQ(rig.lines, std::vector<std::string>{"0.000000 > read section 3 (constants and strings) offset 256 count "
                                                  "128, 7 bytes: 04 03 80 01 00 FF 77"});
}

TEST(FrameTrace, CountsTheRepeats) {
    TraceRig rig;
    rig.clock.sleep(1800ms);
    rig.trace.sent(Bytes{0x01, 0xFF, 0xFE}, 2);
    EXPECT_EQ(rig.lines, std::vector<std::string>{"1.800000 > poll, retry 1, 3 bytes: 01 FF FE"});
}

struct VerdictRow {
    const char* name;
    Bytes reply;
    Verdict verdict;
    const char* line;
};

class FrameTraceVerdictTest : public testing::TestWithParam<VerdictRow> {};

TEST_P(FrameTraceVerdictTest, HasItsWords) {
    TraceRig rig;
    rig.clock.sleep(61'234ms);
    rig.trace.received(GetParam().reply, GetParam().verdict);
    EXPECT_EQ(rig.lines, std::vector<std::string>{std::string("61.234000 < ") + GetParam().line});
}

INSTANTIATE_TEST_SUITE_P(
    Verdicts, FrameTraceVerdictTest,
    testing::Values(
        VerdictRow{"good", {0x10, 0, 0, 0xFF, 0xEF}, Verdict::Good, "checksum good, 5 bytes: 10 00 00 FF EF"},
        VerdictRow{"bad", {0x10}, Verdict::BadChecksum, "checksum bad, 1 byte: 10"},
        VerdictRow{"silence", {}, Verdict::Silent, "silence, 0 bytes"},
        VerdictRow{"overflow", {0xFF, 0xFE, 0xFD}, Verdict::Overflow, "checksum overflows, 3 bytes: FF FE FD"}),
    [](const auto& row) { return row.param.name; });

TEST(FrameTrace, ShowsWhatIsDropped) {
    TraceRig rig;
    rig.trace.discarded(Bytes{0x00, 0xAB});
    EXPECT_EQ(rig.lines, std::vector<std::string>{"0.000000 < dropped, 2 bytes: 00 AB"});
}

TEST(FrameTrace, CountsTheFiller) {
    TraceRig rig;
    rig.trace.resynchronised(Bytes(1025, 0));
    EXPECT_EQ(rig.lines, std::vector<std::string>{"0.000000 > filler, 1025 bytes of 0"});
}

}  // namespace
}  // namespace qrv::test
