#include "link/Monitor.h"

#include <algorithm>

#include "link/frmTag.h"
#include "platform/EventPump.h"
#include "platform/Files.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr std::chrono::milliseconds kBetweenPasses{10};
/// More than any board file holds; a file beyond it is none.
constexpr std::size_t kLongestFile = 1 << 16;

// The board's places, in form units: a drop below a limit takes the edge of that limit's row, else the last edge.
constexpr std::array kColumnLimits{2310, 4260, 6210, 8160};
constexpr std::array kColumnEdges{360, 2310, 4260, 6210, 8160};
constexpr std::array kRowLimits{2450, 3700, 4950};
constexpr std::array kRowEdges{1200, 2450, 3700, 4950};
static_assert(kColumnEdges.size() == kColumnLimits.size() + 1 && kRowEdges.size() == kRowLimits.size() + 1);
static_assert(kColumnEdges[1] - kColumnEdges[0] == Monitor::kPlaceWidth &&
              kRowEdges[1] - kRowEdges[0] == Monitor::kPlaceHeight);
/// There are fewer places than labels: those of a second round stand beside the first.
constexpr int kSecondRound = 300;

/// @param steps  places to go on from where the position belongs
template <std::size_t Limits>
int snapped(int position, const std::array<int, Limits>& limits, const std::array<int, Limits + 1>& edges,
            int steps = 0) {
    int place = 0;
    for (const int limit : limits) place += position >= limit ? 1 : 0;
    return edges.at(static_cast<std::size_t>(std::clamp(place + steps, 0, static_cast<int>(Limits))));
}

}  // namespace

Monitor::Monitor(Workbench& bench, frmComm& comm, frmTag& question, StaleMarks marks)
    : Form("Monitor", "View Selected Block Outputs"),
      bench_(bench),
      outputs_(bench, comm),
      question_(question),
      marks_(marks) {
    lblRate.visible = marks == StaleMarks::Shown;
}

void Monitor::load() {
    isLoaded_ = true;
    Command4_Click();
    polling = false;
    close_pending = false;
}

bool Monitor::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode) return true;
    munexit();
    return false;
}

void Monitor::unload() {
    isLoaded_ = false;
    polling = false;
}

void Monitor::leave() {
    bench_.platform.formHost.unload(*this);
    bench_.windows.showMain();
}

void Monitor::munexit() {
    if (!isBusy_) {
        leave();
        return;
    }
    close_pending = true;
    polling = false;
}

void Monitor::tmrShow_Timer() {
    if (marks_ == StaleMarks::Shown) lblRate.caption = outputs_.rate();
}

// --- the board ---

void Monitor::Command1_Click() {
    if (entry_count >= static_cast<int>(kMonitorSlots)) return;
    const int index = ++entry_count;
    bench_.platform.formHost.showModal(question_);
    // The program may have ended under the question.
    if (!isLoaded_) return;
    if (question_.cancelled) {
        --entry_count;
        return;
    }
    const auto kind = outputKindOf(bench_, question_.block);
    entry(index) = {
        .in_use = true,
        .block = question_.block,
        .kind = static_cast<std::int16_t>(kind == OutputKind::Analog ? OutputKind::Analog : OutputKind::Discrete),
        .tag = fixedTag(question_.tag),
        .color = question_.color};
    showLabel(index, question_.tag);
}

/// A label as it first comes up, at the next place of the board.
void Monitor::showLabel(int index, const std::string& tag) {
    constexpr int kColumns = static_cast<int>(kColumnEdges.size());
    constexpr int kPlaces = kColumns * static_cast<int>(kRowEdges.size());
    const int place = (index - 1) % kPlaces;
    const int shift = index > kPlaces ? kSecondRound : 0;
    label(index) = {.caption = tag + "\nBlock " + joined(entry(index).block),
                    .visible = true,
                    .left = kColumnEdges.at(static_cast<std::size_t>(place % kColumns)) + shift,
                    .top = kRowEdges.at(static_cast<std::size_t>(place / kColumns)) + shift,
                    .color = entry(index).color};
}

void Monitor::Command4_Click() {
    entries.fill({});
    analog.fill({});
    entry_count = 0;
    outputs_.restartRate();
    lblRate.caption.clear();
}

void Monitor::Command5_Click() {
    const FileResult fault = writeWholeAtOnce(boardFileOf(bench_.CurrentFileName), bytesOfBoard(entries));
    if (fault) bench_.platform.messageBox.say("The board was not saved: " + fault->text + ".");
}

void Monitor::Command6_Click() {
    Command4_Click();
    const std::string file = boardFileOf(bench_.CurrentFileName);
    if (!exists(file)) return;
    const FileContent content = readWhole(file, kLongestFile);
    if (content.fault) {
        bench_.platform.messageBox.say("The board was not restored: " + content.fault->text + ".");
        return;
    }
    entries = boardFrom(content.bytes);
    for (int index = 1; index <= static_cast<int>(kMonitorSlots); ++index) {
        if (!entry(index).in_use) continue;
        showLabel(index, entry(index).tag);
        entry_count = toInt16(index);
    }
}

void Monitor::drop(int index, int x, int y) {
    label(index).left = snapped(x, kColumnLimits, kColumnEdges);
    label(index).top = snapped(y, kRowLimits, kRowEdges);
}

void Monitor::step(int index, int columns, int rows) {
    BoardLabel& moved = label(index);
    moved.left = snapped(moved.left, kColumnLimits, kColumnEdges, columns);
    moved.top = snapped(moved.top, kRowLimits, kRowEdges, rows);
}

// --- polling ---

void Monitor::Command2_Click() {
    if (isBusy_) return;
    isBusy_ = true;
    isStopWanted_ = false;
    Command2.enabled = false;
    tmrShow.enabled = true;
    bench_.platform.formHost.refresh(*this);
    if (outputs_.connect()) {
        poll();
        outputs_.disconnect();
    }
    tmrShow.enabled = false;
    lblRate.caption.clear();
    Command2.enabled = true;
    isBusy_ = false;
    if (close_pending && isLoaded_) leave();
}

void Monitor::Command3_Click() {
    polling = false;
    isStopWanted_ = true;
}

void Monitor::poll() {
    // Whoever stopped or closed while the connection was made gets no poll.
    polling = !isStopWanted_ && !close_pending && isLoaded_;
    while (polling) {
        bench_.platform.clock.sleep(kBetweenPasses);
        pass();
        bench_.platform.eventPump.pump();
    }
}

void Monitor::pass() {
    for (int index = 1; index <= entry_count && polling; ++index) {
        if (entry(index).in_use) readEntry(index);
    }
}

void Monitor::readEntry(int index) {
    const MonitorEntry asked = entry(index);
    const auto kind = asked.kind == static_cast<int>(OutputKind::Analog) ? OutputKind::Analog : OutputKind::Discrete;
    const auto value = outputs_.text(asked.block, kind);
    // The user may have cleared the board meanwhile, or put another block there.
    if (!isLoaded_ || entry(index) != asked) return;
    BoardLabel& shown = label(index);
    if (value) {
        shown.caption = kind == OutputKind::Analog ? *value + "\n" + asked.tag : asked.tag + "\n" + *value;
    }
    if (marks_ == StaleMarks::Shown) mark(shown, value.has_value());
}

void Monitor::mark(BoardLabel& shown, bool answered) {
    if (answered) {
        shown.silentSince.reset();
    } else if (!shown.silentSince) {
        shown.silentSince = outputs_.askedAt();
    }
}

}  // namespace qrv
