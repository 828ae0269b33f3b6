#include "link/TransferWords.h"

#include "link/frmDownload.h"
#include "link/frmUpload.h"
#include "platform/Numerals.h"

namespace qrv {

namespace {

std::string withCommas(const std::string& list, const std::string& next) {
    return list.empty() ? next : list + ", " + next;
}

std::string counted(std::int32_t count, const std::string& one) {
    return joined(count) + " " + one + (count == 1 ? "" : "s");
}

}  // namespace

std::string countsText(const TransferProgress& progress, std::chrono::nanoseconds taken) {
    const auto tenths = std::chrono::round<std::chrono::duration<std::int32_t, std::deci>>(taken).count();
    const int retries = progress.retries();
    return joined(progress.bytes()) + " bytes in " + joined(tenths / 10) + "." + joined(tenths % 10) + " s, " +
           joined(retries) + (retries == 1 ? " retry." : " retries.");
}

std::string shortfallText(const DownloadOutcome& outcome) {
    std::string text;
    if (outcome.unconfirmed > 0) {
        text += " " + counted(outcome.unconfirmed, "frame") + (outcome.unconfirmed == 1 ? " was" : " were") +
                " not confirmed, and what " + (outcome.unconfirmed == 1 ? "it" : "they") +
                " carried may be missing: qrv verify tells.";
    }
    if (outcome.unsentStrings > 0) {
        text += " " + counted(outcome.unsentStrings, "string") + (outcome.unsentStrings == 1 ? " was" : " were") +
                " not sent: qrv verify names them.";
    }
    return text;
}

std::string failedReadsText(int count, const std::string& log) {
    return counted(count, "read") + " of constants came to nothing, and what stands in their place is wrong" +
           (log.empty() ? "." : "; " + log + " tells which.");
}

std::string foreignText(std::span<const std::int16_t> blocks) {
    std::string list;
    for (const std::int16_t block : blocks) list = withCommas(list, joined(block));
    return "The catalogue lacks the function of block " + list +
           ", and constants behind it may be those of other blocks.";
}

std::string repeatedText(std::span<const RepeatedString> strings) {
    std::string list;
    for (const RepeatedString& repeated : strings) {
        list = withCommas(list, "block " + joined(repeated.block) + " offset " + joined(repeated.offset));
    }
    return "The controller has a second text for " + list + "; the first one was taken.";
}

std::string committedText(const std::string& file, const frmDownload& download, std::chrono::nanoseconds taken) {
    return file + " is in the controller: " + countsText(download.progress(), taken) +
           shortfallText(download.outcome());
}

std::string endOf(const frmDownload& download, const std::string& file) {
    const DownloadOutcome& outcome = download.outcome();
    if (outcome.committed) {
        return committedText(file, download, download.progress().taken());
    }
    switch (outcome.stage) {
        case DownloadStage::Commit: return kCommitUncertain;
        case DownloadStage::Sections: return std::string("The download was not completed. ") + kNotCommitted;
        default: return kNothingWritten;
    }
}

std::string endOf(const frmUpload& upload, const UploadFindings& findings, const std::string& file) {
    const UploadOutcome& outcome = upload.outcome();
    const TransferProgress& progress = upload.progress();
    if (!outcome.complete) {
        return outcome.reason.empty() ? "Nothing was uploaded."
                                      : "The upload was not completed: " + file + " is as it was last saved.";
    }
    if (progress.sectionCount() == 0) return "There was nothing to upload.";
    std::string text = file + " has what the controller holds: " + countsText(progress, progress.taken());
    if (outcome.failedReads > 0) text += " " + failedReadsText(outcome.failedReads, upload.logPath());
    if (!findings.foreignBlocks.empty()) text += " " + foreignText(findings.foreignBlocks);
    if (!findings.repeatedStrings.empty()) text += " " + repeatedText(findings.repeatedStrings);
    return text + " Save keeps it.";
}

}  // namespace qrv
