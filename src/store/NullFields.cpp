#include "store/NullFields.h"

#include <algorithm>
#include <string_view>

#include "store/FieldTypes.h"

namespace qrv {

namespace {

struct Accessor {
    std::string_view table;
    std::string_view column;
    bool takesNull;
};

constexpr Accessor kAccessors[] = {
#define QRV_OPERATION(accessor, recordset, operation)
#define QRV_FLAG(accessor, recordset, question)
#define QRV_COUNT(accessor, recordset)
#define QRV_SEEK1(accessor, recordset)
#define QRV_SEEK2(accessor, recordset)
#define QRV_READ_ONLY(accessor, recordset, table, column, type) {table, column, field::type::kTakesNull},
#define QRV_FIELD(accessor, recordset, table, column, type) QRV_READ_ONLY(accessor, recordset, table, column, type)
#include "store/db1Families.def"
};

}  // namespace

bool isReadIfNull(const Table& table, const Column& column) {
    return std::ranges::none_of(kAccessors, [&](const Accessor& accessor) {
        return !accessor.takesNull && sameName(accessor.table, table.name) && sameName(accessor.column, column.name);
    });
}

}  // namespace qrv
