#include "Terminal.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "link/BadAnswer.h"

namespace qrv {

namespace {

/// Goes to the line's beginning and clears it.
constexpr std::string_view kStartOfLine = "\r\x1b[K";
constexpr const char* kNotWhole = "the output could not be written whole.";

bool putAll(std::string_view text, std::FILE* stream) {
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
}

}  // namespace

ExitCode exitCodeOf(const RunTimeError& error) {
    // All else is about files.
    return isOfBadAnswer(error) ? ExitCode::Link : ExitCode::File;
}

bool Terminal::canAsk() const { return isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0; }

bool Terminal::drawsProgress() const { return isatty(STDERR_FILENO) != 0; }

void Terminal::say(std::string_view line) { draw(std::string(line) + "\n"); }

void Terminal::draw(std::string_view text) {
    if (std::exchange(isDrawnOver_, false)) static_cast<void>(putAll(kStartOfLine, stderr));
    // Where even the words can't be written there is nobody left to tell.
    static_cast<void>(putAll(text, stderr));
}

void Terminal::drawOver(std::string_view text) {
    draw(text);
    isDrawnOver_ = true;
}

void Terminal::write(std::string_view data) { keepFault(putAll(data, stdout)); }

void Terminal::keepFault(bool isWhole) {
    if (!isWhole && writeFault_ == 0) writeFault_ = errno;
}

bool Terminal::isReaderGone() const { return writeFault_ == EPIPE; }

bool Terminal::flush() {
    keepFault(std::fflush(stdout) == 0);
    if (writeFault_ != 0 && !isReaderGone()) throw CommandFailure(ExitCode::File, kNotWhole);
    return writeFault_ == 0;
}

std::optional<std::string> Terminal::ask(std::string_view question) {
    if (!canAsk()) return std::nullopt;
    draw(std::string(question) + " ");
    std::string answer;
    for (int c = std::getchar(); c != '\n'; c = std::getchar()) {
        if (c == EOF) return std::nullopt;
        answer += static_cast<char>(c);
    }
    return answer;
}

std::optional<bool> Terminal::askYesNo(std::string_view question) {
    const std::optional<std::string> answer = ask(std::string(question) + " [y/N]");
    if (!answer) return std::nullopt;
    return *answer == "y" || *answer == "Y" || *answer == "yes" || *answer == "Yes";
}

void Terminal::tellLoss(std::string_view sentence) {
    isLost_ = true;
    tell_(sentence);
}

ExitCode Terminal::withLoss(ExitCode code) const {
    if (code != ExitCode::Done && code != ExitCode::Findings) return code;
    if (isLost_) return ExitCode::File;
    return isReaderGone() ? ExitCode::ReaderGone : code;
}

ExitCode Terminal::end() {
    keepFault(std::fflush(stdout) == 0);
    if (writeFault_ != 0 && !isReaderGone()) tellLoss(kNotWhole);
    return withLoss(exitCode_);
}

void checkOutput(const std::string& path, Overwrite overwrite) {
    std::error_code ignored;
    const auto status = std::filesystem::symlink_status(path, ignored);
    if (!std::filesystem::exists(status)) return;
    if (std::filesystem::is_directory(path, ignored)) {
        throw CommandFailure(ExitCode::File, path + " is a folder.");
    }
    if (overwrite == Overwrite::Refuse) refuseToOverwrite(path);
}

void refuseToOverwrite(const std::string& path) {
    throw CommandFailure(ExitCode::Refused, path + " exists already; --force overwrites it.");
}

}  // namespace qrv
