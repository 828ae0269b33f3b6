// What a command of `qrv` may say, ask and end with. Data goes to the standard output, words and progress to the
// standard error, so that a pipe gets data alone. Nothing is asked where no user sits at a terminal.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Files.h"

namespace qrv {

/// How the program ends. Scripts rely on the numbers: never renumber.
enum class ExitCode : int {
    Done = 0,
    Findings = 1,  ///< the command ran to its end and found something: differences, errors of a program
    Usage = 2,
    File = 3,
    Link = 4,
    Refused = 5,       ///< by the user, by a missing --force or --yes, or because the controller can't take it
    Cancelled = 6,     ///< by Ctrl+C
    ReaderGone = 141,  ///< nobody reads the output any more: what a shell makes of SIGPIPE
};

class RunTimeError;

/// What an error counts as that no command caught.
[[nodiscard]] ExitCode exitCodeOf(const RunTimeError& error);

/// Ends a command with one sentence for the user.
class CommandFailure : public std::runtime_error {
 public:
    CommandFailure(ExitCode code, const std::string& sentence) : std::runtime_error(sentence), code_(code) {}
    [[nodiscard]] ExitCode code() const { return code_; }

 private:
    ExitCode code_;
};

class Terminal {
 public:
    Terminal() = default;
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    /// A user sits there: can read a question and answer it.
    [[nodiscard]] bool canAsk() const;
    /// Words and progress are read as they come, not kept in a file: a bar may be drawn over itself.
    [[nodiscard]] bool drawsProgress() const;

    /// One line of words, UTF-8.
    void say(std::string_view line);
    /// A line that the next one is drawn over, and that other words take the place of: a bar.
    void drawOver(std::string_view text);
    /// Data, UTF-8, as it is.
    void write(std::string_view data);
    /// Hands over what was written so far: for data that is read as it comes. False where nobody reads it any more;
    /// ends the command where the standard output doesn't take it.
    [[nodiscard]] bool flush();
    /// What the user types after the question, without its line break; absent where nobody can answer.
    [[nodiscard]] std::optional<std::string> ask(std::string_view question);
    /// A question for Yes or No. Absent where nobody can answer; anything but a plain yes is No.
    [[nodiscard]] std::optional<bool> askYesNo(std::string_view question);

    /// How the program will end if nothing else fails.
    void endWith(ExitCode code) { exitCode_ = code; }
    /// Tells of output that is not whole: where nothing worse happens the program ends with File.
    void tellLoss(std::string_view sentence);
    /// What `code` becomes by such a loss, or because nobody reads the output any more.
    [[nodiscard]] ExitCode withLoss(ExitCode code) const;
    /// From now on such a loss is told so; else as a line of words, "qrv: ...".
    void tellLossesBy(std::function<void(std::string_view sentence)> tell) { tell_ = std::move(tell); }
    /// Hands over what was written, and gives the exit code: File where the standard output took not all of it. That
    /// its reader went away is no loss: who has seen enough is told nothing.
    [[nodiscard]] ExitCode end();

 private:
    /// Keeps why the standard output first took not all of what it was given.
    void keepFault(bool isWhole);
    [[nodiscard]] bool isReaderGone() const;
    /// Words as they are, in the place of a line that was to be drawn over.
    void draw(std::string_view text);

    ExitCode exitCode_ = ExitCode::Done;
    int writeFault_ = 0;  ///< errno; 0: none
    bool isLost_ = false;
    std::function<void(std::string_view)> tell_ = [this](std::string_view sentence) {
        say("qrv: " + std::string(sentence));
    };
    bool isDrawnOver_ = false;
};

/// Ends the command unless `path` is free or may be overwritten.
void checkOutput(const std::string& path, Overwrite overwrite);
/// Ends the command for want of --force.
[[noreturn]] void refuseToOverwrite(const std::string& path);

}  // namespace qrv
