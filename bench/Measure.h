// Two ways to do the same work, measured in one run: interleaved, medians of several rounds, told as a ratio.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace qrv {

inline constexpr int kRounds = 9;

inline double secondsOf(const std::function<void()>& action) {
    const auto began = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
}

inline double medianOf(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

/// Runs both in turn, kRounds times after one warm-up, and prints one row. Gives the ratio of the medians.
inline double compare(const std::string& what, const std::function<void()>& ours, const std::string& against,
                      const std::function<void()>& theirs, double atMost) {
    ours();
    theirs();
    std::vector<double> our;
    std::vector<double> their;
    for (int round = 0; round < kRounds; ++round) {
        our.push_back(secondsOf(ours));
        their.push_back(secondsOf(theirs));
    }
    const double ratio = medianOf(our) / medianOf(their);
    std::printf("%-44s %9.3f ms  %-44s %9.3f ms  %6.2f x  (at most %.2f x)%s\n", what.c_str(), medianOf(our) * 1e3,
                against.c_str(), medianOf(their) * 1e3, ratio, atMost, ratio > atMost ? "  OVER" : "");
    std::fflush(stdout);
    return ratio;
}

}  // namespace qrv
