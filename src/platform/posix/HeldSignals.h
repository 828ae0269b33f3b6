// Keeps the signals that ask a program to end waiting while there is something that must not be left half done. What
// came meanwhile takes effect when the last of these objects goes.
#pragma once

#include <csignal>

namespace qrv {

class HeldSignals {
 public:
    /// Holds Ctrl+C, a request to end, and the hang-up of the terminal: SIGINT, SIGTERM, SIGHUP.
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

 private:
    sigset_t former_{};
};

}  // namespace qrv
