#include "link/upLoadBlocks.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <span>
#include <string>

#include "blocks/BlockNumbers.h"
#include "blocks/BlockProgram.h"
#include "blocks/Boards.h"
#include "link/BlockLayout.h"
#include "link/BlockTable.h"
#include "link/UploadHeadings.h"
#include "link/frmComm.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "platform/RunTimeError.h"
#include "store/CatalogueCodes.h"
#include "store/KnownFunctions.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr std::int16_t kRecordsPerRead = 15;
constexpr std::int16_t kTableRead = kRecordsPerRead * kBlockRecordLength;
constexpr std::int16_t kTableReads = kBlockCount / kRecordsPerRead;
static_assert(kTableReads * kRecordsPerRead == kBlockCount);

constexpr std::int16_t kStringRead = 20;
constexpr std::int16_t kLastStringOffset = 24576;
constexpr std::int16_t kStringReads = (kLastStringOffset - kStringsStart) / kStringRead + 1;
constexpr std::int16_t kTextStart = kDataStart + kStringHead;
constexpr std::int16_t kTextEnd = kDataStart + kStringRead;
constexpr std::uint8_t kNoRecord = 255;

/// Of the reads of constants: the first, and one as soon as the 32nd slot of each has been used.
constexpr std::int32_t constantBytes(std::int32_t slots) {
    return (slots / kSlotsPerFrame + 1) * (kConstantsFrame + kAroundData);
}

/// @param functions  the catalogue, in number order
std::int32_t slotsOf(db1& functions, std::int16_t function) {
    functions.FuncSeekI(function);
    return functions.FuncInputs() + functions.FuncParams() + functions.FuncHidden();
}

std::int32_t slotsOfAll(Workbench& bench) {
    bench.db.FuncSetIndex("FN");
    return std::accumulate(
        bench.FnOfBlock.begin(), bench.FnOfBlock.end(), 0,
        [&bench](std::int32_t sum, std::int16_t function) { return sum + slotsOf(bench.db, function); });
}

/// Two boards have the same function; one uses eight blocks and the other five, so this one tells them apart.
constexpr std::int16_t kSixthOutput = 6;

class BlockUpload {
 public:
    BlockUpload(Workbench& bench, frmComm& comm) : bench_(bench), db_(bench.db), comm_(comm) {}

    void run() {
        heading(uploadlog::kBlocks);
        comm_.Open_Comm_Port();
        if (!comm_.port_is_open) return;
        const bool isComplete = poll() && readTable() && readConstants() && readStrings();
        if (isComplete) storeSlots();
        comm_.Close_Comm_Port();
    }

 private:
    void heading(std::string_view text) {
        comm_.printLine(uploadlog::kRule);
        comm_.printLine(text);
        comm_.printLine(uploadlog::kRule);
    }
    /// A read that failed has its own words and its own reason, whether or not the user has cancelled meanwhile.
    bool fail() {
        comm_.Close_Comm_Port();
        comm_.AbortUpload("Bad Response");
        return false;
    }
    [[nodiscard]] std::uint8_t byteAt(int index) const {
        if (static_cast<std::size_t>(index) >= bench_.rcv_bfr.size()) {
            throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
        }
        return bench_.rcv_bfr[static_cast<std::size_t>(index)];
    }

    /// Only the function must be there: what else a short reply lacks is zero.
    [[nodiscard]] BlockRecord recordAt(int index) const {
        static_cast<void>(byteAt(index + kFunctionInRecord));
        const auto rest = std::span(bench_.rcv_bfr).subspan(static_cast<std::size_t>(index));
        std::array<std::uint8_t, kBlockRecordLength> bytes{};
        std::ranges::copy(rest.first(std::min(rest.size(), bytes.size())), bytes.begin());
        return blockRecordOf(bytes);
    }

    bool poll();
    bool read(Section section, std::int16_t count, std::int16_t offset);
    bool readTable();
    void takeFunction(std::int16_t block, const BlockRecord& found);
    void expectSlots(std::int32_t count);
    bool readConstants();
    void readConstantsOf(std::int16_t block);
    void readParameter(std::int16_t block, std::int16_t slot, std::int32_t number);
    void storeConstant(std::int32_t value);
    bool readStrings();
    void takeString();
    [[nodiscard]] bool isThere(std::int16_t block, std::int16_t offset);
    void storeSlots();
    [[nodiscard]] std::string boardAt(std::int16_t firstBlock);
    [[nodiscard]] std::int16_t functionAt(std::int16_t block);

    Workbench& bench_;
    db1& db_;
    frmComm& comm_;
    std::int32_t slots_ = 0;  ///< of the functions read so far, and of the open configuration's behind them
};

bool BlockUpload::poll() {
    comm_.poll_qrm3();
    if (bench_.xfer_ok) return true;
    if (comm_.wasKeptBack()) return false;
    bench_.platform.messageBox.say("Could Not Connect To Target\nCheck Settings And Connection Cables");
    return fail();
}

/// One logged exchange, its offset's line aside. False: it failed, and that was told, or a Cancel came before it.
bool BlockUpload::read(Section section, std::int16_t count, std::int16_t offset) {
    if (bench_.xfer_abort) return false;
    const auto expected = static_cast<std::int16_t>(count + kAroundData);
    comm_.put_read(section, count, offset);
    comm_.PrintXmitBuffer(kReadRequest);
    comm_.send_and_get(kReadRequest, expected);
    comm_.PrintRcvBuffer(expected);
    comm_.PrintRetries();
    comm_.printLine(uploadlog::kEmpty);
    if (bench_.xfer_ok) return true;
    return !comm_.wasKeptBack() && fail();
}

bool BlockUpload::readTable() {
    slots_ = slotsOfAll(bench_);
    std::int16_t block = 0;
    for (std::int16_t i = 0; i < kTableReads; ++i) {
        const auto offset = static_cast<std::int16_t>(i * kTableRead);
        comm_.printLine("Offset:" + printed(offset));
        if (!read(Section::BlockTableBack, kTableRead, offset)) return false;
        for (int record = 0; record < kRecordsPerRead; ++record) {
            takeFunction(block, recordAt(kDataStart + record * kBlockRecordLength));
            ++block;
        }
    }
    return true;
}

void BlockUpload::takeFunction(std::int16_t block, const BlockRecord& found) {
    const std::int16_t& function = bench_.FnOfBlock[static_cast<std::size_t>(block)];
    const std::int32_t others = slots_ - slotsOf(db_, function);
    comm_.uploadFindings.blockTable.push_back(found);
    if (!assign_block_function(bench_, block, found.function)) comm_.uploadFindings.foreignBlocks.push_back(block);
    expectSlots(others + slotsOf(db_, function));
}

void BlockUpload::expectSlots(std::int32_t count) {
    bench_.bytes_total += constantBytes(count) - constantBytes(slots_);
    slots_ = count;
}

/// Neither this first read nor the later ones are asked whether they went well: only the log can tell. False: a Cancel
/// came before one of them, which did not go out. Until one is due the walk goes on with what it has.
bool BlockUpload::readConstants() {
    // Once more from the first to the last, as they are read: a function that the catalogue lacks is taken for the one
    // before it.
    expectSlots(slotsOfAll(bench_));
    heading(uploadlog::kConstants);
    if (bench_.xfer_abort) return false;
    comm_.put_read(Section::Constants, kConstantsFrame, 0);
    comm_.PrintXmitBuffer(kReadRequest);
    comm_.send_and_get(kReadRequest, kConstantsFrame + kAroundData);
    comm_.PrintRcvBuffer(kConstantsFrame + kAroundData);
    comm_.PrintRetries();
    comm_.constant_offset = kConstantsFrame;
    comm_.constant_index = 0;
    if (comm_.wasKeptBack()) return false;
    db_.FuncSetIndex("FN");
    for (std::int16_t block = 0; block < kBlockCount && !comm_.constantsEnded(); ++block) readConstantsOf(block);
    return !comm_.constantsEnded();
}

void BlockUpload::readConstantsOf(std::int16_t block) {
    comm_.printLine("Block: " + printed(block));
    db_.FuncSeekI(bench_.FnOfBlock[static_cast<std::size_t>(block)]);
    std::int16_t slot = 0;
    std::int16_t value = 0;
    for (std::int16_t i = 0; i < db_.FuncInputs() && !comm_.constantsEnded(); ++i) {
        db_.ConstantSeek(block, slot++);
        comm_.get_integer_constant(value);
        storeConstant(value);
    }
    for (std::int32_t number = 1; number <= db_.FuncParams() && !comm_.constantsEnded(); ++number) {
        readParameter(block, slot++, number);
    }
    for (std::int16_t i = 0; i < db_.FuncHidden() && !comm_.constantsEnded(); ++i) {
        db_.ConstantSeek(block, slot++);
        comm_.get_no_constant(value);
        storeConstant(value);
    }
}

void BlockUpload::readParameter(std::int16_t block, std::int16_t slot, std::int32_t number) {
    db_.ConstantSeek(block, slot);
    db_.ParamSeek(db_.FuncFN(), number);
    const std::int16_t type = db_.ParamType();
    if (type == kDecimalCountParameter || type == kCountedParameter) {
        std::int16_t value = 0;
        comm_.get_integer_constant(value);
        storeConstant(value);
        return;
    }
    std::int32_t value = 0;
    comm_.get_long_constant(value);
    storeConstant(value);
}

void BlockUpload::storeConstant(std::int32_t value) {
    db_.ConstantEdit();
    db_.ConstantValue(value);
    db_.ConstantUpdate();
}

bool BlockUpload::readStrings() {
    heading(uploadlog::kStringParams);
    for (std::int16_t offset = kStringsStart; offset <= kLastStringOffset; offset += kStringRead) {
        comm_.printLine("Offset: " + printed(offset));
        if (!read(Section::Constants, kStringRead, offset)) return false;
        // The end's mark ends nothing: it is no record, and what lies behind it is read all the same.
        if (byteAt(kDataStart) < kNoRecord) takeString();
    }
    return true;
}

void BlockUpload::takeString() {
    const int block = byteAt(kDataStart) * 256 + byteAt(kDataStart + 1);
    const std::int32_t number = byteAt(kDataStart + 2);
    std::string text;
    for (int index = kTextStart; index < kTextEnd; ++index) {
        const std::uint8_t byte = byteAt(index);
        if (byte > 31 && byte < 127) text.push_back(static_cast<char>(byte));
    }
    // Records of other lengths than this reading's steps give what looks like a block and is none.
    if (block > kLastBlock) return;
    db_.FuncSeekI(bench_.FnOfBlock[static_cast<std::size_t>(block)]);
    db_.ParamSeek(db_.FuncFN(), number);
    if (db_.ParamNoMatch() || db_.ParamType() != kStringParameter) return;
    const std::int32_t offset = number + db_.FuncInputs() - 1;
    if (isThere(static_cast<std::int16_t>(block), toInt16(offset))) return;
    db_.ParmstrAddNew();
    db_.ParmstrBlockNumber(block);
    db_.ParmstrOffset(offset);
    db_.ParmstrStr(text);
    db_.ParmstrUpdate();
}

/// A second text for the same parameter, which is told. The first one stays.
bool BlockUpload::isThere(std::int16_t block, std::int16_t offset) {
    db_.ParmstrSeek(block, offset);
    if (db_.ParmstrNoMatch()) return false;
    comm_.uploadFindings.repeatedStrings.push_back({.block = block, .offset = offset});
    return true;
}

std::int16_t BlockUpload::functionAt(std::int16_t block) {
    db_.BlockSeek(block);
    return db_.BlockFn();
}

/// The board whose function stands on a slot's first block.
std::string BlockUpload::boardAt(std::int16_t firstBlock) {
    const std::int16_t function = functionAt(firstBlock);
    const auto* known = std::ranges::find(kNumberedBoardFunctions, function, &BoardFunction::number);
    if (known == kNumberedBoardFunctions.end()) return {};
    const Board* found = nullptr;
    for (const Board& board : kBoards) {
        if (board.function != known->name) continue;
        const bool hasSixth = board.blockCount > kSixthOutput;
        const bool isOnlyOne = std::ranges::count(kBoards, known->name, &Board::function) == 1;
        if (isOnlyOne) return std::string(board.text);
        const auto sixth = static_cast<std::int16_t>(firstBlock + kSixthOutput);
        if (hasSixth == (functionAt(sixth) == function)) found = &board;
    }
    return found == nullptr ? std::string{} : std::string(found->text);
}

void BlockUpload::storeSlots() {
    db_.SlotMoveFirst();
    for (std::int16_t slot = 1; slot < kSlotCount; ++slot) {
        db_.SlotMoveNext();
        const std::string text = boardAt(firstBlockOf(slot));
        db_.SlotEdit();
        db_.SlotDescription(text);
        db_.SlotUpdate();
    }
}

}  // namespace

std::int32_t uploadBytesOfBlocks(Workbench& bench) {
    return kShortReply + kTableReads * (kTableRead + kAroundData) + constantBytes(slotsOfAll(bench)) +
           kStringReads * (kStringRead + kAroundData);
}

void upLoadBlocks(Workbench& bench, frmComm& comm) {
    // A reply that is too short, or a program that doesn't fit the catalogue, ends the upload and not the program.
    try {
        BlockUpload(bench, comm).run();
    } catch (const RunTimeError& error) {
        comm.uploadFindings.error = error;
        comm.Close_Comm_Port();
        comm.AbortUpload("Runtime Error");
    }
}

}  // namespace qrv
