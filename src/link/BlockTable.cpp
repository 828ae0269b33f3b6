#include "link/BlockTable.h"

#include <optional>

#include "store/db1.h"

namespace qrv {

namespace {

std::int32_t wordAt(std::span<const std::uint8_t, kBlockRecordLength> bytes, std::size_t at) {
    return bytes[at] * 256 + bytes[at + 1];
}

class Examination {
 public:
    Examination(std::span<const BlockRecord> table, db1& catalogue) : table_(table), catalogue_(catalogue) {}

    std::vector<BlockTableFault> run() {
        catalogue_.FuncSetIndex("FN");
        std::optional<BlockPlaces> wanted = BlockPlaces{};
        for (std::size_t i = 0; i < table_.size(); ++i) {
            block_ = static_cast<std::int16_t>(i);
            wanted = examine(table_[i], wanted);
        }
        return faults_;
    }

 private:
    /// Gives the next block's places, if the function is known.
    std::optional<BlockPlaces> examine(const BlockRecord& record, const std::optional<BlockPlaces>& wanted) {
        if (wanted) {
            compare("temporary RAM address", wanted->temporary, record.places.temporary);
            compare("constant index", wanted->constant, record.places.constant);
            compare("retentive RAM address", wanted->retentive, record.places.retentive);
        }
        catalogue_.FuncSeekI(record.function);
        if (catalogue_.FuncNoMatch()) return std::nullopt;
        compare("function type", catalogue_.FuncFtype(), record.type);
        return placesBehind(catalogue_, record.places);
    }

    void compare(std::string_view field, std::int32_t wanted, std::int32_t found) {
        if (wanted == found) return;
        faults_.push_back({.block = block_, .field = field, .wanted = wanted, .found = found});
    }

    std::span<const BlockRecord> table_;
    db1& catalogue_;
    std::int16_t block_ = 0;
    std::vector<BlockTableFault> faults_;
};

}  // namespace

BlockPlaces placesBehind(db1& catalogue, const BlockPlaces& places) {
    return {
        .temporary = places.temporary + catalogue.FuncIcycle(),
        .constant = places.constant + catalogue.FuncInputs() + catalogue.FuncParams() + catalogue.FuncHidden(),
        .retentive = places.retentive + catalogue.FuncVolRam(),
    };
}

BlockRecord blockRecordOf(std::span<const std::uint8_t, kBlockRecordLength> bytes) {
    return {.function = bytes[kFunctionInRecord],
            .places = {.temporary = wordAt(bytes, 2), .constant = wordAt(bytes, 4), .retentive = wordAt(bytes, 6)},
            .type = bytes[8]};
}

std::vector<BlockTableFault> faultsOf(std::span<const BlockRecord> table, db1& catalogue) {
    return Examination(table, catalogue).run();
}

}  // namespace qrv
