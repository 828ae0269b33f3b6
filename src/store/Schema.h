// The only description of every table: the SQL, the checks, the cursors' field lookups and the file's validation come
// from here. Used by the whole store; nobody above it knows a column.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qrv {

enum class ColumnType {
    Integer,  ///< 16 bits, signed
    Long,     ///< 32 bits, signed
    Byte,     ///< 8 bits, unsigned
    Boolean,  ///< 0 or -1; any other number reads as true
    Single,   ///< 32-bit float
    Text,
    Memo,
};

struct Column {
    std::string_view name;
    ColumnType type = ColumnType::Integer;
    bool emptyAllowed = false;  ///< Text and Memo: may hold ""
    int size = 0;               ///< Text: most characters; 0 for no limit
    bool needed = false;        ///< the table would take a null, and the file would not open
};

inline constexpr std::size_t kMostKeyParts = 3;

struct Index {
    std::string_view name;  ///< as the tool calls it; the file holds it as "table.name"
    std::string_view parts[kMostKeyParts] = {};
    bool unique = true;

    [[nodiscard]] constexpr std::size_t partCount() const {
        std::size_t count = 0;
        while (count < kMostKeyParts && !parts[count].empty()) ++count;
        return count;
    }
};

/// Whether a table's rows are the same set of keys in every file, or come and go.
enum class RowSet { Fixed, Free };

struct Table {
    std::string_view name;
    std::span<const Column> columns;
    std::span<const Index> indexes;
    RowSet rowSet = RowSet::Free;
    bool nullAllowed = true;  ///< outside the key; the key's fields never hold null

    /// Ordinal of a column, looked up without regard to case; -1 where there is none.
    [[nodiscard]] int columnIndex(std::string_view column) const;
};

/// The 19 tables of a configuration, in the order in which they are created.
[[nodiscard]] std::span<const Table> configurationTables();
/// The five tables of the function catalogue.
[[nodiscard]] std::span<const Table> catalogueTables();
/// A table by name, without regard to case. Asserts that it exists.
[[nodiscard]] const Table& tableNamed(std::span<const Table> tables, std::string_view name);

/// The columns that tell a row of the table from the others: its key, or the number of a list without one. Empty for a
/// table of one row.
[[nodiscard]] std::vector<std::size_t> identityOf(const Table& table);

/// The largest table of a full configuration has 5632 rows; a file that holds more than this is none of ours.
inline constexpr std::size_t kMostRowsOfTable = 200'000;

/// The whole numbers that a column takes.
struct NumberRange {
    std::int32_t least;
    std::int32_t greatest;
};
[[nodiscard]] NumberRange rangeOf(ColumnType type);

/// In the header of the file: "QRVc" for a configuration, "QRVf" for a function catalogue. On disk: never renumber.
inline constexpr std::int32_t kConfigurationApplicationId = 0x51525663;
inline constexpr std::int32_t kCatalogueApplicationId = 0x51525666;
inline constexpr std::int32_t kConfigurationUserVersion = 1;
inline constexpr std::int32_t kCatalogueUserVersion = 1;

/// The CREATE TABLE statement: STRICT, with a CHECK for all that the column refuses.
[[nodiscard]] std::string createTableSql(const Table& table);
/// True for a column that stands in one of the table's indexes.
[[nodiscard]] bool isKeyPart(const Table& table, std::string_view column);
/// False: a file with a null in this column doesn't open.
[[nodiscard]] bool mayBeNull(const Table& table, const Column& column);
/// The CREATE INDEX statement of one index.
[[nodiscard]] std::string createIndexSql(const Table& table, const Index& index);
/// One column as it stands in CREATE TABLE. @param isRequired  refuses null
[[nodiscard]] std::string columnSql(const Column& column, bool isRequired);
/// True for a text that a column counts as empty: the file measures a text to its first character of code 0.
[[nodiscard]] constexpr bool countsAsEmpty(std::string_view text) { return text.empty() || text.front() == '\0'; }
/// A name in brackets, as SQL takes it.
[[nodiscard]] std::string bracketed(std::string_view name);

/// True for two ASCII texts that differ at most in case.
[[nodiscard]] constexpr bool sameName(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    const auto folded = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (folded(a[i]) != folded(b[i])) return false;
    }
    return true;
}

}  // namespace qrv
