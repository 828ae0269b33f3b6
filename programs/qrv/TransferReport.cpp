#include "TransferReport.h"

#include <algorithm>
#include <optional>

#include "link/TransferProgress.h"
#include "platform/RunTimeError.h"

namespace qrv {

namespace {

constexpr int kTenth = 10;        // per cent
constexpr int kBarLength = 10;    // characters: with the sentence behind it a line has 80
constexpr int kPercentWidth = 3;  // characters

std::string inFront(int percent) {
    const std::string digits = std::to_string(percent);
    return std::string(kPercentWidth - digits.size(), ' ') + digits + " %";
}

std::string barOf(int percent) {
    const auto filled = static_cast<std::size_t>(percent * kBarLength / 100);
    return "[" + std::string(filled, '#') + std::string(kBarLength - filled, '.') + "] ";
}

Json jsonOf(const TransferProgress& progress) {
    const auto rate = progress.bytesPerSecond();
    const auto left = progress.timeLeft();
    return Json::object({{"event", "progress"},
                         {"section", progress.name()},
                         {"sectionNumber", progress.section()},
                         {"sections", progress.sectionCount()},
                         {"percent", progress.percent()},
                         {"bytes", progress.bytes()},
                         {"bytesPerSecond", rate ? Json(*rate) : Json()},
                         {"secondsLeft", left ? Json(std::chrono::duration<double>(*left).count()) : Json()},
                         {"retries", progress.retries()}});
}

Json noteOf(std::string_view sentence) { return Json::object({{"event", "note"}, {"text", sentence}}); }

Json resultOf(std::string_view command, ExitCode code, std::string_view sentence) {
    return Json::object({{"command", command}, {"exitCode", static_cast<int>(code)}, {"text", sentence}});
}

}  // namespace

TransferReport::TransferReport(Terminal& terminal, Style style, Consent consent)
    : terminal_(terminal), style_(style), consent_(consent) {
    if (style_ == Style::Words) return;
    terminal.tellLossesBy([&terminal](std::string_view sentence) { terminal.say(noteOf(sentence).line()); });
}

void TransferReport::sayJson(const Json& json) { terminal_.say(json.line()); }

void TransferReport::say(const std::string& sentence) {
    if (style_ == Style::Words) return terminal_.say(sentence);
    sayJson(noteOf(sentence));
}

void TransferReport::trace(const std::string& line) {
    if (style_ == Style::Words) return terminal_.say(line);
    sayJson(Json::object({{"event", "trace"}, {"text", line}}));
}

Answer TransferReport::ask(const Notice& notice) {
    const Answer answer = tellAndAnswer(notice);
    if (notice.buttons != Buttons::Ok) lastAnswer_ = answer;
    return answer;
}

Answer TransferReport::tellAndAnswer(const Notice& notice) {
    if (isSilent_()) return notice.buttons == Buttons::YesNo ? Answer::No : Answer::Ok;
    if (isPassedOver_(notice)) return notice.buttons == Buttons::YesNo ? Answer::Yes : Answer::Ok;
    if (style_ == Style::Json) {
        sayJson(Json::object({{"event", "message"}, {"title", notice.title}, {"text", notice.text}}));
    } else {
        terminal_.say(notice.title == kUsualTitle ? notice.text : notice.title + ": " + notice.text);
    }
    return answerTo(notice);
}

Answer TransferReport::answerTo(const Notice& notice) {
    if (notice.buttons == Buttons::Ok) return Answer::Ok;
    if (notice.buttons != Buttons::YesNo) return Answer::None;
    if (consent_ == Consent::Given) return Answer::Yes;
    // A program that reads lines of JSON answers no question.
    if (style_ == Style::Json) return Answer::None;
    const std::optional<bool> isYes = terminal_.askYesNo("Continue?");
    if (!isYes) return Answer::None;
    return *isYes ? Answer::Yes : Answer::No;
}

void TransferReport::show(const TransferProgress& progress) {
    // Before the first section there is nothing to tell.
    const Shown now{.section = progress.section(), .percent = progress.percent(), .retries = progress.retries()};
    if (now.section == 0 || now == shown_) return;
    const bool isNewTenth = now.section != shown_.section || now.percent / kTenth != shown_.percent / kTenth;
    shown_ = now;
    if (style_ == Style::Json) return sayJson(jsonOf(progress));
    if (terminal_.drawsProgress()) {
        terminal_.drawOver(barOf(now.percent) + inFront(now.percent) + "  " + progress.sentence());
    } else if (isNewTenth) {
        terminal_.say(inFront(now.percent) + "  " + progress.name() + ". " + progress.sentence());
    }
}

void TransferReport::end(std::string_view command, const Ending& ending) {
    terminal_.endWith(ending.code);
    if (style_ == Style::Words) return terminal_.say(ending.sentence);
    Json json = resultOf(command, terminal_.withLoss(ending.code), ending.sentence);
    json.add(ending.facts);
    terminal_.write(json.text());
}

void tellMisunderstood(Terminal& terminal, std::string_view command, std::string_view sentence) {
    terminal.write(resultOf(command, ExitCode::Usage, sentence).text());
}

void TransferReport::run(std::string_view command, const std::function<Ending()>& body) {
    if (style_ == Style::Words) return end(command, body());
    try {
        end(command, body());
    } catch (const CommandFailure& failure) {
        end(command, {.code = failure.code(), .sentence = failure.what()});
    } catch (const RunTimeError& error) {
        end(command, {.code = exitCodeOf(error), .sentence = error.description()});
    }
}

}  // namespace qrv
