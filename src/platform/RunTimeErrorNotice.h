// The one box for an error that nobody caught: the program's edge shows it and ends the program.
#pragma once

#include "platform/MessageBox.h"
#include "platform/RunTimeError.h"

namespace qrv {

/// The exit code of a program that such an error ended.
inline constexpr int kRunTimeErrorExitCode = 1;

[[nodiscard]] Notice noticeOf(const RunTimeError& error);

}  // namespace qrv
