#include "blocks/BlockRef.h"

#include "platform/Numerals.h"
#include "store/CatalogueCodes.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

// In files and on the wire: never renumber.
constexpr std::int32_t kBlockBits = 0x3FF;
constexpr int kOrdinalShift = 10;
constexpr std::int32_t kOrdinalBits = 0x1F;
constexpr std::int32_t kDiscreteBit = 0x8000;

BlockRef outputOf(std::int16_t block, std::int16_t ordinal, BlockRef::Kind kind) {
    return {.block = block, .ordinal = ordinal, .kind = ordinal == 0 ? BlockRef::Kind::Main : kind};
}

}  // namespace

BlockRef BlockRef::analog(std::int16_t block, std::int16_t ordinal) { return outputOf(block, ordinal, Kind::Analog); }

BlockRef BlockRef::discrete(std::int16_t block, std::int16_t ordinal) {
    return outputOf(block, ordinal, Kind::Discrete);
}

BlockRef BlockRef::ofWord(std::int32_t word) {
    BlockRef ref{.block = toInt16(word & kBlockBits), .ordinal = toInt16((word >> kOrdinalShift) & kOrdinalBits)};
    if (word < 0) {
        ref.kind = Kind::Discrete;
    } else if (word > kLastBlock) {
        ref.kind = Kind::Analog;
    }
    return ref;
}

std::int16_t BlockRef::word() const {
    const std::int32_t plain = (ordinal << kOrdinalShift) + block;
    return toInt16(kind == Kind::Discrete ? plain - kDiscreteBit : plain);
}

bool BlockRef::isBlock() const { return block <= kLastBlock; }

std::string BlockOutputName(Workbench& bench, std::int32_t word) {
    const BlockRef ref = BlockRef::ofWord(word);
    if (ref.kind == BlockRef::Kind::Main || !ref.isBlock()) return "";
    const std::int16_t function = bench.FnOfBlock[static_cast<std::size_t>(ref.block)];
    bench.db.AuxSeek(function, ref.kind == BlockRef::Kind::Analog ? "A" : "D", ref.ordinal);
    return bench.db.AuxNoMatch() ? std::string(kNoSuchOutput) : bench.db.AuxShort();
}

}  // namespace qrv
