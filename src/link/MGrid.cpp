#include "link/MGrid.h"

#include <algorithm>

#include "platform/EventPump.h"
#include "platform/Numerals.h"

namespace qrv {

namespace {

constexpr int kColumnWidth = 850;
constexpr int kHeadingSize = 300;
constexpr Colour kStale{0xD0D0D0};
/// Between two passes that found nothing to read.
constexpr std::chrono::milliseconds kIdlePass{10};

int rowOf(int block) { return block / MGrid::kBlocksPerRow + 1; }
int colOf(int block) { return block % MGrid::kBlocksPerRow + 1; }

}  // namespace

MGrid::MGrid(Workbench& bench, frmComm& comm, StaleMarks marks)
    : Form("MGrid", "View All Block Outputs"), bench_(bench), outputs_(bench, comm), marks_(marks) {
    for (int row = 1; row <= kRows; ++row) Grid2.setText(row, 0, joined((row - 1) * kBlocksPerRow));
    for (int col = 1; col <= kBlocksPerRow; ++col) {
        Grid2.setText(0, col, joined(col - 1));
        Grid2.setColWidth(col, kColumnWidth);
    }
    Grid2.setColWidth(0, kHeadingSize);
    Grid2.setRowHeight(0, kHeadingSize);
    lblRate.visible = marks == StaleMarks::Shown;
}

void MGrid::load() {
    isLoaded_ = true;
    Grid2.clearFrom(1, 1);
    Grid2.select(1, 1);
    Grid2.setTopRow(1);
    silentSince_.fill(std::nullopt);
    lblRate.caption.clear();
    polling = false;
    close_pending = false;
}

bool MGrid::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode) return true;
    mnuexit();
    return false;
}

void MGrid::unload() {
    isLoaded_ = false;
    polling = false;
}

void MGrid::Command1_Click() { run(Mode::Single); }

void MGrid::Command2_Click() { run(Mode::Continuous); }

void MGrid::Command3_Click() {
    polling = false;
    isStopWanted_ = true;
}

void MGrid::mnuexit() {
    if (!isBusy_) {
        leave();
        return;
    }
    close_pending = true;
    polling = false;
}

void MGrid::tmrShow_Timer() {
    if (marks_ == StaleMarks::Shown) lblRate.caption = outputs_.rate();
}

void MGrid::leave() {
    bench_.platform.formHost.unload(*this);
    bench_.windows.showMain();
}

void MGrid::run(Mode mode) {
    if (isBusy_) return;
    begin();
    if (outputs_.connect()) {
        if (mode == Mode::Single) {
            pass(mode, 0, kLastBlock);
        } else {
            repeatPasses();
        }
        outputs_.disconnect();
    }
    end();
    if (close_pending && isLoaded_) leave();
}

void MGrid::begin() {
    isBusy_ = true;
    isStopWanted_ = false;
    Command1.enabled = false;
    Command2.enabled = false;
    tmrShow.enabled = true;
    bench_.platform.formHost.refresh(*this);
}

void MGrid::end() {
    tmrShow.enabled = false;
    lblRate.caption.clear();
    Command1.enabled = true;
    Command2.enabled = true;
    isBusy_ = false;
}

void MGrid::repeatPasses() {
    // Whoever stopped or closed while the connection was made gets no poll.
    polling = !isStopWanted_ && !close_pending && isLoaded_;
    while (polling) {
        const int first = (Grid2.topRow() - 1) * kBlocksPerRow;
        const int count = pass(Mode::Continuous, first, first + kBlocksInSight - 1);
        EventPump& pump = bench_.platform.eventPump;
        if (count == 0 && polling) pump.pumpUntil(bench_.platform.clock.now() + kIdlePass, nullptr);
    }
}

bool MGrid::mayGoOn(Mode mode) const { return isLoaded_ && !close_pending && (mode == Mode::Single || polling); }

int MGrid::pass(Mode mode, int first, int last) {
    int count = 0;
    for (int number = first; number <= std::min<int>(last, kLastBlock) && mayGoOn(mode); ++number) {
        const auto block = toInt16(number);
        const bool isUsed = bench_.FnOfBlock.at(static_cast<std::size_t>(block)) != kNop;
        const auto kind = isUsed ? outputKindOf(bench_, block) : std::nullopt;
        if (isUsed) Grid2.select(rowOf(block), colOf(block));
        if (!kind) {
            bench_.platform.eventPump.pump();
            continue;
        }
        readBlock(block, *kind);
        ++count;
    }
    return count;
}

void MGrid::readBlock(std::int16_t block, OutputKind kind) {
    const auto text = outputs_.text(block, kind);
    // Without an answer the last value stands.
    if (text && isLoaded_) Grid2.setText(rowOf(block), colOf(block), *text);
    if (marks_ == StaleMarks::Shown) mark(block, text.has_value());
}

void MGrid::mark(std::int16_t block, bool answered) {
    auto& since = silentSince_.at(static_cast<std::size_t>(block));
    if (answered != since.has_value()) return;
    const int row = rowOf(block);
    const int col = colOf(block);
    if (answered) {
        since.reset();
        Grid2.setBack(row, col, std::nullopt);
        Grid2.setToolTip(row, col, "");
        return;
    }
    since = outputs_.askedAt();
    Grid2.setBack(row, col, kStale);
    Grid2.setToolTip(row, col, silenceText(*since));
}

}  // namespace qrv
