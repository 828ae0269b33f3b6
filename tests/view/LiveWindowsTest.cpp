// The windows of the live views as a user meets them: mouse on buttons, labels and colours, with a simulated controller
// at the far end of a real line.
#include <gtest/gtest.h>

#include <QtTest/qtestspontaneevent.h>
#include <QAbstractButton>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

#include "LiveViewRig.h"
#include "link/LinkObserver.h"
#include "link/LiveController.h"
#include "platform/posix/PseudoTerminal.h"

namespace qrv {
namespace {

using std::chrono::milliseconds;

/// Does something as the user as soon as `isTime`, while something else pumps; for as long as the view is there.
void when(FormView& view, const std::function<bool()>& isTime, const std::function<void()>& act) {
    QTimer::singleShot(1, &view, [&view, isTime, act] { isTime() ? act() : when(view, isTime, act); });
}

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

}  // namespace
}  // namespace qrv
