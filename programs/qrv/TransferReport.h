// What a transfer in the terminal tells: boxes as lines, questions, progress, and how it ended. The progress is a bar
// on a terminal, a line for each tenth where the words go to a file or pipe, and lines of JSON where a program reads
// them.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "Terminal.h"
#include "json/Json.h"
#include "platform/MessageBox.h"

namespace qrv {

class TransferProgress;

/// Who answers a question: the option --yes, or the user where one sits at a terminal.
enum class Consent { Given, Asked };

class TransferReport final : public MessageBox {
 public:
    enum class Style { Words, Json };

    TransferReport(Terminal& terminal, Style style, Consent consent);
    ~TransferReport() override = default;
    TransferReport(const TransferReport&) = delete;
    TransferReport& operator=(const TransferReport&) = delete;

    /// A box of the transfer's: its words become lines; None where nobody can answer a question.
    Answer ask(const Notice& notice) override;
    /// From now on boxes for which this holds are neither told nor asked, and their answer is Yes or Ok.
    void passOver(std::function<bool(const Notice&)> which) { isPassedOver_ = std::move(which); }
    /// From now on nothing is told or asked while this holds, and a question's answer is No: nobody wants to go on.
    void silence(std::function<bool()> when) { isSilent_ = std::move(when); }
    /// What the last question got.
    [[nodiscard]] Answer lastAnswer() const { return lastAnswer_; }
    /// One line of our own.
    void say(const std::string& sentence);
    /// One line of a trace of the frames.
    void trace(const std::string& line);
    void show(const TransferProgress& progress);

    /// Runs a command and ends it with what it gives: one JSON object on the standard output, in words a sentence. A
    /// failure is told in the same manner.
    struct Ending {
        ExitCode code = ExitCode::Done;
        std::string sentence;
        Json facts = Json::object();  ///< members for the JSON object
    };
    void run(std::string_view command, const std::function<Ending()>& body);

 private:
    /// What the last news of the progress told.
    struct Shown {
        int section = 0;
        int percent = -1;
        int retries = 0;
        friend bool operator==(const Shown&, const Shown&) = default;
    };

    [[nodiscard]] Answer tellAndAnswer(const Notice& notice);
    [[nodiscard]] Answer answerTo(const Notice& notice);
    void end(std::string_view command, const Ending& ending);
    void sayJson(const Json& json);

    Terminal& terminal_;
    Style style_;
    Consent consent_;
    std::function<bool()> isSilent_ = [] { return false; };
    std::function<bool(const Notice&)> isPassedOver_ = [](const Notice&) { return false; };
    Answer lastAnswer_ = Answer::None;
    Shown shown_;
};

/// Tells, as the one JSON object that a transfer promises, that its command line can't be understood.
void tellMisunderstood(Terminal& terminal, std::string_view command, std::string_view sentence);

}  // namespace qrv
