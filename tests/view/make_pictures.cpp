// Makes the pictures of README and docs: make_pictures FILE DEVICE FOLDER. Offscreen, by a user's events, with the
// configuration of FILE and the controller behind DEVICE.
#include <gtest/gtest.h>

#include <QDir>
#include <array>
#include <cstdio>

#include "LiveViewRig.h"
#include "OffscreenDisplay.h"
#include "platform/qt/Application.h"

namespace {

using qrv::FormView;
using qrv::ViewRig;

constexpr int kWidth = 1366;
constexpr int kHeight = 768;
constexpr int kShownBlock = 41;  // a PID of the sample
constexpr int kGainRow = 2;      // of its parameters
constexpr auto kHalfway = std::chrono::seconds(5);
constexpr auto kSomePasses = std::chrono::milliseconds(6300);
constexpr auto kSomeBoards = std::chrono::milliseconds(2500);

constexpr std::array kChosen{qrv::NewLabel{"600", "Outdoor air", 4}, qrv::NewLabel{"25", "Header press."},
                             qrv::NewLabel{"15", "Set point"},       qrv::NewLabel{"41", "Master", 4},
                             qrv::NewLabel{"20", "Air filtered", 4}, qrv::NewLabel{"26", "Header low", 1},
                             qrv::NewLabel{"27", "Header high", 1},  qrv::NewLabel{"10", "Plant on"},
                             qrv::NewLabel{"24", "Day mean", 5},     qrv::NewLabel{"23", "Combust. air", 4},
                             qrv::NewLabel{"28", "Press. rate"}};

class Pictures {
 public:
    Pictures(const char* file, const char* device, const char* folder)
        : folder_(QString::fromLocal8Bit(folder)), live_(device, file) {}

    bool make() {
        open();
        if (!isMainUp()) return false;
        changeAParameter();
        download();
        watch();
        watchChosen();
        return !testing::Test::HasFailure();
    }

 private:
    void keep(QWidget& window, const char* name) const {
        QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        if (!window.grab().save(folder_.filePath(QString::fromLatin1(name)))) ADD_FAILURE() << name;
    }
    bool isMainUp() {
        return QTest::qWaitFor([this] { return rig_.host.isVisible(rig_.program.mainWindow); });
    }

    void open() {
        rig_.whenUp("frmGeneral", [this](FormView& view) {
            QTest::qWait(600);  // texts are laid out a little later
            keep(view, "boards.png");
            ViewRig::choose(view, "mnuexit");
        });
        rig_.host.load(rig_.program.splash);
        rig_.program.splash.Timer1_Timer();
    }

    void changeAParameter() {
        FormView& window = rig_.mainView();
        window.resize(kWidth, kHeight);
        QTest::qWait(50);
        ViewRig::clickCell(*ViewRig::find<qrv::GridView>(window, "Grid1"), kShownBlock / 10 + 1, kShownBlock % 10 + 1);
        ViewRig::typeInto(*ViewRig::find<qrv::GridView>(window, "fg3"), kGainRow, 1, "3.5");
        QTest::qWait(600);  // the status bar's meters follow a little later
        keep(window, "block-data.png");
        ViewRig::choose(window, "mnuEditCfg");
        QTest::qWait(600);
        keep(window, "functions.png");
    }

    void download() {
        rig_.whenUp("frmWarn", [](FormView& view) { ViewRig::click<QAbstractButton>(view, "Command1"); });
        rig_.whenUp("frmSelect", [](FormView& view) {
            ViewRig::click<QAbstractButton>(view, "btnAll");
            ViewRig::click<QAbstractButton>(view, "Command1");
        });
        rig_.whenUp("frmDownload", [this](FormView& view) {
            QTimer::singleShot(kHalfway, &view, [this, &view] { keep(view, "download.png"); });
            ViewRig::click<QAbstractButton>(view, "Download");
        });
        ViewRig::choose(rig_.mainView(), "mnuFileDownload");
    }

    void watch() {
        rig_.whenUp("MGrid", [this](FormView& view) {
            poll(view, kSomePasses, "live.png");
            ViewRig::choose(view, "mnuexit");
        });
        ViewRig::choose(rig_.mainView(), "mnuViewAll");
        isMainUp();
    }

    void watchChosen() {
        rig_.whenUp("Monitor", [this](FormView& view) {
            for (const qrv::NewLabel& label : kChosen) qrv::addLabel(rig_, view, label);
            poll(view, kSomeBoards, "monitor.png");
            ViewRig::choose(view, "munexit");
        });
        ViewRig::choose(rig_.mainView(), "mnuViewSel");
        isMainUp();
    }

    /// Polls for so long, and keeps the picture at the end of it.
    void poll(FormView& view, std::chrono::milliseconds time, const char* name) const {
        QTimer::singleShot(time, &view, [this, &view, name] {
            view.refresh();
            keep(view, name);
            ViewRig::click<QAbstractButton>(view, "Command3");
        });
        ViewRig::click<QAbstractButton>(view, "Command2");
    }

    QDir folder_;
    qrv::LiveViewRig live_;
    ViewRig& rig_ = live_.rig;
};

}  // namespace

int main(int argc, char** argv) {
    qrv::test::useOffscreenDisplay();
    testing::InitGoogleTest(&argc, argv);
    if (argc != 4) {
        std::puts("usage: make_pictures FILE DEVICE FOLDER");
        return 2;
    }
    const qrv::Application application(argc, argv);
    return Pictures(argv[1], argv[2], argv[3]).make() ? 0 : 1;
}
