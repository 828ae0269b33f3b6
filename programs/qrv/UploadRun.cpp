#include "UploadRun.h"

#include <algorithm>

#include "link/TransferWords.h"
#include "link/UploadSections.h"
#include "link/frmComm.h"
#include "platform/SerialPort.h"

namespace qrv {

std::vector<std::string> uploadSections() { return availableWords(kUploadSections); }

Json jsonOf(const std::vector<RepeatedString>& strings) {
    return Json::array(strings, [](const RepeatedString& repeated) {
        return Json::object({{"block", repeated.block}, {"offset", repeated.offset}});
    });
}

UploadRun::UploadRun(TransferSession& session, TransferReport& report, const std::vector<std::string>& logFolders)
    : session_(session), report_(report), form_(session.bench(), session.link().comm(), session.window(), logFolders) {}

std::string UploadRun::failedReadsText() const { return qrv::failedReadsText(failedReads(), logFile()); }

std::string UploadRun::foreignText() const { return qrv::foreignText(foreignBlocks()); }

std::string UploadRun::repeatedText() const { return qrv::repeatedText(findings().repeatedStrings); }

void UploadRun::prepare(const std::string& unharmed) {
    session_.failIfCancelled(unharmed);
    // A cancel while the controller is looked for leaves nothing to ask.
    report_.silence([this] { return !session_.bench().in_upload && session_.link().isCancelled(); });
    session_.bench().platform.formHost.load(form_);
    form_.activate();
    session_.failIfCancelled(unharmed);
    if (!form_.quit_now) return;
    if (form_.outcome().stage == UploadStage::Reaching) {
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
    fail(unharmed);
}

void UploadRun::fail(const std::string& unharmed) {
    session_.failIfCancelled(unharmed);
    const std::string where = logFile().empty() ? "" : " " + logFile() + " has every exchange.";
    const std::string& storeFault = form_.outcome().storeFault;
    if (!storeFault.empty()) throw CommandFailure(ExitCode::File, storeFault + " " + unharmed + where);
    const bool isOfLine =
        !session_.bench().xfer_ok || session_.bench().platform.serialPort.fault() != SerialFault::None;
    const std::string cause = isOfLine ? session_.link().cause() : "What came back makes no program.";
    throw CommandFailure(ExitCode::Link, cause + " " + unharmed + where);
}

}  // namespace qrv
