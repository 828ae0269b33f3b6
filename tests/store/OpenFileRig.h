// A new configuration, open: for the tests of `db1`.
#pragma once

#include <functional>
#include <string>

#include "platform/RunTimeError.h"
#include "store/Sqlite.h"
#include "store/db1.h"
#include "twins/ScriptedBox.h"
#include "twins/TemporaryFolder.h"

namespace qrv::test {

/// The number of the error that the action raises, 0 for none.
inline std::int32_t errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const RunTimeError& error) {
        return error.code();
    }
    return 0;
}

/// A new configuration, open.
struct OpenFileRig {
    OpenFileRig() {
        db.create_new_database(path);
        db.open_existing_database(path);
    }
    void reopen() {
        db.close_work_dbs();
        db.open_existing_database(path);
    }
    /// Runs SQL on the closed file, as another program would.
    void alter(const std::string& sql) {
        db.close_work_dbs();
        Sqlite file(path, Sqlite::Mode::ReadWrite);
        file.execute(sql);
    }
    void addConstant(std::int32_t block, std::int32_t offset, std::int32_t value) {
        db.ConstantAddNew();
        db.ConstantBlockNumber(block);
        db.ConstantOffset(offset);
        db.ConstantValue(value);
        db.ConstantUpdate();
    }
    void addAlarm(std::int32_t block, const std::string& text) {
        db.AlarmAddNew();
        db.AlarmBlockNumber(block);
        db.AlarmDescription(text);
        db.AlarmEvent0("");
        db.AlarmEvent1("");
        db.AlarmIsAlarm(true);
        db.AlarmUpdate();
    }

    TemporaryFolder folder;
    std::string path = folder.file("a.qrv");
    ScriptedBox boxes;
    db1 db{boxes};
};

}  // namespace qrv::test
