// Two configurations field by field: rows are told by their keys, rows with equal keys by their order.
#pragma once

#include <string>
#include <vector>

#include "store/ConfigurationContent.h"

namespace qrv {

/// One row that differs. Points into the two contents, which outlive it.
struct RowDifference {
    const Table* table = nullptr;
    const TableRow* inA = nullptr;     ///< null: the row is in B alone
    const TableRow* inB = nullptr;     ///< null: the row is in A alone
    std::vector<std::size_t> columns;  ///< of a row in both: those that differ, by ordinal

    [[nodiscard]] const TableRow& eitherRow() const { return inA != nullptr ? *inA : *inB; }
};

/// In the order of the schema and of the keys.
[[nodiscard]] std::vector<RowDifference> differencesBetween(const ConfigurationContent& a,
                                                            const ConfigurationContent& b);

/// How many fields differ; a row that is in one alone counts as one.
[[nodiscard]] std::size_t differenceCount(const std::vector<RowDifference>& differences);

/// What the two contents are called where a row is in one of them alone.
struct SideNames {
    std::string a = "A";
    std::string b = "B";
};

/// One line for each field that differs, or for each row that is in one alone, without line breaks, UTF-8:
/// "Constants BlockNumber=4 Offset=2 ConstantValue: 720 -> 725".
[[nodiscard]] std::vector<std::string> linesOf(const RowDifference& difference, const SideNames& names = {});

}  // namespace qrv
