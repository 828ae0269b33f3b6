// Names beside the numbers of a configuration, from the function catalogue: what a block does, what a constant is for,
// which output a reference means. For the reader alone: nothing is ever read back from a note.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "store/ConfigurationContent.h"
#include "store/Workbench.h"
#include "store/db1.h"

namespace qrv {

class ContentNotes {
 public:
    /// @param catalogue  with its catalogue open; its catalogue cursors are moved
    ContentNotes(const ConfigurationContent& content, db1& catalogue);

    /// The note of one row, UTF-8 and without control characters; "" where there is nothing to say.
    [[nodiscard]] std::string noteOf(const Table& table, const TableRow& row);

 private:
    [[nodiscard]] bool seekFunctionOf(std::int32_t block);
    [[nodiscard]] std::string functionName(std::int32_t block);
    [[nodiscard]] std::string referenceName(std::int32_t word);
    [[nodiscard]] std::string slotNote(std::int32_t block, std::int32_t slot);
    [[nodiscard]] std::string constantNote(std::int32_t block, std::int32_t slot, std::int32_t value);
    [[nodiscard]] std::string rawNote(const Table& table, const TableRow& row);

    db1& catalogue_;
    std::array<std::int32_t, kBlockCount> functions_{};
};

}  // namespace qrv
