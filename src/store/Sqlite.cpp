#include "store/Sqlite.h"

#include <sqlite3.h>

#include <array>
#include <cassert>

#include "platform/RunTimeError.h"

namespace qrv {

namespace {

// A full configuration is below 8 MiB; no text of ours comes near this.
constexpr int kMostValueBytes = 16 * 1024 * 1024;
constexpr int kMostSqlBytes = 64 * 1024;
constexpr int kWritesOfABatch = 256;

ErrorNumber numberOf(int resultCode) {
    switch (resultCode & 0xFF) {
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
        case SQLITE_FORMAT: return ErrorNumber::UnrecognizedFormat;
        case SQLITE_FULL: return ErrorNumber::DiskFull;
        case SQLITE_READONLY: return ErrorNumber::ReadOnlyDatabase;
        case SQLITE_CANTOPEN:
        case SQLITE_PERM:
        case SQLITE_AUTH: return ErrorNumber::CouldNotOpenFile;
        case SQLITE_CONSTRAINT:
            return resultCode == SQLITE_CONSTRAINT_NOTNULL ? ErrorNumber::NullInKey : ErrorNumber::DuplicateKey;
        default: return ErrorNumber::DeviceIoError;
    }
}

// A name that begins with "file:" would be read as a URI by a library built so; no absolute path does.
std::string plainName(const std::string& path) { return path.starts_with('/') ? path : "./" + path; }

int openFlags(Sqlite::Mode mode) {
    switch (mode) {
        case Sqlite::Mode::Memory: return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY;
        case Sqlite::Mode::ReadWrite: return SQLITE_OPEN_READWRITE;
        case Sqlite::Mode::ReadOnly: return SQLITE_OPEN_READONLY;
    }
    return SQLITE_OPEN_READONLY;
}

}  // namespace

void Sqlite::Closer::operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }

Sqlite::Sqlite(const std::string& path, Mode mode) : path_(path) {
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(plainName(path).c_str(), &handle,
                                       openFlags(mode) | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE, nullptr);
    handle_.reset(handle);
    if (result != SQLITE_OK) raise(result, "opened");
    sqlite3_extended_result_codes(handle, 1);
    harden();
}

// The file may come from anybody: nothing in its schema is to be trusted or run.
void Sqlite::harden() {
    constexpr std::array kSwitches{
        std::pair{SQLITE_DBCONFIG_DEFENSIVE, 1},      std::pair{SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
        std::pair{SQLITE_DBCONFIG_ENABLE_TRIGGER, 0}, std::pair{SQLITE_DBCONFIG_ENABLE_VIEW, 0},
        std::pair{SQLITE_DBCONFIG_DQS_DML, 0},        std::pair{SQLITE_DBCONFIG_DQS_DDL, 0},
        std::pair{SQLITE_DBCONFIG_ENABLE_FKEY, 0},
    };
    for (const auto& [option, value] : kSwitches) {
        const int result = sqlite3_db_config(handle_.get(), option, value, nullptr);
        if (result != SQLITE_OK) raise(result, "opened safely");
    }
    sqlite3_limit(handle_.get(), SQLITE_LIMIT_LENGTH, kMostValueBytes);
    sqlite3_limit(handle_.get(), SQLITE_LIMIT_SQL_LENGTH, kMostSqlBytes);
    sqlite3_limit(handle_.get(), SQLITE_LIMIT_ATTACHED, 0);
    execute(
        "PRAGMA cell_size_check = ON; PRAGMA mmap_size = 0; PRAGMA temp_store = MEMORY;"
        "PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF");
}

void Sqlite::close() { handle_.reset(); }

void Sqlite::execute(const std::string& sql) {
    assert(isOpen());
    const int result = sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr);
    if (result != SQLITE_OK) raise(result, "used");
}

Statement Sqlite::prepare(const std::string& sql) { return {*this, sql}; }

std::optional<std::int64_t> Sqlite::integerOf(const std::string& sql) {
    Statement statement = prepare(sql);
    if (!statement.step()) return std::nullopt;
    return statement.integer(0);
}

std::optional<std::string> Sqlite::textOf(const std::string& sql) {
    Statement statement = prepare(sql);
    if (!statement.step()) return std::nullopt;
    return std::string(statement.text(0));
}

std::int64_t Sqlite::lastRowId() const { return sqlite3_last_insert_rowid(handle_.get()); }

bool Sqlite::inTransaction() const { return sqlite3_get_autocommit(handle_.get()) == 0; }

void Sqlite::joinBatch() {
    if (batched_ == 0 && inTransaction()) return;
    if (batched_ >= kWritesOfABatch) settle();
    if (batched_ == 0) execute("BEGIN");
    ++batched_;
}

void Sqlite::settle() {
    if (batched_ == 0) return;
    // A full disk may have undone the whole batch, not only the write that met it.
    if (!inTransaction()) {
        throw RunTimeError(ErrorNumber::DeviceIoError, path_ + " has lost changes that could not be written.");
    }
    execute("COMMIT");
    batched_ = 0;
}

std::string Sqlite::bytes() const {
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> copy(
        sqlite3_serialize(handle_.get(), "main", &size, 0), &sqlite3_free);
    if (!copy) raise(SQLITE_NOMEM, "written");
    return {reinterpret_cast<const char*>(copy.get()), static_cast<std::size_t>(size)};
}

void Sqlite::raise(int resultCode, std::string_view doing) const {
    const char* reason = handle_ && sqlite3_errcode(handle_.get()) != SQLITE_OK ? sqlite3_errmsg(handle_.get())
                                                                                : sqlite3_errstr(resultCode);
    throw RunTimeError(numberOf(resultCode),
                       path_ + " could not be " + std::string(doing) + ": " + std::string(reason) + ".");
}

void Statement::Finaliser::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Statement::Statement(Sqlite& database, const std::string& sql) : database_(&database) {
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v3(database.handle_.get(), sql.c_str(), static_cast<int>(sql.size()) + 1,
                                          SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    handle_.reset(statement);
    if (result != SQLITE_OK) database.raise(result, "read");
}

void Statement::check(int resultCode) {
    if (resultCode != SQLITE_OK) database_->raise(resultCode, "used");
}

void Statement::bind(int parameter, std::int64_t value) { check(sqlite3_bind_int64(handle_.get(), parameter, value)); }

void Statement::bindReal(int parameter, double value) { check(sqlite3_bind_double(handle_.get(), parameter, value)); }

void Statement::bindText(int parameter, std::string_view utf8) {
    check(sqlite3_bind_text64(handle_.get(), parameter, utf8.data() == nullptr ? "" : utf8.data(), utf8.size(),
                              SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::bindNull(int parameter) { check(sqlite3_bind_null(handle_.get(), parameter)); }

bool Statement::step() {
    const int result = sqlite3_step(handle_.get());
    if (result == SQLITE_ROW) return true;
    if (result == SQLITE_DONE) return false;
    sqlite3_reset(handle_.get());
    database_->raise(result, "used");
}

void Statement::run() {
    while (step()) {
    }
    reset();
}

void Statement::reset() { sqlite3_reset(handle_.get()); }

Statement::Kind Statement::kind(int column) const {
    switch (sqlite3_column_type(handle_.get(), column)) {
        case SQLITE_INTEGER: return Kind::Integer;
        case SQLITE_FLOAT: return Kind::Real;
        case SQLITE_TEXT: return Kind::Text;
        case SQLITE_BLOB: return Kind::Blob;
        default: return Kind::Null;
    }
}

std::int64_t Statement::integer(int column) const { return sqlite3_column_int64(handle_.get(), column); }

double Statement::real(int column) const { return sqlite3_column_double(handle_.get(), column); }

std::string_view Statement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(handle_.get(), column));
    if (bytes == nullptr) return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column))};
}

int Statement::columnCount() const { return sqlite3_column_count(handle_.get()); }

SqlTransaction::SqlTransaction(Sqlite& database) : database_(database), open_(!database.inTransaction()) {
    if (open_) database_.execute("BEGIN");
}

SqlTransaction::~SqlTransaction() {
    // A rollback that fails leaves what the next open will refuse; there is nobody to tell here.
    if (open_) ignoringErrors([this] { database_.execute("ROLLBACK"); });
}

void SqlTransaction::commit() {
    if (!open_) return;
    database_.execute("COMMIT");
    open_ = false;
}

}  // namespace qrv
