#include "store/db1.h"

#include <cassert>
#include <utility>

#include "platform/Files.h"
#include "platform/MessageBox.h"
#include "store/ConfigurationContent.h"
#include "store/ConfigurationFile.h"
#include "store/DefaultRows.h"
#include "store/Sqlite.h"
#include "store/WorkCopy.h"

namespace qrv {

namespace {

constexpr const char* kCatalogueName = "/QRVDATA.DAT";

const Table& configurationTable(std::string_view name) { return tableNamed(configurationTables(), name); }

bool tableIsMissing(Sqlite& file, std::string_view name) { return !hasTable(file, configurationTable(name)); }

void addTableWithRows(Sqlite& file, std::string_view name) {
    addTable(file, configurationTable(name));
    addRows(file, configurationTable(name), defaultRows(configurationTable(name)));
}

/// The engine's own check of pages and indexes; a file may be damaged and still pass.
void checkIntegrity(Sqlite& file) {
    const std::string verdict = file.textOf("PRAGMA integrity_check(1)").value_or("");
    if (verdict != "ok") {
        throw RunTimeError(ErrorNumber::UnrecognizedFormat, file.path() + " is damaged: " + verdict + ".");
    }
}

}  // namespace

db1::db1(MessageBox& messageBox) : messageBox_(messageBox) {}

db1::~db1() = default;

std::size_t db1::columnOf(const Recordset& rows, std::string_view table, std::string_view column) {
    assert(sameName(rows.table().name, table));
    static_cast<void>(table);
    const int ordinal = rows.table().columnIndex(column);
    assert(ordinal >= 0);
    return static_cast<std::size_t>(ordinal);
}

// --- the catalogue ---

void db1::open_database(const std::string& folder) {
    const std::string path = folder + kCatalogueName;
    if (!exists(path)) throw RunTimeError(ErrorNumber::FileNotFound, path + " was not found.");
    auto file = std::make_unique<Sqlite>(path, Sqlite::Mode::ReadOnly);
    checkIntegrity(*file);
    const auto cursor = [&file](std::string_view table) {
        return Recordset(tableNamed(catalogueTables(), table), *file, false, Recordset::Missed::KeepsRow);
    };
    inputs_ = cursor("Inputs");
    params_ = cursor("Params");
    funcs_ = cursor("Funcs");
    catalogueVersion_ = cursor("Version");
    auxOutputs_ = cursor("AuxOutputs");
    inputs_->setIndex("PrimaryKey");
    params_->setIndex("PrimaryKey");
    auxOutputs_->setIndex("PrimaryKey");
    if (catalogueVersion_->rowCount() != 1) {
        throw RunTimeError(ErrorNumber::UnrecognizedFormat, path + " is no function catalogue: it has no version.");
    }
    catalogueVersion_->moveFirst();
    catalogue_ = std::move(file);
}

void db1::close_database() {
    for (Cursor* cursor : {&inputs_, &params_, &funcs_, &catalogueVersion_, &auxOutputs_}) cursor->reset();
    catalogue_.reset();
}

// --- the configuration ---

void db1::create_new_database(const std::string& path) { makeConfigurationFile(path, contentOfNewFile()); }

std::int32_t db1::TestVisioComments(const std::string& path) {
    Sqlite file(path, Sqlite::Mode::ReadOnly);
    return hasVisioComment(file) ? 0 : static_cast<std::int32_t>(ErrorNumber::ItemNotFound);
}

void db1::open_existing_database(const std::string& path) {
    close_work_dbs();
    readOnly_ = isReadOnly(path);
    try {
        openWorkFile(path);
        openMainCursors();
        openPager();
        chooseIndexes();
        openModbus();
        for (const Cursor* cursor : {&blocks_, &comments_, &slots_, &menus_, &charts_, &pens_, &screens_, &egus_,
                                     &loops_, &version_, &pagers_, &modcomm_}) {
            checkFixedRows(*work_, **cursor);
        }
        comments_->moveFirst();
        version_->moveFirst();
        modcomm_->moveFirst();
    } catch (const RunTimeError&) {
        discardWork();
        throw;
    }
}

void db1::openWorkFile(const std::string& path) {
    const auto mode = readOnly_ ? Sqlite::Mode::ReadOnly : Sqlite::Mode::ReadWrite;
    work_ = std::make_unique<Sqlite>(path, mode);
    compareWithSchema(*work_);
    checkIntegrity(*work_);
    if (hasVisioComment(*work_)) return;
    work_.reset();
    {
        const WritableForNow writable(path);
        Sqlite file(path, Sqlite::Mode::ReadWrite);
        addVisioComment(file);
    }
    work_ = std::make_unique<Sqlite>(path, mode);
}

void db1::settle() {
    if (work_) work_->settle();
}

Recordset db1::configurationCursor(std::string_view table) { return {configurationTable(table), *work_, !readOnly_}; }

void db1::openMainCursors() {
    blocks_ = configurationCursor("Block List");
    constants_ = configurationCursor("Constants");
    comments_ = configurationCursor("Comments");
    alarms_ = configurationCursor("Alarm List");
    slots_ = configurationCursor("Slots");
    menus_ = configurationCursor("Menu List");
    menuItems_ = configurationCursor("Menu Items");
    charts_ = configurationCursor("Chart List");
    pens_ = configurationCursor("Pens");
    screens_ = configurationCursor("Screen List");
    screenItems_ = configurationCursor("screen Items");
    strings_ = configurationCursor("ParmString");
    egus_ = configurationCursor("EGUs");
    loops_ = configurationCursor("Loop List");
    blockEgus_ = configurationCursor("Block EGUs");
    version_ = configurationCursor("version");
}

void db1::openPager() {
    if (tableIsMissing(*work_, "Pager")) {
        messageBox_.say("no pager table");
        addTableWithRows(*work_, "Pager");
    }
    pagers_ = configurationCursor("Pager");
}

// The alarms keep no index until their first seek: they are walked as they were added until then.
void db1::chooseIndexes() {
    blocks_->setIndex("BlockNumber");
    for (Cursor* cursor : {&screens_, &screenItems_, &constants_, &menus_, &menuItems_, &charts_, &pens_, &strings_,
                           &egus_, &loops_, &blockEgus_}) {
        (*cursor)->setIndex("PrimaryKey");
    }
}

void db1::openModbus() {
    const bool pollsMissing = tableIsMissing(*work_, "Poll List");
    const bool modcommMissing = tableIsMissing(*work_, "mod comm");
    if (pollsMissing || modcommMissing) messageBox_.say("no poll list");
    if (pollsMissing) addTableWithRows(*work_, "Poll List");
    if (modcommMissing) addTableWithRows(*work_, "mod comm");
    polls_ = configurationCursor("Poll List");
    polls_->setIndex("PrimaryKey");
    modcomm_ = configurationCursor("mod comm");
}

void db1::close_work_dbs() {
    try {
        settle();
    } catch (const RunTimeError&) {
        discardWork();
        throw;
    }
    discardWork();
}

// Closes without a last write: for a file that could not be opened, and at the end.
void db1::discardWork() {
    for (Cursor* cursor :
         {&blocks_, &constants_, &comments_, &alarms_, &slots_, &screens_, &screenItems_, &menus_, &menuItems_,
          &charts_, &pens_, &strings_, &egus_, &loops_, &blockEgus_, &version_, &pagers_, &polls_, &modcomm_}) {
        cursor->reset();
    }
    work_.reset();
}

// --- operations that do more than forward ---

void db1::updateIgnoringErrors(Cursor& cursor) {
    Recordset& rows = opened(cursor);
    // A row that is there already, or that the file refuses, is left out and the caller goes on.
    if (!ignoringErrors([&rows] { rows.update(); })) rows.cancelUpdate();
}

void db1::ConstantUpdate() { updateIgnoringErrors(constants_); }

void db1::MenuItemUpdate() { updateIgnoringErrors(menuItems_); }

void db1::ScreenItemUpdate() { updateIgnoringErrors(screenItems_); }

void db1::ParmstrUpdate() { updateIgnoringErrors(strings_); }

void db1::ParmstrMoveFirst() {
    Recordset& rows = opened(strings_);
    // A program without string parameters has an empty table.
    ignoringErrors([&rows] { rows.moveFirst(); });
}

void db1::moveFirstIfAny(Cursor& cursor) {
    Recordset& rows = opened(cursor);
    if (rows.rowCount() > 0) rows.moveFirst();
}

void db1::AlarmMoveFirst() { moveFirstIfAny(alarms_); }

void db1::BEGUMoveFirst() { moveFirstIfAny(blockEgus_); }

void db1::PollMoveFirst() {
    Recordset& rows = opened(polls_);
    if (rows.rowCount() == 0) {
        messageBox_.say("Poll Recordset is Empty");
    } else {
        rows.moveFirst();
    }
}

void db1::AlarmSeekBlock(std::int32_t block) {
    opened(alarms_).setIndex("PrimaryKey");
    opened(alarms_).seek(std::array<KeyPart, 1>{block});
}

void db1::FuncSetIndex(std::string_view which) { opened(funcs_).setIndex(which == "FN" ? "PrimaryKey" : "Fname"); }

void db1::FuncSeekI(std::int32_t function) { opened(funcs_).seek(std::array<KeyPart, 1>{function}); }

void db1::FuncSeekS(const std::string& name) { opened(funcs_).seek(std::array<KeyPart, 1>{name}); }

void db1::AuxSeek(std::int32_t function, const std::string& kind, std::int32_t ordinal) {
    opened(auxOutputs_).seek(std::array<KeyPart, 3>{function, kind, ordinal});
}

}  // namespace qrv
