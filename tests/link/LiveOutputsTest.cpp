// One output read of a running controller: what counts as no answer, and what must not be taken for one.
#include "link/LiveOutputs.h"

#include <gtest/gtest.h>

#include "LinkRig.h"

namespace qrv::test {
namespace {

struct OutputsRig : LineRig {
    OutputsRig() { opened(); }
    LiveOutputs outputs{bench, comm};
};

struct BadRow {
    const char* name;
    Bytes reply;
};

class LiveOutputsTest : public testing::TestWithParam<BadRow> {};

TEST_P(LiveOutputsTest, ABadAnswerIsNone) {
    OutputsRig rig;
    rig.answerAll(GetParam().reply);
    EXPECT_EQ(rig.outputs.value(7, OutputKind::Analog), std::nullopt);
    rig.answerAllSealed({0x20, 0x12, 0x34});
    EXPECT_EQ(rig.outputs.value(7, OutputKind::Analog), 4660);
}

INSTANTIATE_TEST_SUITE_P(Answers, LiveOutputsTest,
                         testing::Values(BadRow{"overflow", Bytes(200, 0xFF)}, BadRow{"short", {0x20, 0x12}},
                                         BadRow{"badChecksum", {0x20, 0x12, 0x34, 0xFF, 0xFF}}, BadRow{"silence", {}}),
                         [](const auto& row) { return row.param.name; });

struct NoConnection : testing::TestWithParam<BadRow> {};

TEST_P(NoConnection, IsToldAndThePortClosed) {
    LineRig rig;
    LiveOutputs outputs{rig.bench, rig.comm};
    rig.answerAll(GetParam().reply);
    rig.boxes.expect("Could Not Connect To Target\nCheck Settings And Connection Cables");
    EXPECT_FALSE(outputs.connect());
    EXPECT_FALSE(rig.comm.port_is_open);
    EXPECT_FALSE(rig.line.isOpen());
}

INSTANTIATE_TEST_SUITE_P(Polls, NoConnection,
                         testing::Values(BadRow{"overflow", Bytes(200, 0xFF)}, BadRow{"noChecksum", {0x55}},
                                         BadRow{"silence", {}}),
                         [](const auto& row) { return row.param.name; });

TEST(LiveOutputs, AnErrorOfThePortAtTheFirstPollGoesOnUp) {
    LineRig rig;
    LiveOutputs outputs{rig.bench, rig.comm};
    rig.line.onWrite = [](const Bytes&) { throw RunTimeError(ErrorNumber::DiskFull); };
    EXPECT_THROW((void)outputs.connect(), RunTimeError);
}

TEST(LiveOutputs, ErrorsThatNoAnswerCausesGoOnUp) {
    OutputsRig rig;
    rig.line.onWrite = [](const Bytes&) { throw RunTimeError(ErrorNumber::DiskFull); };
    EXPECT_THROW((void)rig.outputs.value(7, OutputKind::Analog), RunTimeError);
}

TEST(LiveOutputs, APortThatWasClosedIsAnError) {
    OutputsRig rig;
    rig.comm.Close_Comm_Port();
    EXPECT_THROW((void)rig.outputs.value(7, OutputKind::Discrete), RunTimeError);
}

}  // namespace
}  // namespace qrv::test
