#include "platform/qt/QtPump.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <optional>

#include "platform/SerialPort.h"

namespace qrv {

namespace {

bool handleWaiting() {
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    return dispatcher && dispatcher->processEvents(QEventLoop::AllEvents);
}

}  // namespace

void QtPump::pump() { QCoreApplication::processEvents(QEventLoop::AllEvents); }

void QtPump::pumpUntil(Clock::TimePoint deadline, SerialPort* port) {
    if (handleWaiting()) return;
    const bool listens = port && port->isOpen() && port->descriptor() >= 0;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::TimePoint::clock::now());
    if (left <= std::chrono::milliseconds::zero()) return;
    QTimer wakeUp;
    wakeUp.setSingleShot(true);
    wakeUp.setTimerType(Qt::PreciseTimer);
    wakeUp.start(left);
    // Only bytes that the port hasn't taken yet wake: with the first half of a reply in its queue the wait goes on.
    std::optional<QSocketNotifier> notifier;
    if (listens) notifier.emplace(port->descriptor(), QSocketNotifier::Read);
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

}  // namespace qrv
