#include "platform/posix/HeldSignals.h"

#include <initializer_list>

namespace qrv {

HeldSignals::HeldSignals() {
    sigset_t held{};
    sigemptyset(&held);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&held, signal);
    ::pthread_sigmask(SIG_BLOCK, &held, &former_);
}

HeldSignals::~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

}  // namespace qrv
