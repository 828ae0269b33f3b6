// `qrv`: the work on QRV configurations and controllers from a terminal.
#include <csignal>

#include "CommandLine.h"
#include "Terminal.h"
#include "platform/Folders.h"

int main(int argc, char** argv) {
    qrv::provideTemp();
    // A reader that went away shows as output that can't be written, and the way out is the usual one.
    std::signal(SIGPIPE, SIG_IGN);
    qrv::Terminal terminal;
    return static_cast<int>(qrv::runCommandLine(terminal, argc, argv));
}
