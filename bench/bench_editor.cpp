// What the editor costs against a bare window with tables of the same size: start until painted, memory, a click on a
// full block, idle, and a hundred openings. Offscreen. usage: bench_editor FILE
// The program runs itself for each start; the splash's two seconds are not waited for.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QEventLoop>
#include <QGridLayout>
#include <QProcess>
#include <QTableWidget>
#include <cstdio>
#include <fstream>
#include <string>

#include "../tests/view/ViewRig.h"
#include "Measure.h"
#include "platform/qt/Application.h"

namespace qrv {
namespace {

/// KiB.
long residentMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        long size = 0;
        if (word == "VmRSS:" && status >> size) return size;
    }
    return 0;
}

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void startUp(ViewRig& rig) {
    rig.whenUp("frmGeneral", [](FormView& view) { ViewRig::choose(view, "mnuexit"); });
    rig.host.load(rig.program.splash);
    rig.program.splash.Timer1_Timer();
    if (!QTest::qWaitFor([&rig] { return rig.host.isVisible(rig.program.mainWindow); })) std::abort();
    rig.mainView().repaint();
    QApplication::processEvents();
}

void showOurs(const std::string& file) {
    ViewRig rig(file);
    startUp(rig);
    std::printf("%ld\n", residentMemory());
    std::fflush(stdout);
    _exit(0);  // the start was the question, not the end
}

void addTable(QGridLayout& layout, int place, int rows, int cols) {
    auto* table = new QTableWidget(rows, cols);
    for (int row = 0; row < rows; ++row) {
        for (int col = 0; col < cols; ++col) {
            table->setItem(row, col, new QTableWidgetItem(QStringLiteral("CELL%1").arg(row * cols + col)));
        }
    }
    layout.addWidget(table, 0, place);
}

void showBare() {
    QWidget window;
    auto* layout = new QGridLayout(&window);
    addTable(*layout, 0, 60, 10);
    addTable(*layout, 1, 15, 7);
    addTable(*layout, 2, 74, 5);
    addTable(*layout, 3, 255, 2);
    window.resize(1280, 720);
    window.show();
    window.repaint();
    QApplication::processEvents();
    std::printf("%ld\n", residentMemory());
    std::fflush(stdout);
    _exit(0);
}

long memoryOfRun(const QStringList& arguments) {
    QProcess run;
    run.start(QApplication::applicationFilePath(), arguments);
    if (!run.waitForFinished()) std::abort();
    return run.readAllStandardOutput().trimmed().toLong();
}

void measureStart(const QString& file) {
    long ours = 0;
    long bare = 0;
    compare(
        "start until painted, file on the command line",
        [&] {
            ours = memoryOfRun({QStringLiteral("--ours"), file});
        },
        "bare window with tables", [&] { bare = memoryOfRun({QStringLiteral("--bare")}); }, 2.5);
    std::printf("%-44s %9ld KiB %-44s %9ld KiB %6.2f x  (at most 2.00 x)\n", "memory", ours, "bare window with tables",
                bare, static_cast<double>(ours) / static_cast<double>(bare));
}

/// The block with the most inputs, at the far end of the map.
void measureClick(ViewRig& rig) {
    auto* blocks = ViewRig::find<GridView>(rig.mainView(), "Grid1");
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round) {
        ViewRig::clickCell(*blocks, 5, 3);
        times.push_back(secondsOf([&] {
            ViewRig::clickCell(*blocks, 24, 1);
            rig.mainView().repaint();
        }));
    }
    std::printf("%-44s %9.3f ms  %-44s %9.3f ms  %6.2f x  (at most 1.00 x)\n",
                "click on the fullest block until painted", medianOf(times) * 1e3, "one frame of a 60 Hz screen",
                1e3 / 60, medianOf(times) * 60);
}

void measureIdle() {
    const double before = cpuSeconds();
    // Not qWait: that looks at the clock a hundred times a second.
    QEventLoop idle;
    QTimer::singleShot(std::chrono::seconds(5), &idle, &QEventLoop::quit);
    idle.exec();
    std::printf("%-44s %9.3f %% of a core  (at most 0.1 %%)\n", "idle window", (cpuSeconds() - before) / 5 * 100);
}

void measureGrowth(ViewRig& rig, const std::string& file) {
    const auto once = [&] {
        CloseConfiguration(rig.program.bench, Answer::No);
        OpenConfiguration(rig.program.bench, file);
    };
    for (int n = 0; n < 10; ++n) once();
    const long before = residentMemory();
    for (int n = 0; n < 100; ++n) once();
    std::printf("%-44s %9ld KiB  (at most 2048 KiB)\n", "growth over 100 openings", residentMemory() - before);
}

}  // namespace
}  // namespace qrv

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const qrv::Application application(argc, argv);
    const std::string word = argc > 1 ? argv[1] : "";
    if (word == "--bare") qrv::showBare();
    if (word == "--ours" && argc == 3) qrv::showOurs(argv[2]);
    if (argc != 2) {
        std::puts("usage: bench_editor FILE");
        return 2;
    }
    qrv::measureStart(QString::fromLocal8Bit(argv[1]));
    qrv::ViewRig rig(argv[1]);
    qrv::startUp(rig);
    qrv::measureClick(rig);
    qrv::measureIdle();
    qrv::measureGrowth(rig, argv[1]);
    return 0;
}
