#include "link/DownloadBlocks.h"

#include <optional>
#include <string>

#include "link/BlockLayout.h"
#include "link/BlockTable.h"
#include "link/frmComm.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "platform/RunTimeError.h"
#include "store/CatalogueCodes.h"
#include "store/ControllerLimits.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr std::int16_t kRecordsPerFrame = 5;
constexpr std::int16_t kTableFrame = kRecordsPerFrame * kBlockRecordLength;
constexpr std::int16_t kTableFrames = kBlockCount / kRecordsPerFrame;
static_assert(kTableFrames * kRecordsPerFrame == kBlockCount);

/// Slots are filled up to here. A frame goes out only when it is full, so the last eight never leave the tool.
constexpr std::int16_t kFilledSlots = 5640;
constexpr std::int32_t kHighHalf = 65536;
constexpr std::chrono::milliseconds kSecondTryTick{333};

constexpr std::int16_t kUnusedStringLength = 16;
/// The longest text that still leaves its record within a frame.
constexpr std::int32_t kLongestString = kMostData - kStringHead - 1;

constexpr const char* kSyncReason = "Form Comm Download blocks CloseIt";

class BlockDownload {
 public:
    BlockDownload(Workbench& bench, frmComm& comm) : bench_(bench), db_(bench.db), comm_(comm) {}

    void run() {
        db_.FuncSetIndex("FN");
        sendTable();
        if (bench_.xfer_abort || !bench_.xfer_ok) return;
        sendConstants();
        if (bench_.xfer_abort) return;
        sendStrings();
    }

 private:
    enum class Visit { Done, Stop };

    void abort(const char* reason) {
        bench_.xfer_abort = true;
        bench_.xfer_abort_reason = reason;
    }
    /// Ends the download for what failed. Where it was to end already - the user has cancelled, or another failure was
    /// told - nothing is said, but the reason is this one's.
    void fail(const Notice& notice, const char* reason) {
        if (!bench_.xfer_abort) bench_.platform.messageBox.ask(notice);
        abort(reason);
    }

    // --- the block table ---
    [[nodiscard]] bool knowsAllFunctions();
    void sendTable();
    void putRecord(int& index, BlockPlaces& places);
    void failTable();

    // --- the constants ---
    void sendConstants();
    Visit visitBlock();
    Visit visitInputs(std::int16_t block);
    Visit visitParameters(std::int16_t block);
    Visit visitHidden(std::int16_t block);
    [[nodiscard]] bool isInStep(std::int16_t block);
    void slotOfParameter(std::int32_t number);
    void fillUp();
    void put_constant(std::int32_t& value, bool& ok);
    bool sendConstantsFrame();

    // --- the strings ---
    struct StringPlace {
        std::int32_t number = 0;
        std::int16_t length = 0;
    };
    void sendStrings();
    [[nodiscard]] std::optional<StringPlace> placeOfString();
    bool sendString(std::int16_t& offset);
    void countUnsent();
    void sendStringRecord(std::int16_t& offset, std::int16_t block, const StringPlace& place, const std::string& text);

    Workbench& bench_;
    db1& db_;
    frmComm& comm_;
    std::int16_t constants_sent = 0;
    std::int16_t slot_in_frame = 0;
    std::int16_t image_offset = 0;
    /// What went into the last slot. Runs on: a parameter of an unknown type sends what is left of it.
    std::int32_t slot_ = 0;
    bool constantsWent_ = true;  ///< no frame of constants has failed so far
};

// --- the block table ---

/// A function that the catalogue lacks has no sizes, and every address behind its block would be wrong.
bool BlockDownload::knowsAllFunctions() {
    for (db_.BlockMoveFirst(); !db_.BlockEOF(); db_.BlockMoveNext()) {
        db_.FuncSeekI(db_.BlockFn());
        if (db_.FuncNoMatch()) return false;
    }
    return true;
}

void BlockDownload::failTable() { fail({.text = "ERROR DOWNLOADING BLOCKS"}, "Form Comm Download blocks fail"); }

void BlockDownload::sendTable() {
    if (!knowsAllFunctions()) return failTable();
    BlockPlaces places;
    db_.BlockMoveFirst();
    for (std::int16_t frame = 0; frame < kTableFrames; ++frame) {
        int index = comm_.put_write_head(Section::BlockTable, kTableFrame, frame * kTableFrame);
        for (int i = 0; i < kRecordsPerFrame; ++i) {
            putRecord(index, places);
            db_.BlockMoveNext();
        }
        if (bench_.xfer_abort) return;
        comm_.sum_xmit_bfr(static_cast<std::int16_t>(index - 1));
        comm_.send_and_get(kTableFrame + kAroundData, kShortReply);
        if (comm_.wasKeptBack()) return;
        if (!bench_.xfer_ok) return failTable();
    }
}

void BlockDownload::putRecord(int& index, BlockPlaces& places) {
    db_.FuncSeekI(db_.BlockFn());
    comm_.put_byte(index, 0);
    comm_.put_byte(index, db_.BlockFn());
    comm_.put_word(index, places.temporary);
    comm_.put_word(index, places.constant);
    comm_.put_word(index, places.retentive);
    comm_.put_byte(index, db_.FuncFtype());
    comm_.put_byte(index, 0);
    places = placesBehind(db_, places);
    // The sums are 16 bits wide, and what goes beyond is no address.
    for (const std::int32_t place : {places.temporary, places.constant, places.retentive}) {
        static_cast<void>(toInt16(place));
    }
}

// --- the constants ---

void BlockDownload::sendConstants() {
    db_.BlockMoveFirst();
    // An empty table refuses to move, and there is nothing to walk.
    const bool hasAny = ignoringErrors([this] { db_.ConstantMoveFirst(); });
    while (hasAny && !db_.BlockEOF() && !db_.ConstantEOF()) {
        if (bench_.xfer_abort || visitBlock() == Visit::Stop) return;
        db_.BlockMoveNext();
    }
    fillUp();
}

BlockDownload::Visit BlockDownload::visitBlock() {
    if (db_.BlockConstant() <= 0) return Visit::Done;
    const std::int16_t block = db_.blockNumber();
    db_.FuncSeekI(db_.BlockFn());
    if (visitInputs(block) == Visit::Stop || visitParameters(block) == Visit::Stop) return Visit::Stop;
    return visitHidden(block);
}

BlockDownload::Visit BlockDownload::visitInputs(std::int16_t block) {
    for (std::int16_t i = 0; i < db_.FuncInputs(); ++i) {
        if (!isInStep(block)) return Visit::Stop;
        slot_ = toInt32(std::int64_t{db_.ConstantValue()} * kHighHalf);
        bool ok = true;
        put_constant(slot_, ok);
        db_.ConstantMoveNext();
    }
    return Visit::Done;
}

BlockDownload::Visit BlockDownload::visitParameters(std::int16_t block) {
    for (std::int32_t number = 1; number <= db_.FuncParams(); ++number) {
        if (!isInStep(block)) return Visit::Stop;
        slotOfParameter(number);
        bool ok = true;
        put_constant(slot_, ok);
        db_.ConstantMoveNext();
    }
    return Visit::Done;
}

BlockDownload::Visit BlockDownload::visitHidden(std::int16_t block) {
    for (std::int16_t i = 0; i < db_.FuncHidden(); ++i) {
        if (!isInStep(block)) return Visit::Stop;
        slot_ = 0;
        bool ok = true;
        put_constant(slot_, ok);
        db_.ConstantMoveNext();
        if (ok) continue;
        abort(kSyncReason);
        return Visit::Stop;
    }
    return Visit::Done;
}

/// The constants' own order must be that of the blocks: a row too many or too few would shift all that follows.
bool BlockDownload::isInStep(std::int16_t block) {
    const bool hasRow = !db_.ConstantEOF();
    const std::string found = hasRow ? joined(db_.ConstantBlockNumber()) : std::string{};
    if (hasRow && db_.ConstantBlockNumber() == block) return true;
    fail({.text = "Block = " + joined(block) + "\n Constant = " + found + "\nDatabase Sync Error\nDOWNLOAD ABORTED",
          .icon = Icon::Warning},
         kSyncReason);
    return false;
}

void BlockDownload::slotOfParameter(std::int32_t number) {
    db_.ParamSeek(db_.FuncFN(), number);
    switch (db_.ParamType()) {
        case kPlainParameter: slot_ = db_.ConstantValue(); break;
        case kDecimalCountParameter:
        case kCountedParameter: slot_ = toInt32(std::int64_t{db_.ConstantValue()} * kHighHalf); break;
        case kStringParameter: slot_ = 0; break;
        default: break;  // what the last slot left goes out again
    }
}

void BlockDownload::fillUp() {
    while (constants_sent < kFilledSlots && !bench_.xfer_abort) {
        slot_ = 0;
        bool ok = true;
        put_constant(slot_, ok);
    }
}

/// Appends a slot, and sends the frame that it fills. Leaves just the value's lower 16 bits in `value`. A frame that a
/// Cancel kept back has not failed: `ok` is then as it was for the one before.
void BlockDownload::put_constant(std::int32_t& value, bool& ok) {
    const std::int32_t lower = value & 0xFFFF;
    int index = kDataStart + kSlotLength * slot_in_frame;
    comm_.put_word(index, value >> 16);
    comm_.put_word(index, lower);
    value = lower;
    ++slot_in_frame;
    ++constants_sent;
    ok = slot_in_frame < kSlotsPerFrame || sendConstantsFrame();
}

bool BlockDownload::sendConstantsFrame() {
    slot_in_frame = 0;
    // The block goes on to its end, but no frame leaves any more.
    if (bench_.xfer_abort) return constantsWent_;
    int index = 0;
    // Not a new frame: the slots stand in it already.
    comm_.put_byte(index, static_cast<int>(Command::Write));
    comm_.put_byte(index, static_cast<int>(Section::Constants));
    comm_.put_byte(index, kConstantsFrame);
    comm_.put_word(index, image_offset);
    comm_.sum_xmit_bfr(kDataStart + kConstantsFrame - 1);
    comm_.send_and_get(kConstantsFrame + kAroundData, kShortReply);
    comm_.bank_delay();
    if (!bench_.xfer_ok && !comm_.wasKeptBack()) {
        // Nil where the last attempt was silent: the time is up already.
        comm_.pumpUntilTimedOut(kSecondTryTick);
        if (!bench_.xfer_abort) comm_.send_and_get(kConstantsFrame + kAroundData, kShortReply);
        constantsWent_ = bench_.xfer_ok;
        if (constantsWent_) comm_.forgiveFailure();
    }
    if (!constantsWent_) {
        fail({.text = "Error Downloading Constant # " + joined(image_offset)}, "Form Comm Download constant fail");
    }
    image_offset = toInt16(image_offset + kConstantsFrame);
    return constantsWent_;
}

// --- the strings ---

void BlockDownload::sendStrings() {
    std::int16_t offset = image_offset;
    db_.ParmstrMoveFirst();
    if (!db_.ParmstrEOF()) {
        for (int i = 0; i < kMostStrings && sendString(offset); ++i) {
        }
    }
    countUnsent();
    int index = comm_.put_write_head(Section::Constants, 2, offset);
    comm_.put_word(index, kStringsEnd);
    comm_.send_section_frame(2);
}

/// The rows from the current one on stay here.
void BlockDownload::countUnsent() {
    for (; !db_.ParmstrEOF(); db_.ParmstrMoveNext()) ++comm_.unsentStrings;
}

/// Which parameter the current row's text belongs to. Nothing where its block has no such string: the row is a
/// left-over of another function.
std::optional<BlockDownload::StringPlace> BlockDownload::placeOfString() {
    const auto block = static_cast<std::size_t>(db_.ParmstrBlockNumber());
    if (block >= bench_.FnOfBlock.size()) return std::nullopt;
    db_.FuncSeekI(bench_.FnOfBlock[block]);
    const std::int32_t number = db_.ParmstrOffset() - db_.FuncInputs() + 1;
    db_.ParamSeek(db_.FuncFN(), number);
    if (db_.ParamNoMatch() || db_.ParamType() != kStringParameter) return std::nullopt;
    std::int32_t length = -1;
    // A length that can't be read is told in the same words as a row that has no parameter.
    ignoringErrors([&] { length = db_.ParamMax(); });
    if (length < 0 || length > kLongestString) return std::nullopt;
    return StringPlace{.number = number, .length = static_cast<std::int16_t>(length)};
}

/// False ends the records.
bool BlockDownload::sendString(std::int16_t& offset) {
    if (db_.ParmstrEOF()) {
        sendStringRecord(offset, 0, {.number = 0, .length = kUnusedStringLength},
                         std::string(kUnusedStringLength, ' '));
        return true;
    }
    const std::int16_t block = db_.ParmstrBlockNumber();
    const std::string text = db_.ParmstrStr();
    const auto place = placeOfString();
    if (bench_.xfer_abort) return false;
    if (!place) {
        bench_.platform.messageBox.say("Block " + joined(block) + " has no string parameters");
        return false;
    }
    db_.ParmstrMoveNext();
    sendStringRecord(offset, block, *place, text);
    return true;
}

/// Whether the record arrived is not asked: the next one goes out all the same.
void BlockDownload::sendStringRecord(std::int16_t& offset, std::int16_t block, const StringPlace& place,
                                     const std::string& text) {
    const auto count = static_cast<std::int16_t>(place.length + kStringHead + 1);
    int index = comm_.put_write_head(Section::Constants, count, offset);
    comm_.put_word(index, block);
    comm_.put_byte(index, place.number);
    comm_.put_string(index, place.length + 1, text);
    comm_.send_section_frame(count);
    offset = toInt16(offset + count);
}

}  // namespace

std::int32_t countedBytesOfBlocks(Workbench& bench) {
    constexpr std::int16_t kConstantsFrames = kFilledSlots / kSlotsPerFrame;
    constexpr std::int16_t kStringFrame = kStringHead + kUnusedStringLength + 1;
    const auto counted = [](int data) { return frmComm::countedBytes(static_cast<std::int16_t>(data + kAroundData)); };
    bench.db.ParmstrMoveFirst();
    return kTableFrames * counted(kTableFrame) + kConstantsFrames * counted(kConstantsFrame) +
           (bench.db.ParmstrEOF() ? 0 : kMostStrings * counted(kStringFrame)) + counted(2);
}

void DownloadBlocks(Workbench& bench, frmComm& comm) { BlockDownload(bench, comm).run(); }

}  // namespace qrv
