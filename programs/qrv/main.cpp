// `qrv`: the work on QRV configurations and controllers from a terminal.
#include <csignal>

#include "CommandLine.h"
#include "Terminal.h"
#include "platform/Folders.h"

int main(int argc, char** argv) {
    qrv::provideTemp();
    // Where the output's reader goes away a command is left by the usual way, its work files cleared up, a transfer
    // done; only then the program ends as the signal would have ended it.
    auto* const atBrokenPipe = std::signal(SIGPIPE, SIG_IGN);
    qrv::Terminal terminal;
    const qrv::ExitCode code = qrv::runCommandLine(terminal, argc, argv);
    if (code == qrv::ExitCode::ReaderGone) {
        std::signal(SIGPIPE, atBrokenPipe);
        std::raise(SIGPIPE);
    }
    return static_cast<int>(code);
}
