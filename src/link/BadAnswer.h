// The two run-time errors that a reply causes, not the tool: its sum overflows, or it is too short for what is taken
// from it. Whoever can go on without that reply takes them for one more bad answer, and lets all others through.
#pragma once

#include <utility>

#include "platform/RunTimeError.h"

namespace qrv {

[[nodiscard]] inline bool isOfBadAnswer(const RunTimeError& error) {
    return error.number() == ErrorNumber::Overflow || error.number() == ErrorNumber::SubscriptOutOfRange;
}

/// Runs an exchange. False if a reply raised; every other RunTimeError goes on up.
template <typename Exchange>
[[nodiscard]] bool bearingBadAnswers(Exchange&& exchange) {
    try {
        std::forward<Exchange>(exchange)();
        return true;
    } catch (const RunTimeError& error) {
        if (!isOfBadAnswer(error)) throw;
        return false;
    }
}

}  // namespace qrv
