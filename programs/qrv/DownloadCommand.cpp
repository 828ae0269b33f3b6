// A configuration into a controller: the forms of the desktop, driven from the command line.
#include <algorithm>
#include <string>
#include <vector>

#include "Commands.h"
#include "TransferSession.h"
#include "link/DownloadSections.h"
#include "link/TransferWords.h"
#include "link/frmComm.h"
#include "link/frmDownload.h"
#include "link/frmWarn.h"

namespace qrv {

namespace {

struct ChosenSection {
    std::string_view word;
    std::int32_t bytes;
};

class DownloadRun {
 public:
    DownloadRun(Terminal& terminal, const TransferOptions& options, TransferReport& report)
        : terminal_(terminal),
          options_(options),
          report_(report),
          sections_(sectionsNamed(options.sections, availableWords(kDownloadSections))),
          session_(terminal, options.line, report),
          select_(session_.bench(), session_.window()),
          form_(session_.bench(), session_.link().comm(), select_, session_.window()) {}

    TransferReport::Ending run() {
        session_.file().open(options_.file);
        if (!options_.dryRun) askForConsent();
        prepare();
        if (options_.dryRun) return tellPlan();
        return send();
    }

 private:
    [[nodiscard]] FormHost& host() { return session_.bench().platform.formHost; }

    void askForConsent() {
        frmWarn warn(session_.bench(), session_.window());
        host().load(warn);
        Notice question{.text = {}, .title = warn.caption, .buttons = Buttons::YesNo, .icon = Icon::Warning};
        // The first label says what the title says.
        for (std::size_t i = 1; i < warn.labels.size(); ++i) {
            question.text += (i == 1 ? "" : "\n") + warn.labels[i].caption;
        }
        const Answer answer = report_.ask(question);
        answer == Answer::Yes ? warn.Command1_Click() : warn.Command2_Click();
        host().unload(warn);
        session_.failIfCancelled(kNothingWritten);
        if (!warn.cancelled) return;
        throw CommandFailure(ExitCode::Refused, answer == Answer::None
                                                    ? "A download asks first: give --yes where nobody can answer."
                                                    : std::string("Not wanted. ") + kNothingWritten);
    }

    /// What the selection's window and the download's do until "Start" can be pressed.
    void prepare() {
        report_.silence([this] { return session_.link().isCancelled(); });
        host().load(select_);
        for (const DownloadSection& section : kDownloadSections) {
            if (std::ranges::find(sections_, section.word) != sections_.end()) (select_.*section.box).value = true;
        }
        host().load(form_);
        form_.activate();
        if (form_.outcome().reason.empty()) return;
        session_.failIfCancelled(kNothingWritten);
        switch (form_.outcome().stage) {
            case DownloadStage::Reaching: throw CommandFailure(ExitCode::Link, session_.link().cause());
            case DownloadStage::Fitting:
                throw CommandFailure(ExitCode::Refused,
                                     std::string("The configuration is too big. ") + kNothingWritten);
            default:
                throw CommandFailure(ExitCode::Refused,
                                     std::string("The controller can't take what was chosen. ") + kNothingWritten);
        }
    }

    [[nodiscard]] std::vector<ChosenSection> chosen() {
        std::vector<ChosenSection> list;
        for (const DownloadSection& section : kDownloadSections) {
            if (!section.isAvailable() || !(session_.bench().*section.flag)) continue;
            list.push_back({.word = section.word, .bytes = section.estimate(session_.bench())});
        }
        return list;
    }

    TransferReport::Ending tellPlan() {
        const std::vector<ChosenSection> list = chosen();
        form_.Cancel_Click();
        if (!options_.json) {
            for (const ChosenSection& section : list) {
                terminal_.write(std::string(section.word) + "\t" + std::to_string(section.bytes) + " bytes\n");
            }
        }
        Json facts = commonFacts();
        facts.add("dryRun", true);
        facts.add("sections", Json::array(list, [](const ChosenSection& section) {
                      return Json::object({{"section", section.word}, {"bytes", section.bytes}});
                  }));
        return {.code = ExitCode::Done,
                .sentence = "The controller's firmware is " + form_.VerNum.caption + ". " + kNothingWritten,
                .facts = facts};
    }

    TransferReport::Ending send() {
        Workbench& bench = session_.bench();
        const auto start = bench.platform.clock.now();
        form_.onProgress = [this] { report_.show(form_.progress()); };
        session_.link().whenCancelled = [this, &bench] {
            if (bench.in_download) form_.Cancel_Click();
        };
        form_.Download_Click();
        requireCommitted();
        const auto taken = bench.platform.clock.now() - start;
        const int unconfirmed = form_.outcome().unconfirmed;
        const int unsent = form_.outcome().unsentStrings;
        Json facts = commonFacts();
        facts.add(Json::object({{"committed", true},
                                {"unconfirmed", unconfirmed},
                                {"unsentStrings", unsent},
                                {"bytes", form_.progress().bytes()},
                                {"retries", form_.progress().retries()}}));
        return {.code = unconfirmed > 0 || unsent > 0 ? ExitCode::Findings : ExitCode::Done,
                .sentence = committedText(options_.file, form_, taken),
                .facts = facts};
    }

    void requireCommitted() {
        const DownloadOutcome& outcome = form_.outcome();
        if (outcome.committed) return;
        if (outcome.stage == DownloadStage::Commit) {
            throw CommandFailure(ExitCode::Link, session_.link().cause() + " " + kCommitUncertain);
        }
        session_.failIfCancelled(kNotCommitted);
        if (outcome.stage == DownloadStage::Reaching) {
            throw CommandFailure(ExitCode::Link, session_.link().cause() + " " + kNothingWritten);
        }
        // A section that failed while the line was sound found a fault of the configuration's.
        const bool isOfLine = !session_.bench().xfer_ok;
        throw CommandFailure(
            isOfLine ? ExitCode::Link : ExitCode::File,
            (isOfLine ? session_.link().cause() : options_.file + " can't be downloaded.") + " " + kNotCommitted);
    }

    [[nodiscard]] Json commonFacts() {
        return Json::object(
            {{"file", options_.file}, {"line", session_.link().lineName()}, {"firmware", form_.VerNum.caption}});
    }

    Terminal& terminal_;
    const TransferOptions& options_;
    TransferReport& report_;
    std::vector<std::string> sections_;
    TransferSession session_;
    frmSelect select_;
    frmDownload form_;
};

}  // namespace

void download(Terminal& terminal, const TransferOptions& options) {
    TransferReport report = reportOn(terminal, options);
    report.run("download", [&] { return DownloadRun(terminal, options, report).run(); });
}

}  // namespace qrv
