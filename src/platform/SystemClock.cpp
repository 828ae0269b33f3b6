#include <thread>

#include "platform/Clock.h"

namespace qrv {

Clock::TimePoint SystemClock::now() const { return std::chrono::steady_clock::now(); }

std::chrono::system_clock::time_point SystemClock::wallTime() const { return std::chrono::system_clock::now(); }

void SystemClock::sleep(Milliseconds duration) { std::this_thread::sleep_for(duration); }

}  // namespace qrv
