// What the store costs against what bounds it. Usage: bench_store
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <utility>

#include "LargeFile.h"
#include "Measure.h"
#include "platform/Clock.h"
#include "platform/EventPump.h"
#include "platform/FileDialog.h"
#include "platform/Files.h"
#include "platform/FormHost.h"
#include "platform/MessageBox.h"
#include "platform/Settings.h"
#include "store/DefaultRows.h"
#include "store/LifeCycle.h"
#include "store/Sqlite.h"
#include "store/TableWriter.h"
#include "twins/FalseClock.h"
#include "twins/MemorySettings.h"
#include "twins/NoPort.h"
#include "twins/TemporaryFolder.h"

namespace qrv {
namespace {

struct SilentBox final : MessageBox {
    Answer ask(const Notice&) override { return Answer::None; }
};
struct NoDialog final : FileDialog {
    std::string ask(const FileQuestion&) override { return {}; }
};
struct NoHost final : FormHost {
    void showModal(Form&) override {}
    void show(Form&) override {}
    void hide(Form&) override {}
    void unload(Form&) override {}
    [[nodiscard]] bool isVisible(const Form&) const override { return false; }
    void refresh(Form&) override {}
    void endProgram(int) override {}
};

struct Rig {
    TemporaryFolder folder;
    SilentBox boxes;
    NoDialog dialogs;
    NoHost host;
    MemorySettings settings;
    FalseClock clock;
    FalsePump pump{clock};
    NoPort port;
    Workbench bench{Platform{boxes, dialogs, host, settings, clock, pump, port},
                    ProgramPlaces{.work = folder.path(), .catalogue = "", .backups = folder.file("kept")}};
    std::string large = folder.file("large.qrv");
};

constexpr std::int16_t kAnyFunction = 10;  // the store knows no functions

std::string newFileSql() {
    std::string sql = "PRAGMA application_id = 1; BEGIN;\n";
    for (const Table& table : configurationTables()) {
        sql += createTableSql(table) + ";\n";
        for (const Index& index : table.indexes) sql += createIndexSql(table, index) + ";\n";
    }
    for (const Table& table : configurationTables()) {
        for (const auto& row : defaultRows(table)) {
            sql += "INSERT INTO " + bracketed(table.name) + " VALUES (";
            for (std::size_t i = 0; i < row.size(); ++i) {
                if (i > 0) sql += ",";
                if (const auto* number = std::get_if<std::int32_t>(&row[i])) {
                    sql += std::to_string(*number);
                } else if (const auto* real = std::get_if<float>(&row[i])) {
                    sql += std::to_string(*real);
                } else if (const auto* text = std::get_if<std::string>(&row[i])) {
                    sql += "'" + *text + "'";
                } else {
                    sql += "NULL";
                }
            }
            sql += ");\n";
        }
    }
    return sql + "COMMIT;\n";
}

void newFile(Rig& rig) {
    const std::string ours = rig.folder.file("new.qrv");
    const std::string theirs = rig.folder.file("shell.qrv");
    const std::string script = rig.folder.file("new.sql");
    std::ofstream(script) << newFileSql();
    const std::string command = "rm -f " + theirs + "; sqlite3 " + theirs + " < " + script;
    compare(
        "new file", [&] { rig.bench.db.create_new_database(ours); }, "sqlite3 shell, same SQL, one transaction",
        [&] {
            if (std::system(command.c_str()) != 0) std::abort();
        },
        1.0);
}

void readAllByLibrary(const std::string& path) {
    sqlite3* handle = nullptr;
    if (sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) std::abort();
    sqlite3_exec(handle, "PRAGMA quick_check", nullptr, nullptr, nullptr);
    long long sum = 0;
    for (const Table& table : configurationTables()) {
        sqlite3_stmt* rows = nullptr;
        const std::string sql = "SELECT * FROM " + bracketed(table.name);
        sqlite3_prepare_v2(handle, sql.c_str(), -1, &rows, nullptr);
        while (sqlite3_step(rows) == SQLITE_ROW) {
            for (int i = 0; i < sqlite3_column_count(rows); ++i) {
                if (sqlite3_column_type(rows, i) == SQLITE_TEXT) {
                    sum += sqlite3_column_bytes(rows, i) + sqlite3_column_text(rows, i)[0];
                } else {
                    sum += sqlite3_column_int64(rows, i);
                }
            }
        }
        sqlite3_finalize(rows);
    }
    sqlite3_close(handle);
    if (sum == 42) std::abort();
}

void openLarge(Rig& rig) {
    const std::string copy = rig.folder.file("copy.qrv");
    compare(
        "open large",
        [&] {
            OpenConfiguration(rig.bench, rig.large);
            CloseConfiguration(rig.bench, Answer::No);
        },
        "file copy + quick_check + every row read",
        [&] {
            std::filesystem::copy_file(rig.large, copy, std::filesystem::copy_options::overwrite_existing);
            readAllByLibrary(copy);
        },
        2.0);
}

/// A large file whose damage shows in the last row that is read, one whose pages were struck all over, and one whose
/// second half is gone.
std::vector<std::pair<std::string, std::string>> damagedFiles(const Rig& rig) {
    const std::string lastRow = rig.folder.file("last row.qrv");
    std::filesystem::copy_file(rig.large, lastRow);
    Sqlite(lastRow, Sqlite::Mode::ReadWrite)
        .execute("UPDATE [Poll List] SET Comments = char(9731) WHERE Offset = (SELECT max(Offset) FROM [Poll List])");
    const std::string bytes = readWhole(rig.large, 1U << 26U).bytes;
    const std::string half = rig.folder.file("half.qrv");
    std::ofstream(half, std::ios::binary) << bytes.substr(0, bytes.size() / 2);
    std::string changed = bytes;
    constexpr std::size_t kStride = 4096 + 17;
    for (std::size_t place = 8192; place < changed.size(); place += kStride) changed[place] ^= '\x55';
    const std::string struck = rig.folder.file("struck.qrv");
    std::ofstream(struck, std::ios::binary) << changed;
    return {{"its last row", lastRow}, {"every page", struck}, {"a half that is gone", half}};
}

/// What a user waits for: two seconds are the most that a refusal may take.
void refuseDamaged(Rig& rig) {
    for (const auto& [damage, path] : damagedFiles(rig)) {
        compare(
            "large file refused for " + damage,
            [&rig, &path] {
                if (ignoringErrors([&] { OpenConfiguration(rig.bench, path); })) std::abort();
            },
            "the sound one opened",
            [&rig] {
                OpenConfiguration(rig.bench, rig.large);
                CloseConfiguration(rig.bench, Answer::No);
            },
            1.25);
    }
}

void bareSave(const std::string& bytes, const std::string& folder, const std::string& target) {
    const std::string temporary = target + ".new";
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto written = write(file, bytes.data() + done, bytes.size() - done);
        if (written <= 0) std::abort();
        done += static_cast<std::size_t>(written);
    }
    if (fsync(file) != 0 || close(file) != 0 || rename(temporary.c_str(), target.c_str()) != 0) std::abort();
    const int directory = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fsync(directory) != 0) std::abort();
    close(directory);
}

void saveLarge(Rig& rig) {
    const std::string target = rig.folder.file("bare.qrv");
    const std::string saved = rig.folder.file("saved.qrv");
    const std::string bytes = readWhole(rig.large, 1U << 26U).bytes;
    compare(
        "save large (the copy onto the user's file)",
        [&] {
            if (copyFile(rig.large, saved, Permissions::OfTarget)) std::abort();
        },
        "bare checked write + fsync + rename + fsync", [&] { bareSave(bytes, rig.folder.path(), target); }, 1.5);
}

void seeks(Rig& rig) {
    constexpr int kSeeks = 100'000;
    db1& db = rig.bench.db;
    std::map<std::pair<std::int16_t, std::int16_t>, std::int32_t> plain;
    for (db.ConstantMoveFirst(); !db.ConstantEOF(); db.ConstantMoveNext()) {
        plain[{db.ConstantBlockNumber(), db.ConstantOffset()}] = db.ConstantValue();
    }
    const auto keyOf = [](int n) {
        const int slot = static_cast<int>(static_cast<unsigned>(n) * 2654435761U % kLargeConstants);
        return std::pair<std::int16_t, std::int16_t>(slot / kSlotsOfLargeBlock, slot % kSlotsOfLargeBlock);
    };
    volatile long long sum = 0;
    const auto ours = [&] {
        for (int n = 0; n < kSeeks; ++n) {
            const auto [block, offset] = keyOf(n);
            db.ConstantSeek(block, offset);
            sum = sum + db.ConstantValue();
        }
    };
    compare(
        "100,000 seeks", ours, "std::map",
        [&] {
            for (int n = 0; n < kSeeks; ++n) sum = sum + plain.find(keyOf(n))->second;
        },
        5.0);
    Sqlite file(rig.large, Sqlite::Mode::ReadOnly);
    SqlTransaction transaction(file);
    Statement find = file.prepare("SELECT ConstantValue FROM Constants WHERE BlockNumber = ? AND Offset = ?");
    compare(
        "100,000 seeks", ours, "prepared statement in one transaction",
        [&] {
            for (int n = 0; n < kSeeks; ++n) {
                const auto [block, offset] = keyOf(n);
                find.bind(1, block);
                find.bind(2, offset);
                if (find.step()) sum = sum + find.integer(0);
                find.reset();
            }
        },
        0.3);
}

void scan(Rig& rig) {
    struct Item {
        std::uint8_t x;
        std::uint8_t y;
        std::int16_t block;
        std::string text;
    };
    constexpr int kScans = 100;
    db1& db = rig.bench.db;
    std::vector<Item> plain;
    for (db.ScreenItemMoveFirst(); !db.ScreenItemEOF(); db.ScreenItemMoveNext()) {
        plain.push_back({db.ScreenItemX(), db.ScreenItemY(), db.ScreenItemBlock(), db.ScreenItemText0()});
    }
    volatile long long sum = 0;
    compare(
        "100 scans of Screen Items, three fields a row",
        [&] {
            for (int n = 0; n < kScans; ++n) {
                for (db.ScreenItemMoveFirst(); !db.ScreenItemEOF(); db.ScreenItemMoveNext()) {
                    sum = sum + db.ScreenItemX() + db.ScreenItemY() + db.ScreenItemBlock();
                }
            }
        },
        "the same over an array of structs",
        [&] {
            for (int n = 0; n < kScans; ++n) {
                for (const Item& item : plain) sum = sum + item.x + item.y + item.block;
            }
        },
        20.0);
}

void rewrite(Rig& rig) {
    db1& db = rig.bench.db;
    const std::string copy = rig.folder.file("rewrite.qrv");
    std::filesystem::copy_file(rig.large, copy, std::filesystem::copy_options::overwrite_existing);
    Sqlite file(copy, Sqlite::Mode::ReadWrite);
    int round = 0;
    compare(
        "5,632 constants rewritten",
        [&] {
            ++round;
            for (int n = 0; n < kLargeConstants; ++n) {
                db.ConstantSeek(n / kSlotsOfLargeBlock, n % kSlotsOfLargeBlock);
                db.ConstantEdit();
                db.ConstantValue(n + round);
                db.ConstantUpdate();
            }
        },
        "one prepared statement, one transaction",
        [&] {
            ++round;
            Statement change =
                file.prepare("UPDATE Constants SET ConstantValue = ? WHERE BlockNumber = ? AND Offset = ?");
            SqlTransaction transaction(file);
            for (int n = 0; n < kLargeConstants; ++n) {
                change.bind(1, n + round);
                change.bind(2, n / kSlotsOfLargeBlock);
                change.bind(3, n % kSlotsOfLargeBlock);
                change.run();
            }
            transaction.commit();
        },
        3.0);
}

void run() {
    Rig rig;
    newFile(rig);
    rig.bench.db.create_new_database(rig.large);
    rig.bench.db.open_existing_database(rig.large);
    fillLarge(rig.bench.db, kAnyFunction);
    rig.bench.db.close_work_dbs();
    openLarge(rig);
    refuseDamaged(rig);
    saveLarge(rig);
    OpenConfiguration(rig.bench, rig.large);
    seeks(rig);
    scan(rig);
    rewrite(rig);
    CloseConfiguration(rig.bench, Answer::No);
}

}  // namespace
}  // namespace qrv

int main() { qrv::run(); }
