// The flat face of the store: for each table one open cursor, its operations and one accessor for each field. No caller
// sees the engine. A seek moves the one cursor of its table: a loop that looks up its own table seeks back.
//
// Getter and setter of a field bear the same name: `db.BlockFn()` reads the current row, `db.BlockFn(7)` stores between
// XEdit or XAddNew and XUpdate. Numbers are checked against their column (RunTimeError 6), a null is RunTimeError 94
// unless the accessor's type says otherwise, and a family without an open file is RunTimeError 91.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "store/FieldTypes.h"
#include "store/Recordset.h"

namespace qrv {

class MessageBox;
class Sqlite;

class db1 {
 public:
    /// @param messageBox  for the few notices of the store's own; outlives this object
    explicit db1(MessageBox& messageBox);
    ~db1();
    db1(const db1&) = delete;
    db1& operator=(const db1&) = delete;

    // --- files ---

    /// Opens the catalogue QRVDATA.DAT in `folder` (no separator at the end), read-only. Any fault raises.
    void open_database(const std::string& folder);
    void close_database();
    /// Makes a configuration file with all tables and default rows, whole or not at all, and leaves it closed.
    void create_new_database(const std::string& path);
    /// Opens a work file, adds what older files lack, and opens all cursors.
    void open_existing_database(const std::string& path);
    /// 0 if the file's block list has its second comment, else the error number of the lookup.
    [[nodiscard]] std::int32_t TestVisioComments(const std::string& path);
    void close_work_dbs();
    /// The open file had the read-only attribute.
    [[nodiscard]] bool ReadOnlyFile() const { return readOnly_; }

    // --- operations that do more than forward ---

    /// Ends an edit or addition and drops whatever the engine refuses, the pending row included.
    void ConstantUpdate();
    void MenuItemUpdate();
    void ScreenItemUpdate();
    void ParmstrUpdate();
    /// Harmless on an empty table.
    void ParmstrMoveFirst();
    void AlarmMoveFirst();
    void BEGUMoveFirst();
    /// On an empty table a notice, and no move.
    void PollMoveFirst();
    /// Chooses block order first: until then the alarms are walked in the order in which they were added.
    void AlarmSeekBlock(std::int32_t block);

    // --- the catalogue; a seek that misses keeps the previous row ---

    /// Exactly "FN" chooses order and seeks by number; anything else by name.
    void FuncSetIndex(std::string_view which);
    void FuncSeekI(std::int32_t function);
    /// Without regard to case.
    void FuncSeekS(const std::string& name);
    /// @param kind  "A" or "D"  @param ordinal  from 1
    void AuxSeek(std::int32_t function, const std::string& kind, std::int32_t ordinal);

    // --- the families: declared from their table ---

#define QRV_OPERATION(accessor, recordset, operation) \
    void accessor() { opened(recordset).operation(); }
#define QRV_FLAG(accessor, recordset, question) \
    [[nodiscard]] bool accessor() const { return opened(recordset).question(); }
#define QRV_COUNT(accessor, recordset) \
    [[nodiscard]] std::int32_t accessor() const { return opened(recordset).rowCount(); }
#define QRV_SEEK1(accessor, recordset) \
    void accessor(std::int32_t key) { opened(recordset).seek(std::array<KeyPart, 1>{key}); }
#define QRV_SEEK2(accessor, recordset)                                 \
    void accessor(std::int32_t first, std::int32_t second) {           \
        opened(recordset).seek(std::array<KeyPart, 2>{first, second}); \
    }
#define QRV_READ_ONLY(accessor, recordset, table, column, type)                        \
    [[nodiscard]] field::type::Got accessor() const {                                  \
        static const std::size_t ordinal = columnOf(opened(recordset), table, column); \
        return field::type::get(opened(recordset), ordinal);                           \
    }
#define QRV_FIELD(accessor, recordset, table, column, type)                            \
    QRV_READ_ONLY(accessor, recordset, table, column, type)                            \
    void accessor(field::type::Given value) {                                          \
        static const std::size_t ordinal = columnOf(opened(recordset), table, column); \
        opened(recordset).setValue(ordinal, field::type::stored(std::move(value)));    \
    }
#include "store/db1Families.def"

 private:
    using Cursor = std::optional<Recordset>;

    static const Recordset& opened(const Cursor& cursor) {
        if (!cursor) throw RunTimeError(ErrorNumber::ObjectNotSet);
        return *cursor;
    }
    static Recordset& opened(Cursor& cursor) {
        if (!cursor) throw RunTimeError(ErrorNumber::ObjectNotSet);
        return *cursor;
    }
    static std::size_t columnOf(const Recordset& rows, std::string_view table, std::string_view column);
    static void updateIgnoringErrors(Cursor& cursor);
    static void moveFirstIfAny(Cursor& cursor);

    friend struct Workbench;  // for settle()

    /// Sees to it that every change so far is in the work file.
    void settle();
    void discardWork();
    void openWorkFile(const std::string& path);
    [[nodiscard]] Recordset configurationCursor(std::string_view table);
    void openMainCursors();
    void openPager();
    void openModbus();
    void chooseIndexes();

    MessageBox& messageBox_;

    std::unique_ptr<Sqlite> work_;
    Cursor blocks_, comments_, constants_, version_;
    bool readOnly_ = false;
    std::unique_ptr<Sqlite> catalogue_;
    Cursor inputs_, params_, funcs_, catalogueVersion_, auxOutputs_;
    Cursor pagers_, alarms_, slots_, menus_, menuItems_, screens_, screenItems_, charts_, pens_, strings_, egus_,
        blockEgus_, loops_, polls_, modcomm_;
};

}  // namespace qrv
