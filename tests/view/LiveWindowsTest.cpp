// The windows of the live views as a user meets them: mouse on buttons, labels, colours and scroll bars, with a
// simulated controller at the far end.
#include <gtest/gtest.h>

#include <QtTest/qtestspontaneevent.h>
#include <QAbstractButton>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QStatusBar>
#include <QWheelEvent>
#include <cerrno>
#include <cstring>

#include "LiveViewRig.h"
#include "link/LinkObserver.h"
#include "link/LiveController.h"
#include "link/sim/SimulatedPort.h"
#include "platform/posix/PseudoTerminal.h"
#include "platform/qt/Theme.h"

namespace qrv {
namespace {

using std::chrono::milliseconds;

// Functions of the shipped catalogue: "ZERO" has an analog output, "OFF" a discrete one.
constexpr std::int16_t kAnalogFunction = 0;
constexpr std::int16_t kDiscreteFunction = 90;

void press(FormView& view, const char* button) { ViewRig::click<QAbstractButton>(view, button); }

QString cellText(const FormView& view, int row, int col) {
    return view.findChild<GridView*>(QStringLiteral("Grid2"))->model()->index(row - 1, col - 1).data().toString();
}

/// Does something as the user as soon as `isTime`, while something else pumps; for as long as the view is there.
void when(FormView& view, const std::function<bool()>& isTime, const std::function<void()>& act) {
    QTimer::singleShot(1, &view, [&view, isTime, act] { isTime() ? act() : when(view, isTime, act); });
}

void use(ViewRig& rig, std::int16_t block, std::int16_t function) {
    rig.program.bench.FnOfBlock.at(static_cast<std::size_t>(block)) = function;
}

// --- a real line: our own port and the desktop's own pump ---

struct RealLine {
    RealLine() {
        live.controller.fixAnalog(4, 1234);
        live.controller.fixDiscrete(5, true);
        live.start();
    }
    FormView& open(const char* entry, const Form& form) {
        FormView& view = windows.rig.startWithView(entry, form);
        rig.program.bench.FnOfBlock.fill(kNop);
        use(rig, 4, kAnalogFunction);
        use(rig, 5, kDiscreteFunction);
        return view;
    }

    test::LiveController live;
    LiveViewRig windows{live.path()};
    ViewRig& rig = windows.rig;
};

TEST(MGridView, ReadsAllOutputsOnce) {
    RealLine line;
    FormView& view = line.open("mnuViewAll", line.rig.program.allOutputs);
    press(view, "Command1");
    EXPECT_EQ(cellText(view, 1, 5), "12.34");
    EXPECT_EQ(cellText(view, 1, 6), "1");
    EXPECT_EQ(cellText(view, 1, 7), "");
    EXPECT_FALSE(line.windows.port.isOpen());
}

TEST(MGridView, ReadsOnUntilTheUserPressesStop) {
    RealLine line;
    FormView& view = line.open("mnuViewAll", line.rig.program.allOutputs);
    when(
        view, [&] { return cellText(view, 1, 6) == "1"; },
        [&] {
            EXPECT_FALSE(ViewRig::find<QAbstractButton>(view, "Command1")->isEnabled());
            EXPECT_FALSE(ViewRig::find<QAbstractButton>(view, "Command2")->isEnabled());
            press(view, "Command3");
        });
    press(view, "Command2");
    EXPECT_EQ(cellText(view, 1, 5), "12.34");
    EXPECT_TRUE(ViewRig::find<QAbstractButton>(view, "Command2")->isEnabled());
    EXPECT_FALSE(line.windows.port.isOpen());
}

struct AnswerCount final : LinkObserver {
    int count = 0;

    void sent(std::span<const std::uint8_t>, int) override {}
    void received(std::span<const std::uint8_t>, Verdict) override { ++count; }
    void discarded(std::span<const std::uint8_t>) override {}
    void resynchronised(std::span<const std::uint8_t>) override {}
};

TEST(MGridView, PollingLeavesTheFocusWhereItIs) {
    RealLine line;
    FormView& view = line.open("mnuViewAll", line.rig.program.allOutputs);
    auto* stop = ViewRig::find<QAbstractButton>(view, "Command3");
    view.activateWindow();
    AnswerCount answers;
    line.rig.program.comm.observe(&answers);
    when(
        view, [&] { return cellText(view, 1, 6) == "1"; },
        [&] {
            stop->setFocus();
            // Some passes on the focus is still there.
            when(
                view, [&, later = answers.count + 10] { return answers.count >= later; },
                [&] {
                    EXPECT_EQ(view.focusWidget(), stop);
                    press(view, "Command3");
                });
        });
    press(view, "Command2");
    line.rig.program.comm.observe(nullptr);
    EXPECT_EQ(view.focusWidget(), stop);
}

TEST(MainWindowAfterATransfer, TellsInTheStatusBarWhatWent) {
    test::LiveController live;
    live.start();
    LiveViewRig windows(live.path());
    ViewRig& rig = windows.rig;
    rig.startWithNewFile();
    rig.whenUp("frmWarn", [](FormView& view) { press(view, "Command1"); });
    rig.whenUp("frmSelect", [](FormView& view) {
        press(view, "btnAll");
        press(view, "Command1");
    });
    rig.whenUp("frmDownload", [](FormView& view) { press(view, "Download"); });
    Grid& map = rig.program.mainWindow.blocks.Grid1;
    ViewRig::clickCell(*ViewRig::find<GridView>(rig.mainView(), "Grid1"), 1, 5);
    ViewRig::choose(rig.mainView(), "mnuFileDownload");
    EXPECT_EQ(std::pair(map.row(), map.col()), std::pair(1, 5));
    const auto* end = ViewRig::find<QLabel>(rig.mainView(), "transferEnd");
    const QString downloaded = end->text();
    EXPECT_TRUE(downloaded.startsWith("boiler.qrv is in the controller: ")) << downloaded.toStdString();
    EXPECT_TRUE(end->isVisible());
    EXPECT_EQ(end->toolTip(), downloaded);
    // The toolkit clears the messages at each entry of a menu.
    auto* menu = ViewRig::find<QMenu>(rig.mainView(), "mnuFile");
    rig.mainView().menuBar()->setActiveAction(menu->menuAction());
    menu->setActiveAction(ViewRig::find<QAction>(rig.mainView(), "mnuFileSave"));
    ASSERT_EQ(menu->activeAction(), ViewRig::find<QAction>(rig.mainView(), "mnuFileSave"));
    menu->close();
    EXPECT_EQ(end->text(), downloaded);
    EXPECT_TRUE(end->isVisible());
    // A message that passes only hides the words.
    auto* box = ViewRig::find<QLineEdit>(rig.mainView(), "goToBlock");
    auto* bar = ViewRig::find<QStatusBar>(rig.mainView(), "statusBar");
    QTest::keyClicks(box, QStringLiteral("705"));
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(bar->currentMessage(), "There is no block \"705\"");
    EXPECT_FALSE(end->isVisible());
    bar->clearMessage();
    EXPECT_EQ(end->text(), downloaded);
    EXPECT_TRUE(end->isVisible());
    rig.boxes.expect({.text = "WARNING  This Action Will Overwrite The Selected Configuration\n"
                              "                       Do You Wish To Continue?",
                      .buttons = Buttons::YesNo,
                      .icon = Icon::Warning},
                     Answer::Yes);
    rig.whenUp("frmUpload", [&rig](FormView& view) {
        rig.whenUp("frmGeneral", [](FormView& info) { ViewRig::choose(info, "mnuexit"); });
        press(view, "btnAll");
        press(view, "Continue");
    });
    ViewRig::choose(rig.mainView(), "mnuFileUpload");
    EXPECT_TRUE(end->text().startsWith("boiler.qrv has what the controller holds: ")) << end->text().toStdString();
    EXPECT_TRUE(end->text().endsWith("Save keeps it."));
    EXPECT_TRUE(end->isVisible());
}

TEST(MonitorView, TheKeysAloneAddALabelAndMoveIt) {
    RealLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    line.rig.whenUp("frmTag", [](FormView& question) {
        auto* tag = ViewRig::find<QLineEdit>(question, "Text1");
        QTest::keyClicks(tag, QStringLiteral("Pum"));
        // Away for a while, in the midst of typing.
        QShowEvent back;
        QSpontaneKeyEvent::setSpontaneous(&back);
        qApp->notify(&question, &back);
        QTest::keyClicks(tag, QStringLiteral("p"));
        EXPECT_EQ(tag->text(), "Pump");
        auto* colours = ViewRig::find<QWidget>(question, "Picture1");
        EXPECT_TRUE(colours->focusPolicy() & Qt::TabFocus);
        colours->setFocus();
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left})
            QTest::keyClick(colours, key);
        QTest::keyClick(colours, Qt::Key_Return);
    });
    press(view, "Command1");
    Monitor& board = line.rig.program.chosenOutputs;
    ASSERT_EQ(board.entry_count, 1);
    EXPECT_EQ(board.label(1).caption, "Pump\nBlock 4");
    EXPECT_EQ(board.label(1).color, 0x0000FF);  // red
    auto* label = ViewRig::find<QLabel>(view, "analog1");
    const auto places = [&] { return std::pair{board.label(1).left, board.label(1).top}; };
    EXPECT_EQ(places(), (std::pair{360, 1200}));
    QTest::keyClick(label, Qt::Key_Right);
    EXPECT_EQ(places(), (std::pair{2310, 1200}));
    QTest::keyClick(label, Qt::Key_Down);
    QTest::keyClick(label, Qt::Key_Down);
    EXPECT_EQ(places(), (std::pair{2310, 3700}));
    QTest::keyClick(label, Qt::Key_Left);
    QTest::keyClick(label, Qt::Key_Left);
    QTest::keyClick(label, Qt::Key_Up);
    EXPECT_EQ(places(), (std::pair{360, 2450}));
    for (int i = 0; i < 9; ++i) QTest::keyClick(label, Qt::Key_Right);
    EXPECT_EQ(places(), (std::pair{8160, 2450}));
}

TEST(MonitorView, EscInTheQuestionAddsNoLabel) {
    RealLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    line.rig.whenUp("frmTag", [](FormView& question) {
        QTest::keyClick(ViewRig::find<QLineEdit>(question, "Text1"), Qt::Key_Escape);
    });
    press(view, "Command1");
    EXPECT_EQ(line.rig.program.chosenOutputs.entry_count, 0);
}

TEST(MonitorView, ShowsValuesInTheColoursOfTheirLabels) {
    RealLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    addLabel(line.rig, view, {.block = "4", .tag = "Boiler", .colourBox = 1});
    addLabel(line.rig, view, {.block = "5", .tag = "Pump", .colourBox = 4});
    auto* boiler = ViewRig::find<QLabel>(view, "analog1");
    auto* pump = ViewRig::find<QLabel>(view, "analog2");
    EXPECT_EQ(boiler->text(), "Boiler\nBlock 4");
    EXPECT_EQ(boiler->palette().color(QPalette::WindowText), QColor(255, 0, 0));
    EXPECT_EQ(pump->palette().color(QPalette::WindowText), QColor(0, 0, 255));
    when(
        view, [&] { return pump->text().endsWith(QLatin1String("\n1")); }, [&] { press(view, "Command3"); });
    press(view, "Command2");
    EXPECT_EQ(boiler->text(), "12.34\nBoiler          ");
    EXPECT_EQ(pump->text(), "Pump            \n1");
    EXPECT_FALSE(line.windows.port.isOpen());
}

// The descriptor of a device that went away is ready for ever: the pump must not be woken by it time and again. The
// bound is far above what the toolkit may have to do besides, and far below a storm: that wakes some thousand times in
// this while.
TEST(QtPump, ADeviceThatGoesAwayDoesNotKeepItAwake) {
    const SystemClock clock;
    PseudoTerminal device;
    PosixSerialPort port([&](std::int16_t) { return device.path(); });
    ASSERT_TRUE(port.open(1, "38400,O,8, 1"));
    QtPump pump;
    QTimer::singleShot(20, qApp, [&] { device.hangUp(); });
    const auto pumpOnce = [&](Clock::TimePoint deadline) {
        static_cast<void>(port.waitingCount());
        pump.pumpUntil(deadline, &port);
    };
    const auto latest = clock.now() + std::chrono::seconds(30);
    while (port.fault() != SerialFault::Unplugged && clock.now() < latest) pumpOnce(latest);
    ASSERT_EQ(port.fault(), SerialFault::Unplugged);
    int wakes = 0;
    for (const auto deadline = clock.now() + milliseconds(200); clock.now() < deadline; ++wakes) pumpOnce(deadline);
    EXPECT_LT(wakes, 100);
}

struct LiveViewRow {
    const char* name;
    const char* entry;
};

class LiveViewClose : public testing::TestWithParam<LiveViewRow> {};

TEST_P(LiveViewClose, WhilePollingGivesTheMainWindowBack) {
    RealLine line;
    EditorProgram& program = line.rig.program;
    const bool isGrid = std::string(GetParam().entry) == "mnuViewAll";
    Form& form = isGrid ? static_cast<Form&>(program.allOutputs) : program.chosenOutputs;
    FormView& view = line.open(GetParam().entry, form);
    if (!isGrid) addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    when(
        view, [&] { return isGrid ? program.allOutputs.polling : program.chosenOutputs.polling; },
        [&] {
            view.close();
            EXPECT_TRUE(line.rig.host.isVisible(form));  // the loop closes it
        });
    press(view, "Command2");
    EXPECT_FALSE(line.rig.host.isVisible(form));
    EXPECT_TRUE(line.rig.host.isVisible(program.mainWindow));
    EXPECT_FALSE(line.windows.port.isOpen());
}

INSTANTIATE_TEST_SUITE_P(Windows, LiveViewClose,
                         testing::Values(LiveViewRow{"MGrid", "mnuViewAll"}, LiveViewRow{"Monitor", "mnuViewSel"}),
                         [](const auto& row) { return row.param.name; });

// --- a line within the process, under a clock that only waits move ---

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
    line.controller.fixAnalog(9, 100);
    line.controller.fixAnalog(300, 200);
    use(line.rig, 9, kAnalogFunction);
    use(line.rig, 300, kAnalogFunction);
    auto* grid = ViewRig::find<GridView>(view, "Grid2");
    for (int notch = 0; notch < 8; ++notch) turnWheel(*grid->viewport());
    const int rowsAbove = grid->verticalScrollBar()->value();
    ASSERT_GT(rowsAbove, 17);  // block 300 is in the thirty-first row, and a pass reads thirteen
    ASSERT_LT(rowsAbove, 31);
    EXPECT_EQ(line.rig.program.allOutputs.Grid2.topRow(), rowsAbove + 1);
    line.after(milliseconds(500), [&] { press(view, "Command3"); });
    press(view, "Command2");
    EXPECT_EQ(cellText(view, 1, 10), "");
    EXPECT_EQ(cellText(view, 31, 1), "2.00");
    // Reading moved the cursor, and not the rows.
    EXPECT_EQ(grid->verticalScrollBar()->value(), rowsAbove);
}

TEST(MGridView, StopDuringADeadLineEndsAfterTheReadingUnderWay) {
    StillLine line;
    FormView& view = line.open("mnuViewAll", line.rig.program.allOutputs);
    line.controller.fixAnalog(4, 1234);
    use(line.rig, 4, kAnalogFunction);
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
    line.controller.fixAnalog(4, 1234);
    use(line.rig, 4, kAnalogFunction);
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

TEST(MonitorView, ALabelUnderTheMouseStaysThereWhileValuesCome) {
    StillLine line;
    FormView& view = line.open("mnuViewSel", line.rig.program.chosenOutputs);
    line.controller.fixAnalog(4, 1234);
    use(line.rig, 4, kAnalogFunction);
    addLabel(line.rig, view, {.block = "4", .tag = "Boiler"});
    auto* label = ViewRig::find<QLabel>(view, "analog1");
    const QPoint grip = label->rect().center();
    const QPoint way(100, 60);
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
