// The seed of a test that draws random input: printed, and repeated by QRV_TEST_SEED.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace qrv {

/// The seed of a test in this run. A test that runs in several shares, each with a seed of its own, gives its share;
/// what is printed repeats them all.
inline std::uint32_t seedOfRun(std::uint32_t share = 0) {
    const char* given = std::getenv("QRV_TEST_SEED");
    const auto first = given == nullptr ? static_cast<std::uint32_t>(std::random_device{}())
                                        : static_cast<std::uint32_t>(std::strtoul(given, nullptr, 10));
    std::printf("seed %u; repeat with QRV_TEST_SEED=%u\n", first + share, first);
    return first + share;
}

}  // namespace qrv
