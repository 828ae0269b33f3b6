// A configuration's content for the tests of the tools, with the function catalogue at hand.
#pragma once

#include <string>
#include <string_view>

#include "store/ConfigurationContent.h"
#include "store/db1.h"
#include "tools/ContentNotes.h"
#include "tools/TextForm.h"
#include "twins/ScriptedBox.h"

namespace qrv {

class ContentRig {
 public:
    ContentRig() { catalogue.open_database(QRV_CATALOGUE_FOLDER); }

    /// A field of a row by its place in the table.
    Value& field(std::string_view table, std::size_t place, std::string_view column) {
        TableContent& rows = content.of(table);
        return rows.rows.at(place).at(static_cast<std::size_t>(rows.table->columnIndex(column)));
    }
    void place(std::size_t block, std::int32_t function, std::int32_t constants) {
        field("Block List", block, "FunctionNumber") = function;
        field("Block List", block, "Constants") = constants;
    }
    void addConstant(std::int32_t block, std::int32_t slot, std::int32_t value) {
        content.of("Constants").rows.push_back({block, slot, value});
    }
    [[nodiscard]] std::string text() {
        ContentNotes notes(content, catalogue);
        return textFormOf(content, notes);
    }

    ScriptedBox boxes;
    db1 catalogue{boxes};
    ConfigurationContent content = contentOfNewFile();
};

}  // namespace qrv
