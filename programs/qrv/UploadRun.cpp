#include "UploadRun.h"

#include <algorithm>

#include "link/UploadHeadings.h"
#include "link/UploadSections.h"
#include "platform/Folders.h"

namespace qrv {

std::vector<std::string> uploadSections() { return availableWords(kUploadSections); }

UploadRun::UploadRun(TransferSession& session, TransferReport& report)
    : session_(session),
      report_(report),
      logFolder_(temporaryFolder(systemEnvironment)),
      form_(session.bench(), session.link().comm(), session.window(), logFolder_) {}

std::string UploadRun::logFile() const { return logFolder_ + "/" + std::string(uploadlog::kFileName); }

std::string UploadRun::failedReadsText() const {
    const int count = failedReads();
    return (count == 1 ? "1 read" : std::to_string(count) + " reads") +
           " of constants came to nothing, and what stands in their place is wrong; " + logFile() + " tells which.";
}

std::string UploadRun::foreignText() const {
    std::string list;
    for (const std::int16_t block : foreignBlocks()) list += (list.empty() ? "" : ", ") + std::to_string(block);
    return "The catalogue lacks the function of block " + list +
           ", and constants behind it may be those of other blocks.";
}

void UploadRun::prepare(const std::string& unharmed) {
    session_.bench().platform.formHost.load(form_);
    form_.activate();
    if (!form_.quit_now) return;
    session_.failIfCancelled(unharmed);
    if (report_.lastAnswer() == Answer::Yes || !session_.bench().xfer_ok) {
        throw CommandFailure(ExitCode::Link, session_.link().cause());
    }
    throw CommandFailure(ExitCode::Refused,
                         report_.lastAnswer() == Answer::None
                             ? "An upload into a file that is there asks first: give --yes where nobody can answer."
                             : "Not wanted. " + unharmed);
}

void UploadRun::run(const std::vector<std::string>& sections, const std::string& unharmed) {
    prepare(unharmed);
    for (const UploadSection& section : kUploadSections) {
        if (std::ranges::find(sections, section.word) != sections.end()) (form_.*section.box).value = true;
    }
    form_.onProgress = [this] { report_.show(form_.progress()); };
    session_.link().whenCancelled = [this] {
        if (!session_.bench().in_upload) return;
        report_.say("Cancelled.");
        form_.Cancel_Click();
    };
    form_.Continue_Click();
    if (form_.outcome().complete) return;
    session_.failIfCancelled(unharmed);
    const std::string cause = session_.bench().xfer_ok ? "What came back makes no program." : session_.link().cause();
    throw CommandFailure(ExitCode::Link, cause + " " + unharmed + " " + logFile() + " has every exchange.");
}

}  // namespace qrv
