// The desktop's event pump: sleeps on the toolkit's event loop, the port's descriptor and one timer; never spins.
#pragma once

#include "platform/EventPump.h"

namespace qrv {

class QtPump final : public EventPump {
 public:
    void pump() override;
    void pumpUntil(Clock::TimePoint deadline, SerialPort* port) override;
};

}  // namespace qrv
