#include "link/sim/SimulatedPort.h"

#include <gtest/gtest.h>

#include "link/sim/SimRig.h"
#include "platform/RunTimeError.h"

namespace qrv::test {

using namespace std::chrono_literals;

namespace {

constexpr const char* kSettings = "38400,O,8, 1";

class StandingClock final : public Clock {
 public:
    [[nodiscard]] TimePoint now() const override { return now_; }
    [[nodiscard]] std::chrono::system_clock::time_point wallTime() const override { return {}; }
    void sleep(Milliseconds duration) override { now_ += duration; }

 private:
    TimePoint now_{1h};
};

struct PortRig {
    explicit PortRig(SimSetup setup = {}, SimulatedPort::Pacing pacing = SimulatedPort::Pacing::None)
        : controller(std::move(setup)), port(controller, clock, pacing) {}
    StandingClock clock;
    SimulatedController controller;
    SimulatedPort port;
};

}  // namespace

TEST(SimulatedPort, IsClosedUntilItIsOpened) {
    PortRig rig;
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_THROW(rig.port.write(kPoll), RunTimeError);
    EXPECT_THROW((void)rig.port.waitingCount(), RunTimeError);
    EXPECT_THROW((void)rig.port.readAll(), RunTimeError);
    EXPECT_THROW(rig.port.discardInput(), RunTimeError);
    ASSERT_TRUE(rig.port.open(7, kSettings));
    EXPECT_TRUE(rig.port.isOpen());
    EXPECT_EQ(rig.port.comPort(), 7);
    EXPECT_EQ(rig.port.settings(), kSettings);
}

TEST(SimulatedPort, AnswersAtOnceWhereNothingHasATime) {
    PortRig rig;
    ASSERT_TRUE(rig.port.open(1, kSettings));
    rig.port.write(kPoll);
    EXPECT_EQ(rig.port.waitingCount(), 5U);
    EXPECT_EQ(rig.port.nextArrival(), std::nullopt);
    EXPECT_EQ(rig.port.readAll().size(), 5U);
    EXPECT_EQ(rig.port.waitingCount(), 0U);
}

TEST(SimulatedPort, TellsWhenTheNextBytesCome) {
    PortRig rig({.turnaround = 20ms});
    ASSERT_TRUE(rig.port.open(1, kSettings));
    rig.port.write(kPoll);
    EXPECT_EQ(rig.port.waitingCount(), 0U);
    EXPECT_EQ(rig.port.nextArrival(), rig.clock.now() + 20ms);
    rig.clock.sleep(20ms);
    EXPECT_EQ(rig.port.waitingCount(), 5U);
}

TEST(SimulatedPort, PacesByItsSettings) {
    // 3 bytes there and 5 back at 11 bits each: 88 bits at 1100 baud are 80 ms.
    PortRig rig({}, SimulatedPort::Pacing::BySettings);
    ASSERT_TRUE(rig.port.open(1, "1100,E,8, 1"));
    rig.port.write(kPoll);
    EXPECT_EQ(rig.port.nextArrival(), rig.clock.now() + 80ms);
}

TEST(SimulatedPort, DroppedInputIsGoneAndLaterInputIsNot) {
    PortRig rig({.turnaround = 20ms});
    ASSERT_TRUE(rig.port.open(1, kSettings));
    rig.port.write(kPoll);
    rig.port.discardInput();
    rig.clock.sleep(20ms);
    EXPECT_EQ(rig.port.waitingCount(), 5U);
    rig.port.discardInput();
    EXPECT_EQ(rig.port.waitingCount(), 0U);
}

TEST(SimulatedPort, WhatArrivesWhileItIsClosedIsLost) {
    PortRig rig({.turnaround = 20ms});
    ASSERT_TRUE(rig.port.open(1, kSettings));
    rig.port.write(kPoll);
    rig.port.close();
    rig.clock.sleep(20ms);
    ASSERT_TRUE(rig.port.open(1, kSettings));
    EXPECT_EQ(rig.port.waitingCount(), 0U);
    EXPECT_EQ(rig.port.openCount(), 2U);
}

TEST(SimulatedPort, RefusesToOpenWhenTold) {
    PortRig rig;
    rig.port.refuseToOpen(SerialFault::Forbidden);
    EXPECT_FALSE(rig.port.open(1, kSettings));
    EXPECT_EQ(rig.port.fault(), SerialFault::Forbidden);
    EXPECT_NE(rig.port.faultText(), "");
    rig.port.refuseToOpen(SerialFault::None);
    EXPECT_TRUE(rig.port.open(1, kSettings));
    EXPECT_EQ(rig.port.fault(), SerialFault::None);
    EXPECT_EQ(rig.port.faultText(), "");
}

TEST(SimulatedPort, ALineThatHangsUpIsUnpluggedAndThenMissing) {
    PortRig rig;
    rig.controller.play(SimFaultPlan::once("hang-up"));
    ASSERT_TRUE(rig.port.open(1, kSettings));
    rig.port.write(kPoll);
    rig.port.write(kPoll);
    EXPECT_EQ(rig.port.waitingCount(), 0U);
    EXPECT_EQ(rig.port.fault(), SerialFault::Unplugged);
    rig.port.close();
    EXPECT_FALSE(rig.port.open(1, kSettings));
    EXPECT_EQ(rig.port.fault(), SerialFault::Missing);
    rig.controller.restart();
    EXPECT_TRUE(rig.port.open(1, kSettings));
}

}  // namespace qrv::test
