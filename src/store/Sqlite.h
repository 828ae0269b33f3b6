// The thin face of the SQLite library: a database handle, hardened against a file from a stranger, and statements whose
// values are bound. Only store/ includes this. Failures are RunTimeErrors that name file and reason.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace qrv {

class Statement;

class Sqlite {
 public:
    enum class Mode { Memory, ReadWrite, ReadOnly };

    Sqlite() = default;
    /// Opens the file, or with Mode::Memory a new database in memory. `path` is a file name and never taken as a URI.
    /// Journals stay in memory, for the file is a work copy of this program alone.
    Sqlite(const std::string& path, Mode mode);

    [[nodiscard]] bool isOpen() const { return handle_ != nullptr; }
    void close();

    /// Runs statements without results.
    void execute(const std::string& sql);
    [[nodiscard]] Statement prepare(const std::string& sql);
    /// The first column of the first row as a number; absent where there is no row.
    [[nodiscard]] std::optional<std::int64_t> integerOf(const std::string& sql);
    /// The first column of the first row as UTF-8 text; absent where there is no row.
    [[nodiscard]] std::optional<std::string> textOf(const std::string& sql);
    [[nodiscard]] std::int64_t lastRowId() const;
    [[nodiscard]] bool inTransaction() const;

    /// Joins the next write to those before it in one open transaction, which settle() ends; every so many writes it is
    /// ended on the way. Within a SqlTransaction it does nothing.
    void joinBatch();
    /// Ends the open batch: all writes so far are in the file. Raises where they can't be.
    void settle();

    /// The whole database as the bytes of its file.
    [[nodiscard]] std::string bytes() const;
    [[nodiscard]] const std::string& path() const { return path_; }

    /// Raises the error of a result code, with the file's name and the engine's reason.
    [[noreturn]] void raise(int resultCode, std::string_view doing) const;

 private:
    struct Closer {
        void operator()(sqlite3* handle) const;
    };
    void harden();

    std::string path_;
    int batched_ = 0;  ///< writes in the open batch
    std::unique_ptr<sqlite3, Closer> handle_;
    friend class Statement;
};

/// One prepared statement. Parameters and columns count from 1 and from 0, as the library counts them.
class Statement {
 public:
    Statement() = default;
    Statement(Sqlite& database, const std::string& sql);

    void bind(int parameter, std::int64_t value);
    void bindReal(int parameter, double value);
    void bindText(int parameter, std::string_view utf8);
    void bindNull(int parameter);

    [[nodiscard]] bool isPrepared() const { return handle_ != nullptr; }

    /// Steps to the next row. False: no more rows. Raises on an error.
    [[nodiscard]] bool step();
    /// Runs a statement without results and makes it ready for the next run.
    void run();
    void reset();

    enum class Kind { Null, Integer, Real, Text, Blob };
    [[nodiscard]] Kind kind(int column) const;
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] double real(int column) const;
    [[nodiscard]] std::string_view text(int column) const;
    [[nodiscard]] int columnCount() const;

 private:
    struct Finaliser {
        void operator()(sqlite3_stmt* statement) const;
    };
    void check(int resultCode);

    Sqlite* database_ = nullptr;
    std::unique_ptr<sqlite3_stmt, Finaliser> handle_;
};

/// A transaction that is rolled back unless it was committed. Inside another one it does nothing.
class SqlTransaction {
 public:
    explicit SqlTransaction(Sqlite& database);
    ~SqlTransaction();
    SqlTransaction(const SqlTransaction&) = delete;
    SqlTransaction& operator=(const SqlTransaction&) = delete;
    void commit();

 private:
    Sqlite& database_;
    bool open_;
};

}  // namespace qrv
