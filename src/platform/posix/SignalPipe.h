// Signals as something to wait for: their handler writes their numbers to a pipe, and whoever waits reads them there.
#pragma once

#include <csignal>
#include <initializer_list>
#include <optional>
#include <utility>
#include <vector>

namespace qrv {

class SignalPipe {
 public:
    SignalPipe() = default;
    /// Gives the signals back.
    ~SignalPipe();
    SignalPipe(const SignalPipe&) = delete;
    SignalPipe& operator=(const SignalPipe&) = delete;

    /// From now on these signals don't end the program. One pipe of a program may catch signals. A hang-up that is
    /// ignored stays ignored.
    void catchSignals(std::initializer_list<int> numbers);

    /// Readable when a signal came; -1 while none is caught.
    [[nodiscard]] int descriptor() const { return read_; }
    /// The number of the first that waits.
    [[nodiscard]] std::optional<int> take();

 private:
    int read_ = -1;
    std::vector<std::pair<int, struct sigaction>> formerActions_;
};

}  // namespace qrv
