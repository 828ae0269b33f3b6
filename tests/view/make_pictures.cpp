// Makes the pictures of README and docs from a configuration: make_pictures FILE FOLDER. Offscreen, by a user's events.
#include <gtest/gtest.h>

#include <QDir>
#include <cstdio>

#include "ViewRig.h"
#include "platform/qt/Application.h"

namespace {

constexpr int kWidth = 1366;
constexpr int kHeight = 768;
constexpr int kShownBlock = 41;  // a PID of the sample

void keep(QWidget& window, const QDir& folder, const char* name) {
    QTest::qWait(600);  // the status bar's meters follow a little later
    if (!window.grab().save(folder.filePath(QString::fromLatin1(name)))) std::printf("could not write %s\n", name);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    if (argc != 3) {
        std::puts("usage: make_pictures FILE FOLDER");
        return 2;
    }
    const qrv::Application application(argc, argv);
    const QDir folder(QString::fromLocal8Bit(argv[2]));
    qrv::ViewRig rig(argv[1]);
    rig.whenUp("frmGeneral", [&folder](qrv::FormView& view) {
        keep(view, folder, "boards.png");
        qrv::ViewRig::choose(view, "mnuexit");
    });
    rig.host.load(rig.program.splash);
    rig.program.splash.Timer1_Timer();
    if (!QTest::qWaitFor([&rig] { return rig.host.isVisible(rig.program.mainWindow); })) return 1;
    qrv::FormView& window = rig.mainView();
    window.resize(kWidth, kHeight);
    QTest::qWait(50);
    auto* blocks = qrv::ViewRig::find<qrv::GridView>(window, "Grid1");
    qrv::ViewRig::clickCell(*blocks, kShownBlock / 10 + 1, kShownBlock % 10 + 1);
    keep(window, folder, "block-data.png");
    qrv::ViewRig::choose(window, "mnuEditCfg");
    keep(window, folder, "functions.png");
    return testing::Test::HasFailure() ? 1 : 0;
}
