#include "blocks/BlockProgram.h"

#include <algorithm>

#include "platform/CodePage.h"
#include "platform/MessageBox.h"
#include "platform/RunTimeError.h"
#include "store/CatalogueCodes.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

// Blocks of every program that new inputs are wired to.
constexpr std::int32_t kAnalogSource = 0;
constexpr std::int32_t kDiscreteSource = 2;

constexpr const char* kNotFound = "ERROR RECORD NOT FOUND";

std::int16_t& functionOf(Workbench& bench, std::int16_t block) {
    return bench.FnOfBlock.at(static_cast<std::size_t>(block));
}

/// Runs one row's statements. Where refusals are skipped, a row that can't be written or isn't there is passed over:
/// a change of function must get to its end.
template <typename Statements>
void under(Refusals refusals, Statements&& statements) {
    if (refusals == Refusals::Raise) {
        statements();
    } else {
        ignoringErrors(statements);
    }
}

void addConstant(db1& db, std::int16_t block, std::int32_t slot, std::int32_t value) {
    db.ConstantAddNew();
    db.ConstantBlockNumber(block);
    db.ConstantOffset(slot);
    db.ConstantValue(value);
    db.ConstantUpdate();
}

/// The same where the row may stand already.
void putConstant(db1& db, std::int16_t block, std::int32_t slot, std::int32_t value) {
    db.ConstantSeek(block, slot);
    if (db.ConstantNoMatch()) return addConstant(db, block, slot, value);
    db.ConstantEdit();
    db.ConstantValue(value);
    db.ConstantUpdate();
}

using WriteConstant = decltype(&addConstant);

void addInputs(db1& db, std::int16_t block, Refusals refusals, WriteConstant write) {
    const std::int16_t inputs = db.FuncInputs();
    for (std::int32_t i = 1; i <= inputs; ++i) {
        under(refusals, [&] {
            db.InputSeek(db.FuncFN(), i);
            const std::int32_t source = db.InputType() == kAnalog ? kAnalogSource : kDiscreteSource;
            write(db, block, i - 1, source);
        });
    }
}

void addString(db1& db, std::int16_t block, std::int32_t slot) {
    db.ParmstrAddNew();
    db.ParmstrBlockNumber(block);
    db.ParmstrOffset(slot);
    db.ParmstrStr(db.ParamDescription().substr(0, static_cast<std::size_t>(db.ParamMax())));
    db.ParmstrUpdate();
}

void addParameters(db1& db, std::int16_t block, StringRows strings, Refusals refusals, WriteConstant write) {
    const std::int32_t count = db.FuncParams() + db.FuncHidden();
    const std::int32_t inputs = db.FuncInputs();
    for (std::int32_t p = 1; p <= count; ++p) {
        const std::int32_t slot = inputs + p - 1;
        under(refusals, [&] {
            db.ParamSeek(db.FuncFN(), p);
            if (strings == StringRows::Make && db.ParamType() == kStringParameter) addString(db, block, slot);
        });
        under(refusals, [&] { write(db, block, slot, db.ParamDefault()); });
    }
}

void deleteStringAt(db1& db, std::int16_t block, std::int32_t slot) {
    db.ParmstrSeek(block, slot);
    if (!db.ParmstrNoMatch()) db.ParmstrDelete();
}

/// Left-overs of former functions among them, wherever they stand.
void deleteStringsOf(db1& db, std::int16_t block) {
    for (db.ParmstrMoveFirst(); !db.ParmstrEOF(); db.ParmstrMoveNext()) {
        if (db.ParmstrBlockNumber() == block) db.ParmstrDelete();
    }
}

/// The block's constants go, and with each parameter that was a string its text. Gives how refusals are taken from here
/// on: once a row is gone the change goes on whatever the engine says.
Refusals deleteOldRows(Workbench& bench, std::int16_t block, const std::string& oldName, const std::string& newName) {
    db1& db = bench.db;
    const std::int16_t oldFunction = functionOf(bench, block);
    Refusals refusals = Refusals::Raise;
    for (std::int32_t n = 0;; ++n) {
        db.ConstantSeek(block, n);
        if (db.ConstantNoMatch()) return refusals;
        under(refusals, [&] { db.ConstantDelete(); });
        refusals = Refusals::Skip;
        db.ParamSeek(oldFunction, n + 1);
        if (db.ParamNoMatch() || db.ParamType() != kStringParameter) continue;
        db.FuncSeekS(oldName);
        const std::int32_t oldInputs = db.FuncInputs();
        db.FuncSeekS(newName);
        under(refusals, [&] { deleteStringAt(db, block, oldInputs + n); });
    }
}

/// A run of strings that begins at slot 0: of a function without inputs.
void deleteLeadingStrings(db1& db, std::int16_t block, Refusals refusals) {
    for (std::int32_t n = 0;; ++n) {
        db.ParmstrSeek(block, n);
        if (db.ParmstrNoMatch()) return;
        under(refusals, [&] { db.ParmstrDelete(); });
    }
}

/// The catalogue's current function becomes the block's.
void takeFunction(Workbench& bench, std::int16_t block, Refusals refusals) {
    db1& db = bench.db;
    functionOf(bench, block) = db.FuncFN();
    db.BlockSeek(block);
    under(refusals, [&] {
        db.BlockEdit();
        db.BlockFn(db.FuncFN());
        db.BlockConstant(db.FuncInputs() + db.FuncParams() + db.FuncHidden());
        db.BlockUpdate();
    });
}

/// Deletes the block's constants from a slot on, up to the first gap.
void deleteConstantsFrom(db1& db, std::int16_t block, int slot) {
    for (;; ++slot) {
        db.ConstantSeek(block, slot);
        if (db.ConstantNoMatch()) return;
        db.ConstantDelete();
    }
}

bool isReplacementWanted(Workbench& bench, const std::string& oldName, const std::string& newName) {
    const Notice question{.text = toUtf8("Replace " + trimmed(oldName) + " With " + trimmed(newName)),
                          .buttons = Buttons::YesNo};
    return bench.platform.messageBox.ask(question) == Answer::Yes;
}

}  // namespace

bool BlockIsUsed(Workbench& bench, std::int16_t block) {
    bench.db.FuncSetIndex("FN");
    return functionOf(bench, block) != kNop;
}

void buildBlock(Workbench& bench, std::int16_t block, StringRows strings, Refusals refusals) {
    addInputs(bench.db, block, refusals, addConstant);
    addParameters(bench.db, block, strings, refusals, addConstant);
    takeFunction(bench, block, refusals);
}

void clearBlock(Workbench& bench, std::int16_t block) {
    db1& db = bench.db;
    deleteConstantsFrom(db, block, 0);
    db.BlockSeek(block);
    db.BlockEdit();
    db.BlockFn(kNop);
    db.BlockConstant(0);
    db.BlockComment("");
    db.BlockTempRam(0);
    db.BlockVolRam(0);
    db.BlockVisioComment("");
    db.BlockUpdate();
    functionOf(bench, block) = kNop;
}

bool assign_block_function(Workbench& bench, std::int16_t block, std::int16_t function) {
    db1& db = bench.db;
    db.FuncSetIndex("FN");
    db.FuncSeekI(function);
    db.BlockSeek(block);
    // A block without a row has no number to read; there is no other test of a missed block.
    const bool hasRow = ignoringErrors([&] { static_cast<void>(db.blockNumber()); });
    if (db.FuncNoMatch() || !hasRow) {
        bench.platform.messageBox.say(kNotFound);
        return false;
    }
    // A program mostly comes over one like it. To take thousands of rows away and put the same ones back costs more
    // time than the line does: a row that stands is written over.
    deleteConstantsFrom(db, block, db.FuncInputs() + db.FuncParams() + db.FuncHidden());
    deleteStringsOf(db, block);
    addInputs(db, block, Refusals::Raise, putConstant);
    addParameters(db, block, StringRows::Leave, Refusals::Raise, putConstant);
    takeFunction(bench, block, Refusals::Raise);
    return true;
}

std::optional<std::string> placeFunction(Workbench& bench, std::int16_t block, const std::string& cellText,
                                         const std::string& functionName) {
    db1& db = bench.db;
    db.FuncSetIndex("Fname");
    db.FuncSeekS(functionName);
    if (db.FuncNoMatch()) {
        bench.platform.messageBox.say(kNotFound);
        return std::nullopt;
    }
    if (cellText != " " && !isReplacementWanted(bench, cellText, functionName)) return std::nullopt;
    const Refusals refusals = deleteOldRows(bench, block, cellText, functionName);
    deleteLeadingStrings(db, block, refusals);
    buildBlock(bench, block, StringRows::Make, refusals);
    return db.FuncFN() == kNop ? " " : functionName;
}

}  // namespace qrv
