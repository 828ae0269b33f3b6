// The user's events during a transfer, and the one way to wait. A wait never spins and never polls on a fixed period:
// it sleeps until bytes, a deadline or an event come.
#pragma once

#include "platform/Clock.h"

namespace qrv {

class SerialPort;

class EventPump {
 public:
    virtual ~EventPump() = default;

    /// Handles the events that wait, and returns at once when there are none.
    virtual void pump() = 0;

    /// Handles the events that wait. If there were none, sleeps until one comes (and handles it), until bytes arrive on
    /// `port` or it hangs up, or until `deadline`, whichever is first. `port` may be null.
    virtual void pumpUntil(Clock::TimePoint deadline, SerialPort* port) = 0;
};

}  // namespace qrv
