#include "store/CatalogueWriter.h"

#include <array>

#include "store/Recordset.h"
#include "store/Schema.h"
#include "store/Sqlite.h"
#include "store/TableWriter.h"

namespace qrv {

namespace {

void createTables(Sqlite& file) {
    for (const Table& table : catalogueTables()) {
        file.execute(createTableSql(table));
        for (const Index& index : table.indexes) file.execute(createIndexSql(table, index));
    }
}

void addFunctions(const CatalogueText& text, Sqlite& file) {
    TableWriter writer(tableNamed(catalogueTables(), "Funcs"), file);
    for (const FunctionRow& row : text.functions) {
        writer.insert(std::array<Value, 11>{row.fn, row.name, row.icycle, row.volRam, row.inputs, row.params,
                                            row.hidden, row.single, row.auxAnalogs, row.auxDiscretes, row.ftype});
    }
}

void addInputs(const CatalogueText& text, Sqlite& file) {
    TableWriter writer(tableNamed(catalogueTables(), "Inputs"), file);
    for (const InputRow& row : text.inputs) {
        writer.insert(std::array<Value, 6>{row.fn, row.number, row.description, row.shortName, row.security, row.type});
    }
}

void addParams(const CatalogueText& text, Sqlite& file) {
    TableWriter writer(tableNamed(catalogueTables(), "Params"), file);
    for (const ParamRow& row : text.params) {
        writer.insert(std::array<Value, 10>{row.fn, row.number, row.description, row.offset, row.min, row.max,
                                            row.initial, row.decimal, row.security, row.type});
    }
}

void addAuxOutputs(const CatalogueText& text, Sqlite& file) {
    TableWriter writer(tableNamed(catalogueTables(), "AuxOutputs"), file);
    for (const AuxOutputRow& row : text.auxOutputs) {
        writer.insert(std::array<Value, 5>{row.fn, row.kind, row.ordinal, row.description, row.shortText});
    }
}

void addVersions(const CatalogueText& text, Sqlite& file) {
    TableWriter writer(tableNamed(catalogueTables(), "Version"), file);
    for (const std::string& version : text.versions) writer.insert(std::array<Value, 1>{version});
}

}  // namespace

std::string catalogueFile(const CatalogueText& text) {
    Sqlite file("QRVDATA.DAT", Sqlite::Mode::Memory);
    file.execute("PRAGMA application_id = " + std::to_string(kCatalogueApplicationId));
    file.execute("PRAGMA user_version = " + std::to_string(kCatalogueUserVersion));
    SqlTransaction transaction(file);
    createTables(file);
    addFunctions(text, file);
    addInputs(text, file);
    addParams(text, file);
    addAuxOutputs(text, file);
    addVersions(text, file);
    transaction.commit();
    return file.bytes();
}

}  // namespace qrv
