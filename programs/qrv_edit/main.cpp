// `qrv_edit`: the desktop tool. Brings the machine's services and the windows together with the program's forms.
#include <unistd.h>

#include <QSocketNotifier>
#include <QStringList>
#include <QtGlobal>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/FileSettings.h"
#include "platform/Folders.h"
#include "platform/Platform.h"
#include "platform/RunTimeError.h"
#include "platform/posix/PosixSerialPort.h"
#include "platform/posix/SerialPorts.h"
#include "platform/posix/SignalPipe.h"
#include "platform/qt/Application.h"
#include "platform/qt/DesktopHost.h"
#include "platform/qt/QtFileDialog.h"
#include "platform/qt/QtMessageBox.h"
#include "platform/qt/QtPump.h"
#include "platform/qt/Texts.h"
#include "platform/qt/ToolkitWords.h"
#include "shell/AllFormsView.h"
#include "shell/CommandLine.h"
#include "shell/EditorAnswers.h"
#include "shell/EditorProgram.h"
#include "store/LifeCycle.h"
#include "store/ProgramPlaces.h"

namespace {

/// What stands behind the program's name, without what the toolkit took for itself.
std::string tailOf(const QStringList& arguments) {
    std::vector<std::string> words;
    for (const QString& argument : arguments.mid(1)) words.push_back(qrv::typedUtf8(argument));
    return qrv::commandTail(words);
}

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

/// A platform of its own may be asked for by the environment or by an argument.
bool hasDisplay(int argc, char** argv) {
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM") ||
           std::any_of(argv, argv + argc, [](const char* word) { return std::string_view(word) == "-platform"; });
}

/// At Ctrl+C in the program's terminal, a logout, a shutdown: nobody can be asked, and nothing may be lost.
[[noreturn]] void endUnasked(qrv::EditorProgram& program, int signal) {
    try {
        // A board that is being chosen is none yet.
        program.general.fg.cancelEdit();
        const std::string copy = qrv::KeepUnsavedWork(program.bench);
        if (!copy.empty()) std::fprintf(stderr, "qrv_edit: what was not saved is kept in %s\n", copy.c_str());
    } catch (const qrv::RunTimeError& error) {
        std::fprintf(stderr, "qrv_edit: %s\n", error.description().c_str());
    }
    constexpr int kBySignal = 128;
    ::_exit(kBySignal + signal);
}

}  // namespace

int main(int argc, char** argv) {
    qrv::provideTemp();
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (const auto answer = qrv::answerInTerminal(words, std::string("Qt ") + qVersion())) {
        return std::fputs(answer->c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? EXIT_FAILURE : EXIT_SUCCESS;
    }
    if (!hasDisplay(argc, argv)) {
        std::fputs("qrv_edit: there is no display (DISPLAY is not set); qrv does its work in a terminal.\n", stderr);
        return qrv::kNoDisplayExitCode;
    }
    const qrv::Application application = [&] {
        const qrv::ToolkitWords held("qrv_edit: no window can be shown; qrv does its work in a terminal.");
        return qrv::Application(argc, argv);
    }();
    qrv::DesktopHost host;
    qrv::QtMessageBox messageBox;
    qrv::QtFileDialog fileDialog;
    qrv::FileSettings settings(qrv::settingsFile(qrv::systemEnvironment));
    qrv::SystemClock clock;
    qrv::QtPump pump;
    qrv::SerialPorts ports(settings);
    qrv::PosixSerialPort port([&](std::int16_t number) { return ports.pathOf(number); });
    const qrv::Extras extras = qrv::extrasOfEnvironment();
    qrv::EditorProgram program({.messageBox = messageBox,
                                .fileDialog = fileDialog,
                                .formHost = host,
                                .settings = settings,
                                .clock = clock,
                                .eventPump = pump,
                                .serialPort = port},
                               {.places = qrv::findProgramPlaces(),
                                .commandLine = tailOf(qrv::Application::arguments()),
                                .isClassic = extras == qrv::Extras::Absent,
                                .serialPorts = &ports});
    qrv::SignalPipe endSignals;
    endSignals.catchSignals({SIGINT, SIGTERM, SIGHUP});
    const QSocketNotifier endNotifier(endSignals.descriptor(), QSocketNotifier::Read);
    QObject::connect(&endNotifier, &QSocketNotifier::activated, [&] {
        if (const auto signal = endSignals.take()) endUnasked(program, *signal);
    });
    // What the user has done is in the work file before the next event comes.
    host.onEventDone = [&program] { program.bench.settle(); };
    qrv::addAllViews(host, program.bench, extras);
    qrv::Application::guarded([&] { program.start(); });
    return host.exitCode() ? *host.exitCode() : qrv::Application::exec();
}
