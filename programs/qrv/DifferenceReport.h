// The differences of two configurations as a command shows them: lines for a reader, JSON for a program, with the names
// of blocks and constants beside the numbers.
#pragma once

#include <string>
#include <vector>

#include "json/Json.h"
#include "tools/ContentDifference.h"
#include "tools/ContentNotes.h"

namespace qrv {

/// Names come from the configuration that has the row, from A where both have it.
class DifferenceNotes {
 public:
    /// Moves the catalogue's cursors whenever a note is made.
    DifferenceNotes(const ConfigurationContent& a, const ConfigurationContent& b, db1& catalogue)
        : a_(a, catalogue), b_(b, catalogue) {}
    [[nodiscard]] std::string noteOf(const RowDifference& difference) {
        return (difference.inA != nullptr ? a_ : b_).noteOf(*difference.table, difference.eitherRow());
    }

 private:
    ContentNotes a_;
    ContentNotes b_;
};

[[nodiscard]] std::string textOf(const std::vector<RowDifference>& differences, DifferenceNotes& notes,
                                 const SideNames& names = {});
/// An array of objects.
[[nodiscard]] Json jsonOf(const std::vector<RowDifference>& differences, DifferenceNotes& notes);
/// "No differences.", "1 difference." ...
[[nodiscard]] std::string countSentence(std::size_t count);

}  // namespace qrv
