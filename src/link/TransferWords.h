// What is said of a transfer that has ended: the same words in the terminal and in the main window.
#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>

#include "link/UploadFindings.h"

namespace qrv {

class TransferProgress;
class frmDownload;
class frmUpload;
struct DownloadOutcome;

inline constexpr const char* kNothingWritten = "Nothing was written to the controller.";
inline constexpr const char* kNotCommitted =
    "Nothing was committed: after a loss of power the controller has what it had.";
inline constexpr const char* kCommitUncertain =
    "All was written, but the commit was not confirmed: it may or may not have been done. Download again.";

/// "36240 bytes in 10.8 s, 1 retry."
[[nodiscard]] std::string countsText(const TransferProgress& progress, std::chrono::nanoseconds taken);
/// What a committed download left out or can't vouch for, with a blank in front of each sentence; "" for nothing.
[[nodiscard]] std::string shortfallText(const DownloadOutcome& outcome);
/// A committed download, as sentences. @param file  the configuration's name
[[nodiscard]] std::string committedText(const std::string& file, const frmDownload& download,
                                        std::chrono::nanoseconds taken);
/// What reads that came to nothing mean for the values, as a sentence.
/// @param log  where every exchange is told; "" where no log was kept
[[nodiscard]] std::string failedReadsText(int count, const std::string& log);
/// Blocks whose function the catalogue lacks, as a sentence.
[[nodiscard]] std::string foreignText(std::span<const std::int16_t> blocks);
/// Texts for a parameter that had one already, as a sentence.
[[nodiscard]] std::string repeatedText(std::span<const RepeatedString> strings);

/// How a download that was begun has ended. @param file  the configuration's name
[[nodiscard]] std::string endOf(const frmDownload& download, const std::string& file);
[[nodiscard]] std::string endOf(const frmUpload& upload, const UploadFindings& findings, const std::string& file);

}  // namespace qrv
