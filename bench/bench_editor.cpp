// What the editor costs against a bare window with tables of the same size, and against the browser of the database
// engine's files where the machine has it: start until painted, memory, a click on a full block, idle, and a hundred
// openings. Offscreen. usage: bench_editor [FILE]; without a file it makes one that is as full as can be.
// The program runs itself for each start; the splash's two seconds are not waited for.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QEventLoop>
#include <QGridLayout>
#include <QProcess>
#include <QStandardPaths>
#include <QTableWidget>
#include <cstdio>
#include <fstream>
#include <string>
#include <thread>

#include "../tests/view/ViewRig.h"
#include "LargeFile.h"
#include "Measure.h"
#include "platform/qt/Application.h"
#include "view/OffscreenDisplay.h"

namespace qrv {
namespace {

constexpr QSize kWindow(1280, 690);
constexpr const char* kBrowser = "sqlitebrowser";

/// KiB.
long residentMemory(const std::string& process = "self") {
    std::ifstream status("/proc/" + process + "/status");
    for (std::string word; status >> word;) {
        long size = 0;
        if (word == "VmRSS:" && status >> size) return size;
    }
    return 0;
}

/// CPU time of the whole process.
double processSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void begin(ViewRig& rig) {
    rig.whenUp("frmGeneral", [](FormView& view) { ViewRig::choose(view, "mnuexit"); });
    rig.host.load(rig.program.splash);
    rig.program.splash.Timer1_Timer();
}

/// Until the main window is painted.
void startUp(ViewRig& rig) {
    begin(rig);
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

/// Stays up until it is ended from without; comes to rest by itself.
void keepOurs(const std::string& file) {
    ViewRig rig(file);
    begin(rig);
    QApplication::exec();
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
    window.resize(kWindow);
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

/// Time that a process has had on the machine's cores, nanoseconds.
long long cpuTimeOf(const std::string& process) {
    std::ifstream file("/proc/" + process + "/schedstat");
    long long spent = 0;
    file >> spent;
    return spent;
}

struct Rest {
    double seconds = 0;  ///< from the start until the last work
    long memory = 0;     ///< KiB, at rest
};

/// Starts a program, waits until it has nothing to do any more, and ends it.
Rest restOf(const QString& program, const QStringList& arguments) {
    using Clock = std::chrono::steady_clock;
    // Less than the pause after which the status bar counts its meters: the window is up and painted by then.
    constexpr auto kQuiet = std::chrono::milliseconds(200);
    constexpr long long kTrifle = 500'000;  // nanoseconds: a blinking caret is no work
    const auto began = Clock::now();
    QProcess run;
    run.start(program, arguments);
    if (!run.waitForStarted()) std::abort();
    const std::string process = std::to_string(run.processId());
    auto lastWork = Clock::now();
    for (long long spent = 0; Clock::now() - lastWork < kQuiet;) {
        std::this_thread::sleep_for(std::chrono::milliseconds(4));
        const long long now = cpuTimeOf(process);
        if (now - spent < kTrifle) continue;
        spent = now;
        lastWork = Clock::now();
    }
    const Rest rest{.seconds = std::chrono::duration<double>(lastWork - began).count(),
                    .memory = residentMemory(process)};
    run.kill();
    run.waitForFinished();
    return rest;
}

/// Both by the same rule: until the program has come to rest.
void measureAgainstBrowser(const QString& file) {
    if (QStandardPaths::findExecutable(QLatin1String(kBrowser)).isEmpty()) {
        std::printf("%-44s %s is not installed\n", "against a browser of database files", kBrowser);
        return;
    }
    std::vector<double> our;
    std::vector<double> their;
    Rest ours;
    Rest theirs;
    for (int round = 0; round < kRounds; ++round) {
        ours = restOf(QApplication::applicationFilePath(), {QStringLiteral("--keep"), file});
        theirs = restOf(QLatin1String(kBrowser), {file});
        our.push_back(ours.seconds);
        their.push_back(theirs.seconds);
    }
    std::printf("%-44s %9.3f ms  %-44s %9.3f ms  %6.2f x  (at most 0.75 x)\n", "start until at rest, the same file",
                medianOf(our) * 1e3, kBrowser, medianOf(their) * 1e3, medianOf(our) / medianOf(their));
    std::printf("%-44s %9ld KiB %-44s %9ld KiB %6.2f x  (at most 0.70 x)\n", "memory at rest", ours.memory, kBrowser,
                theirs.memory, static_cast<double>(ours.memory) / static_cast<double>(theirs.memory));
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
            // The panes that the block shows or hides are laid out by events.
            QApplication::processEvents();
        }));
    }
    std::printf("%-44s %9.3f ms  %-44s %9.3f ms  %6.2f x  (at most 1.00 x)\n",
                "click on the fullest block until painted", medianOf(times) * 1e3, "one frame of a 60 Hz screen",
                1e3 / 60, medianOf(times) * 60);
}

/// Not qWait: that looks at the clock a hundred times a second.
void rest(std::chrono::milliseconds time) {
    QEventLoop idle;
    QTimer::singleShot(time, &idle, &QEventLoop::quit);
    idle.exec();
}

void measureIdle() {
    using namespace std::chrono_literals;
    // What the click before has left behind, the meters among it, is that click's work.
    rest(1s);
    const double before = processSeconds();
    rest(5s);
    std::printf("%-44s %9.3f %% of a core  (at most 0.1 %%)\n", "idle window", (processSeconds() - before) / 5 * 100);
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

/// A function with as many slots as a block of the large file has.
std::int16_t functionOfLargeBlock(db1& db) {
    db.FuncSetIndex("FN");
    for (std::int16_t function = 0; function < 256; ++function) {
        db.FuncSeekI(function);
        if (!db.FuncNoMatch() && db.FuncInputs() + db.FuncParams() + db.FuncHidden() == kSlotsOfLargeBlock) {
            return function;
        }
    }
    std::abort();
}

std::string largeFile(const TemporaryFolder& folder) {
    const std::string path = folder.file("large.qrv");
    ScriptedBox boxes;
    db1 db(boxes);
    db.open_database(QRV_CATALOGUE_FOLDER);
    db.create_new_database(path);
    db.open_existing_database(path);
    fillLarge(db, functionOfLargeBlock(db));
    db.close_work_dbs();
    return path;
}

}  // namespace
}  // namespace qrv

namespace {

/// An offscreen display with room for the window, for this program and those that it starts.
void provideScreen(const qrv::TemporaryFolder& folder) {
    // Named without more, this display is too small for the window.
    if (const QByteArray named = qgetenv("QT_QPA_PLATFORM"); !named.isEmpty() && named != "offscreen") return;
    const std::string path = folder.file("screen.json");
    std::ofstream(path) << R"({"screens": [{"name": "bench", "x": 0, "y": 0, "width": 1920, "height": 1080,
                              "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
    qputenv("QT_QPA_PLATFORM", QByteArray::fromStdString("offscreen:configfile=" + path));
}

}  // namespace

int main(int argc, char** argv) {
    const qrv::TemporaryFolder folder;
    provideScreen(folder);
    qrv::test::useOffscreenDisplay();
    testing::InitGoogleTest(&argc, argv);
    const qrv::Application application(argc, argv);
    const std::string word = argc > 1 ? argv[1] : "";
    if (word == "--bare") qrv::showBare();
    if (word == "--ours" && argc == 3) qrv::showOurs(argv[2]);
    if (word == "--keep" && argc == 3) qrv::keepOurs(argv[2]);
    if (argc > 2) {
        std::puts("usage: bench_editor [FILE]");
        return 2;
    }
    const std::string file = word.empty() ? qrv::largeFile(folder) : word;
    qrv::measureStart(QString::fromStdString(file));
    qrv::measureAgainstBrowser(QString::fromStdString(file));
    qrv::ViewRig rig(file);
    qrv::startUp(rig);
    qrv::measureClick(rig);
    qrv::measureIdle();
    qrv::measureGrowth(rig, file);
    return 0;
}
