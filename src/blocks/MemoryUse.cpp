#include "blocks/MemoryUse.h"

#include "platform/RunTimeError.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

std::int32_t countConstants(db1& db) {
    // The table of a file that was never opened in the tool is empty, and an empty table refuses to move.
    if (!ignoringErrors([&] { db.ConstantMoveFirst(); })) return 0;
    std::int32_t count = 0;
    for (; !db.ConstantEOF(); db.ConstantMoveNext()) ++count;
    return count;
}

}  // namespace

MemoryUse MemoryUse::of(Workbench& bench) {
    db1& db = bench.db;
    MemoryUse use{.constants = countConstants(db)};
    db.FuncSetIndex("FN");
    for (db.BlockMoveFirst(); !db.BlockEOF(); db.BlockMoveNext()) {
        db.FuncSeekI(db.BlockFn());
        use.retentiveBytes += db.FuncVolRam();
    }
    return use;
}

}  // namespace qrv
