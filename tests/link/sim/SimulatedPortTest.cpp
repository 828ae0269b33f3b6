#include "link/sim/SimulatedPort.h"

#include <gtest/gtest.h>

#include "link/sim/SimRig.h"
#include "platform/RunTimeError.h"
#include "twins/FalseClock.h"

namespace qrv::test {

using namespace std::chrono_literals;

namespace {

constexpr const char* kSettings = "38400,O,8, 1";

struct PortRig {
    explicit PortRig(SimSetup setup = {}, SimulatedPort::Pacing pacing = SimulatedPort::Pacing::None)
        : controller(std::move(setup)), port(controller, clock, pacing) {}
    FalseClock clock;
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

TEST(SimulatedPort, LeadsAFalsePumpFromArrivalToArrival) {
    PortRig rig({.turnaround = 20ms}, SimulatedPort::Pacing::BySettings);
    FalsePump pump(rig.clock);
    pump.nextArrival = [&] { return rig.port.nextArrival(); };
    ASSERT_TRUE(rig.port.open(1, "1100,O,8, 1"));
    rig.port.write(readFrame(14, 0, 60));
    // 7 bytes there in 70 ms, 20 ms later the first 16 of 67 bytes within 160 ms, the last 670 ms after the beginning.
    const auto deadline = rig.clock.now() + 5s;
    pump.pumpUntil(deadline, &rig.port);
    EXPECT_EQ(rig.clock.elapsed(), 250ms);
    EXPECT_EQ(rig.port.waitingCount(), 16U);
    while (rig.port.waitingCount() < 67) pump.pumpUntil(deadline, &rig.port);
    EXPECT_EQ(rig.clock.elapsed(), 760ms);
    pump.pumpUntil(deadline, &rig.port);
    EXPECT_EQ(rig.clock.elapsed(), 5000ms);
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
