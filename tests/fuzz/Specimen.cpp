#include "fuzz/Specimen.h"

#include <algorithm>
#include <fstream>

#include "platform/RunTimeError.h"
#include "store/db1.h"

namespace qrv {

namespace {

constexpr std::uint8_t kChangesMark = '~';
constexpr std::uint8_t kEndsHere = 255;
constexpr std::size_t kHeadBytes = 4;
constexpr int kRowsRead = 5;

void readFields(db1& db) {
    // A null field, or no row, is nothing out of the way.
#define QRV_OPERATION(accessor, recordset, operation)
#define QRV_FLAG(accessor, recordset, question)
#define QRV_COUNT(accessor, recordset) ignoringErrors([&db] { static_cast<void>(db.accessor()); });
#define QRV_SEEK1(accessor, recordset)
#define QRV_SEEK2(accessor, recordset)
#define QRV_FIELD(accessor, recordset, table, column, type) QRV_COUNT(accessor, recordset)
#define QRV_READ_ONLY(accessor, recordset, table, column, type) QRV_COUNT(accessor, recordset)
#include "store/db1Families.def"
}

void moveOn(db1& db) {
#define QRV_DO_moveFirst(accessor)
#define QRV_DO_moveNext(accessor) ignoringErrors([&db] { db.accessor(); });
#define QRV_DO_edit(accessor)
#define QRV_DO_update(accessor)
#define QRV_DO_addNew(accessor)
#define QRV_DO_deleteRow(accessor)
#define QRV_OPERATION(accessor, recordset, operation) QRV_DO_##operation(accessor)
#define QRV_FLAG(accessor, recordset, question)
#define QRV_COUNT(accessor, recordset)
#define QRV_SEEK1(accessor, recordset)
#define QRV_SEEK2(accessor, recordset)
#define QRV_FIELD(accessor, recordset, table, column, type)
#define QRV_READ_ONLY(accessor, recordset, table, column, type)
#include "store/db1Families.def"
}

}  // namespace

std::string specimenOf(std::span<const std::uint8_t> bytes, const std::string& sound) {
    if (bytes.empty() || bytes.front() != kChangesMark) return {bytes.begin(), bytes.end()};
    std::string file = sound;
    for (bytes = bytes.subspan(1); bytes.size() >= kHeadBytes && !file.empty();) {
        const std::size_t place = (bytes[0] | std::size_t{bytes[1]} << 8U | std::size_t{bytes[2]} << 16U) % file.size();
        const std::size_t wanted = bytes[3];
        bytes = bytes.subspan(kHeadBytes);
        if (wanted == kEndsHere) {
            file.resize(place);
            continue;
        }
        const std::size_t count = std::min({wanted, bytes.size(), file.size() - place});
        std::copy_n(bytes.begin(), count, file.begin() + static_cast<std::ptrdiff_t>(place));
        bytes = bytes.subspan(count);
    }
    return file;
}

void putFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

void readAround(db1& db) {
    for (int row = 0; row < kRowsRead; ++row) {
        readFields(db);
        moveOn(db);
    }
}

}  // namespace qrv
