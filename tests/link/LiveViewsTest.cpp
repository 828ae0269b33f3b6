// What the two live views have in common: how a poll begins and ends, and how the window goes.
#include <gtest/gtest.h>

#include "LiveRig.h"

namespace qrv::test {
namespace {

template <typename Rig>
struct LiveViewsTest : testing::Test {
    Rig view;
};

struct NamesOfForms {
    template <typename Rig>
    static std::string GetName(int) {
        return std::is_same_v<Rig, MGridRig> ? "MGrid" : "Monitor";
    }
};
using BothViews = testing::Types<MGridRig, MonitorRig>;
TYPED_TEST_SUITE(LiveViewsTest, BothViews, NamesOfForms);

TYPED_TEST(LiveViewsTest, SilentControllerIsToldAndThePortClosed) {
    auto& rig = this->view;
    rig.dieAt(1);
    rig.expectNoConnection();
    rig.form.Command2_Click();
    EXPECT_FALSE(rig.form.polling);
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_TRUE(rig.form.Command2.enabled);
}

TYPED_TEST(LiveViewsTest, PortThatDoesNotOpenIsToldOnce) {
    auto& rig = this->view;
    rig.port.refuseToOpen();
    rig.boxes.expect("COM1: not available. Change the setting to another port.");
    rig.form.Command2_Click();
    EXPECT_FALSE(rig.form.polling);
    EXPECT_TRUE(rig.form.Command2.enabled);
}

TYPED_TEST(LiveViewsTest, StopEndsThePollAndClosesThePort) {
    auto& rig = this->view;
    rig.prepare();
    rig.after(milliseconds(200), [&rig] {
        EXPECT_TRUE(rig.form.polling);
        EXPECT_FALSE(rig.form.Command2.enabled);
        EXPECT_TRUE(rig.port.isOpen());
        rig.form.Command3_Click();
    });
    rig.form.Command2_Click();
    EXPECT_FALSE(rig.blocksRead().empty());
    EXPECT_FALSE(rig.form.polling);
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_TRUE(rig.form.Command2.enabled);
    EXPECT_TRUE(rig.host.isLoaded(rig.form));
}

TYPED_TEST(LiveViewsTest, StopWhileItConnectsLeavesNoPoll) {
    auto& rig = this->view;
    rig.prepare();
    rig.controller.play(SimFaultPlan::once("silence"));
    rig.after(milliseconds(500), [&rig] { rig.form.Command3_Click(); });
    rig.form.Command2_Click();
    EXPECT_TRUE(rig.blocksRead().empty());
    EXPECT_FALSE(rig.port.isOpen());
}

TYPED_TEST(LiveViewsTest, ASecondStartWhilePollingIsNone) {
    auto& rig = this->view;
    rig.prepare();
    rig.after(milliseconds(200), [&rig] {
        rig.form.Command2_Click();
        EXPECT_EQ(rig.port.openCount(), 1U);
        rig.form.Command3_Click();
    });
    rig.form.Command2_Click();
    EXPECT_EQ(rig.port.openCount(), 1U);
}

TYPED_TEST(LiveViewsTest, DoneGivesTheMainWindowBack) {
    auto& rig = this->view;
    rig.done();
    EXPECT_FALSE(rig.host.isLoaded(rig.form));
    EXPECT_EQ(rig.timesMainShown, 1);
}

TYPED_TEST(LiveViewsTest, DoneWhilePollingWaitsForTheLoop) {
    auto& rig = this->view;
    rig.prepare();
    rig.after(milliseconds(200), [&rig] {
        rig.done();
        EXPECT_TRUE(rig.host.isLoaded(rig.form));
        EXPECT_FALSE(rig.form.polling);
    });
    rig.form.Command2_Click();
    EXPECT_FALSE(rig.host.isLoaded(rig.form));
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_EQ(rig.timesMainShown, 1);
}

TYPED_TEST(LiveViewsTest, CloseBoxWhilePollingWaitsForTheLoop) {
    auto& rig = this->view;
    rig.prepare();
    rig.after(milliseconds(200), [&rig] {
        EXPECT_FALSE(rig.host.close(rig.form));
        EXPECT_TRUE(rig.form.close_pending);
        EXPECT_FALSE(rig.form.polling);
    });
    rig.form.Command2_Click();
    EXPECT_FALSE(rig.host.isLoaded(rig.form));
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_EQ(rig.timesMainShown, 1);
}

TYPED_TEST(LiveViewsTest, CloseBoxDuringADeadLineClosesWhenTheReadingHasEnded) {
    auto& rig = this->view;
    rig.prepare();
    rig.dieAt(3);
    rig.after(milliseconds(5000), [&rig] { EXPECT_FALSE(rig.host.close(rig.form)); });
    rig.form.Command2_Click();
    EXPECT_FALSE(rig.host.isLoaded(rig.form));
    EXPECT_EQ(rig.blocksRead().size(), 11U);
    EXPECT_EQ(rig.timesMainShown, 1);
}

TYPED_TEST(LiveViewsTest, CloseBoxWhileItConnectsClosesAfterTheBox) {
    auto& rig = this->view;
    rig.dieAt(1);
    rig.expectNoConnection();
    rig.after(milliseconds(3000), [&rig] { rig.host.close(rig.form); });
    rig.form.Command2_Click();
    EXPECT_FALSE(rig.host.isLoaded(rig.form));
    EXPECT_EQ(rig.timesMainShown, 1);
}

TYPED_TEST(LiveViewsTest, EndOfTheProgramEndsThePoll) {
    auto& rig = this->view;
    rig.prepare();
    rig.after(milliseconds(200), [&rig] { rig.host.endProgram(0); });
    rig.form.Command2_Click();
    EXPECT_FALSE(rig.port.isOpen());
    EXPECT_EQ(rig.timesMainShown, 0);
}

}  // namespace
}  // namespace qrv::test
