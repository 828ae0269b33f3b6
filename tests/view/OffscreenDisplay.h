// The display without a screen, for whatever shows windows and is no program of the user's: tests, benchmarks,
// pictures.
#pragma once

#include <QString>
#include <QtGlobal>

namespace qrv::test {

inline QtMessageHandler nextMessageHandler = nullptr;

/// Windows have no order here, and the display says so at every `raise()`. That line is dropped, and no other.
inline void passAllButRaise(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtWarningMsg && text == QLatin1String("This plugin does not support raise()")) return;
    nextMessageHandler(type, context, text);
}

/// Before the application is made. A display that the caller's environment names stays.
inline void useOffscreenDisplay() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    nextMessageHandler = qInstallMessageHandler(passAllButRaise);
}

}  // namespace qrv::test
