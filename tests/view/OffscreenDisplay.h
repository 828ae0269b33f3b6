// The display without a screen, for whatever shows windows and is no program of the user's: tests, benchmarks,
// pictures.
#pragma once

#include <QString>
#include <QtGlobal>
#include <algorithm>
#include <array>

namespace qrv::test {

inline QtMessageHandler nextMessageHandler = nullptr;

/// What this display says at each of these calls, for it has no order of windows, no frames and no other program to
/// keep the keys from.
inline constexpr std::array kWordsOfTheDisplay{"This plugin does not support raise()",
                                               "This plugin does not support propagateSizeHints()",
                                               "This plugin does not support grabbing the keyboard"};

/// Those lines are dropped, and no other.
inline void passAllButTheDisplays(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    const bool isTheDisplays =
        std::ranges::any_of(kWordsOfTheDisplay, [&text](const char* words) { return text == QLatin1String(words); });
    if (type != QtWarningMsg || !isTheDisplays) nextMessageHandler(type, context, text);
}

/// Before the application is made. A display that the caller's environment names stays.
inline void useOffscreenDisplay() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    nextMessageHandler = qInstallMessageHandler(passAllButTheDisplays);
}

}  // namespace qrv::test
