// The windows of the live views with a controller within the process, under a clock that only waits move.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QScrollBar>
#include <QWheelEvent>
#include <cerrno>
#include <cstring>

#include "LiveViewRig.h"
#include "link/sim/SimulatedPort.h"
#include "platform/qt/Theme.h"

namespace qrv {
namespace {

using std::chrono::milliseconds;

struct StillLine {
    StillLine() {
        pump.nextArrival = [this] { return port.isOpen() ? port.nextArrival() : std::nullopt; };
    }
    FormView& open(const char* entry, const Form& form) {
        FormView& view = rig.startWithView(entry, form);
        rig.program.bench.FnOfBlock.fill(kNop);
        return view;
    }
    void after(milliseconds time, std::function<void()> act) { pump.at(clock.now() + time, std::move(act)); }
    /// The block is in use, and its output is this. @param hundredths  of a unit
    void analog(std::int16_t block, std::int16_t hundredths) {
        controller.fixAnalog(static_cast<std::uint16_t>(block), hundredths);
        use(rig, block, kAnalogFunction);
    }
    /// "Start Poll", and "Stop Poll" after so long.
    void pollFor(milliseconds time, FormView& view) {
        after(time, [&view] { press(view, "Command3"); });
        press(view, "Command2");
    }

    SimulatedController controller;
    FalseClock clock;
    FalsePump pump{clock};
    SimulatedPort port{controller, clock, SimulatedPort::Pacing::BySettings};
    LineServices line{clock, pump, port};
    ViewRig rig{"", Extras::Shown, &line};
};

/// One notch of the wheel towards the user.
void turnWheel(QWidget& over) {
    constexpr int kNotch = 120;
    QWheelEvent event(over.rect().center(), over.mapToGlobal(over.rect().center()), {}, {0, -kNotch}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&over, &event);
}

TEST(MGridView, ComesUpWithAsManyRowsAsAPassReads) {
    StillLine line;
    FormView& view = line.open("mnuViewAll", line.rig.program.allOutputs);
    const auto* grid = ViewRig::find<GridView>(view, "Grid2");
    EXPECT_EQ(grid->rowAt(grid->viewport()->height() - 1), 12);
}

TEST(MGridView, APassBeginsWithTheFirstRowInSight) {
    StillLine line;
    FormView& view = line.open("mnuViewAll", line.rig.program.allOutputs);
    line.analog(9, 100);
    line.analog(300, 200);
    auto* grid = ViewRig::find<GridView>(view, "Grid2");
    for (int notch = 0; notch < 8; ++notch) turnWheel(*grid->viewport());
    const int rowsAbove = grid->verticalScrollBar()->value();
    ASSERT_GT(rowsAbove, 17);  // block 300 is in the thirty-first row, and a pass reads thirteen
    ASSERT_LT(rowsAbove, 31);
    EXPECT_EQ(line.rig.program.allOutputs.Grid2.topRow(), rowsAbove + 1);
    line.pollFor(milliseconds(500), view);
    EXPECT_EQ(cellText(view, 1, 10), "");
    EXPECT_EQ(cellText(view, 31, 1), "2.00");
    // Reading moved the cursor, and not the rows.
    EXPECT_EQ(grid->verticalScrollBar()->value(), rowsAbove);
}

TEST(MGridView, HoweverLargeItIsMadeNoRowIsInSightThatIsNotRead) {
    StillLine line;
    FormView& view = line.open("mnuViewAll", line.rig.program.allOutputs);
    line.analog(580, 100);
    line.analog(704, 200);
    view.resize(2000, 2000);
    const auto* grid = ViewRig::find<GridView>(view, "Grid2");
    EXPECT_EQ(grid->rowAt(grid->viewport()->height() - 1) - grid->rowAt(0), 12);
    grid->verticalScrollBar()->setValue(grid->verticalScrollBar()->maximum());
    line.pollFor(milliseconds(500), view);
    EXPECT_EQ(cellText(view, 59, 1), "1.00");
    EXPECT_EQ(cellText(view, 71, 5), "2.00");
}

TEST(MGridView, StopDuringADeadLineEndsAfterTheReadingUnderWay) {
    StillLine line;
    FormView& view = line.open("mnuViewAll", line.rig.program.allOutputs);
    line.analog(4, 1234);
    line.controller.play(SimFaultPlan::from("silence", 3));  // after the poll and one good reading
    line.after(milliseconds(5000), [&] { press(view, "Command3"); });
    press(view, "Command2");
    EXPECT_EQ(cellText(view, 1, 5), "12.34");
    const QModelIndex cell = ViewRig::find<GridView>(view, "Grid2")->model()->index(0, 4);
    EXPECT_TRUE(cell.data(Qt::ToolTipRole).toString().startsWith(QLatin1String("No answer since 2026-")));
    EXPECT_TRUE(ViewRig::find<QAbstractButton>(view, "Command2")->isEnabled());
    EXPECT_LT(line.clock.elapsed(), milliseconds(18200));
}

TEST(MonitorView, StopDuringADeadLineEndsAfterTheReadingUnderWay) {
    StillLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    line.analog(4, 1234);
    addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    line.controller.play(SimFaultPlan::from("silence", 3));
    line.after(milliseconds(5000), [&] { press(view, "Command3"); });
    press(view, "Command2");
    auto* label = ViewRig::find<QLabel>(view, "analog1");
    EXPECT_EQ(label->text(), "12.34\nBoiler          ");
    EXPECT_TRUE(label->toolTip().startsWith(QLatin1String("No answer since 2026-")));
    EXPECT_TRUE(ViewRig::find<QAbstractButton>(view, "Command2")->isEnabled());
    EXPECT_LT(line.clock.elapsed(), milliseconds(18200));
}

TEST(MonitorView, ADroppedLabelSnapsToThePlaceUnderIt) {
    StillLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    auto* label = ViewRig::find<QLabel>(view, "analog1");
    const QPoint before = label->pos();
    const QPoint grip = label->rect().center();
    // From the first place, 360 and 1200, by 2200 and 1600: beyond the limits 2310 and 2450, below 4260 and 3700.
    const QPoint way(theme::pixelsOf(2200), theme::pixelsOf(1600));
    QTest::mousePress(label, Qt::LeftButton, {}, grip);
    QTest::mouseMove(label, grip + way);
    EXPECT_EQ(label->pos(), before + way);
    QTest::mouseRelease(label, Qt::LeftButton, {}, grip);
    EXPECT_EQ(line.rig.program.chosenOutputs.label(1).left, 2310);
    EXPECT_EQ(line.rig.program.chosenOutputs.label(1).top, 2450);
    EXPECT_EQ(label->pos(), before + QPoint(theme::pixelsOf(2310) - theme::pixelsOf(360),
                                            theme::pixelsOf(2450 - 1050) - theme::pixelsOf(1200 - 1050)));
}

TEST(MonitorView, ALabelDroppedBetweenTwoPlacesTakesTheNearerOne) {
    StillLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    auto* label = ViewRig::find<QLabel>(view, "analog1");
    const BoardLabel& shown = line.rig.program.chosenOutputs.label(1);
    // Wherever the mouse holds it.
    for (const QPoint grip : {QPoint(1, 1), label->rect().bottomRight()}) {
        const auto dragBy = [&](int x, int y) {
            QTest::mousePress(label, Qt::LeftButton, {}, grip);
            QTest::mouseMove(label, grip + QPoint(theme::pixelsOf(x), theme::pixelsOf(y)));
            QTest::mouseRelease(label, Qt::LeftButton, {}, grip);
            return std::pair(shown.left, shown.top);
        };
        // From 360 and 1200: the next places are 1950 and 1250 on.
        EXPECT_EQ(dragBy(900, 600), std::pair(360, 1200));
        EXPECT_EQ(dragBy(1100, 700), std::pair(2310, 2450));
        EXPECT_EQ(dragBy(-900, -600), std::pair(2310, 2450));
        EXPECT_EQ(dragBy(-1100, -700), std::pair(360, 1200));
    }
}

TEST(MonitorView, ALabelThatTheMouseHoldsHeedsNoArrowKeys) {
    StillLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    auto* label = ViewRig::find<QLabel>(view, "analog1");
    const QPoint before = label->pos();
    const QPoint grip = label->rect().center();
    QTest::mousePress(label, Qt::LeftButton, {}, grip);
    QTest::keyClick(label, Qt::Key_Right);
    QTest::mouseRelease(label, Qt::LeftButton, {}, grip);
    // The place on the screen and the place in the form are one.
    EXPECT_EQ(line.rig.program.chosenOutputs.label(1).left, 360);
    EXPECT_EQ(label->pos(), before);
    QTest::keyClick(label, Qt::Key_Right);
    EXPECT_EQ(line.rig.program.chosenOutputs.label(1).left, 2310);
}

TEST(MonitorView, ALabelThatTheKeysGoToIsFramed) {
    StillLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    auto* label = ViewRig::find<QLabel>(view, "analog1");
    const auto edge = [label] { return label->grab().toImage().pixelColor(1, label->height() / 2); };
    EXPECT_NE(edge(), theme::accent());
    view.activateWindow();
    label->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(QTest::qWaitFor([label] { return label->hasFocus(); }));
    EXPECT_EQ(edge(), theme::accent());
}

TEST(MonitorView, AClickOnALabelOfTheSecondRoundLeavesItBesideTheFirst) {
    StillLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    for (int n = 0; n < 21; ++n) addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    const BoardLabel& shown = line.rig.program.chosenOutputs.label(21);
    EXPECT_EQ(std::pair(shown.left, shown.top), std::pair(660, 1500));
    ViewRig::click<QLabel>(view, "analog21");
    EXPECT_EQ(std::pair(shown.left, shown.top), std::pair(660, 1500));
}

TEST(MonitorView, TheRateIsGoneAsSoonAsNoValuesCome) {
    StillLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    line.analog(4, 1234);
    addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    auto* rate = ViewRig::find<QLabel>(view, "lblRate");
    const auto tick = [&] {
        line.rig.program.chosenOutputs.tmrShow_Timer();
        view.refresh();
    };
    line.after(milliseconds(3000), [&] {
        tick();
        EXPECT_TRUE(rate->text().endsWith(QLatin1String(" readings/s"))) << rate->text().toStdString();
        // An empty board is polled on, and has no values.
        press(view, "Command4");
        EXPECT_EQ(rate->text(), "");
    });
    line.after(milliseconds(3500), [&] {
        tick();
        EXPECT_EQ(rate->text(), "");
        addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    });
    line.after(milliseconds(6500), [&] {
        tick();
        EXPECT_TRUE(rate->text().endsWith(QLatin1String(" readings/s"))) << rate->text().toStdString();
        press(view, "Command3");
    });
    press(view, "Command2");
    EXPECT_EQ(rate->text(), "");
}

TEST(MonitorView, ALabelUnderTheMouseStaysThereWhileValuesCome) {
    StillLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    line.analog(4, 1234);
    addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    auto* label = ViewRig::find<QLabel>(view, "analog1");
    const QPoint grip = label->rect().center();
    const QPoint way(50, 30);
    const QPoint before = label->pos();
    line.after(milliseconds(100), [&] {
        QTest::mousePress(label, Qt::LeftButton, {}, grip);
        QTest::mouseMove(label, grip + way);
    });
    line.after(milliseconds(200), [&] {
        view.refresh();
        EXPECT_EQ(label->text(), "12.34\nBoiler          ");
        EXPECT_EQ(label->pos(), before + way);
        QTest::mouseRelease(label, Qt::LeftButton, {}, grip);
        press(view, "Command3");
    });
    press(view, "Command2");
    EXPECT_EQ(label->pos(), before);
}

TEST(MonitorView, ABoardThatCannotBeKeptIsTold) {
    StillLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    const std::string file = line.rig.path("boiler.mon");
    std::filesystem::create_directories(file);
    // The reason is the system's, in the user's language.
    line.rig.boxes.expect("The board was not saved: cannot replace " + file + ": " + std::strerror(EISDIR) + ".");
    press(view, "Command5");
}

}  // namespace
}  // namespace qrv
