#include "blocks/BlockParameters.h"

#include "blocks/BlockRef.h"
#include "blocks/DataRow.h"
#include "blocks/ParameterScale.h"
#include "blocks/TypedNumber.h"
#include "blocks/frmAaboPick.h"
#include "platform/CodePage.h"
#include "platform/Grid.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "store/CatalogueCodes.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

// Columns of fg3.
constexpr int kParamNumber = 0;
constexpr int kParamValue = 1;
constexpr int kParamDescription = 2;

/// The slot of the ordinal in a block that reads an auxiliary output: behind its one input.
constexpr std::int32_t kOrdinalSlot = 1;

constexpr const char* kNoOutput = "NO AUX OUTPUT";
constexpr const char* kNoSelection = "NO SELECTION";

std::int32_t constantAt(db1& db, std::int16_t block, std::int32_t slot) {
    db.ConstantSeek(block, slot);
    return db.ConstantValue();
}

void storeConstant(db1& db, std::int16_t block, std::int32_t slot, std::int32_t value) {
    db.ConstantSeek(block, slot);
    db.ConstantEdit();
    db.ConstantValue(value);
    db.ConstantUpdate();
}

std::string limitsOf(const db1& db, const ParameterScale& scale) {
    return "Least " + scale.shown(db.ParamMin()) + ", greatest " + scale.shown(db.ParamMax()) + ", default " +
           scale.shown(db.ParamDefault());
}

}  // namespace

void BlockParameters::layOut() {
    int col = 0;
    for (const int width : {300, 800, 2800}) fg3_.setColWidth(col++, width);
    fg3_.setText(0, kParamValue, "VALUE");
    fg3_.setText(0, kParamDescription, "DESCRIPTION");
}

void BlockParameters::show() {
    if (readsAuxOutput()) {
        fg3_.setText(1, kParamNumber, "1");
        UpdateAuxOutput();
        return;
    }
    const std::int16_t count = bench_.db.FuncParams();
    for (int p = 1; p <= count; ++p) showRow(p);
}

void BlockParameters::showRow(int p) {
    db1& db = bench_.db;
    const std::int32_t inputs = bench_.CurInputs;
    const std::int32_t slot = inputs + p - 1;
    db.ParamSeek(bench_.CurFn, p);
    std::string value;
    std::string toolTip;
    if (db.ParamType() == kStringParameter) {
        value = shownString(slot);
        toolTip = "At most " + std::to_string(db.ParamMax()) + " characters";
    } else {
        // The count stands before an odd parameter, and one further before an even one.
        const std::int32_t countSlot = slot - (p % 2 == 0 ? 2 : 1);
        const std::optional<ParameterScale> scale =
            db.ParamType() == kCountedParameter ? ParameterScale::ofCount(constantAt(db, bench_.CurBlock, countSlot))
                                                : ParameterScale::ofDecimal(db.ParamDecimal());
        const std::int32_t stored = constantAt(db, bench_.CurBlock, slot);
        if (scale) value = scale->shown(stored);
        if (scale) toolTip = limitsOf(db, *scale);
    }
    fg3_.setText(p, kParamNumber, std::to_string(p));
    fg3_.setText(p, kParamValue, value);
    describeRow(fg3_, p, kParamDescription, db.ParamDescription());
    if (hasToolTips_) fg3_.setToolTip(p, kParamValue, toolTip);
}

std::string BlockParameters::shownString(int slot) {
    bench_.db.ParmstrSeek(bench_.CurBlock, slot);
    return bench_.db.ParmstrNoMatch() ? " " : bench_.db.ParmstrStr();
}

bool BlockParameters::CheckParamCell(Grid& grid, std::string& text) {
    db1& db = bench_.db;
    const int p = grid.row();
    db.FuncSetIndex("FN");
    db.FuncSeekI(bench_.FnOfBlock.at(static_cast<std::size_t>(bench_.CurBlock)));
    db.ParamSeek(db.FuncFN(), p);
    const int slot = db.FuncInputs() + p - 1;
    return db.ParamType() == kStringParameter ? checkString(grid, text, slot) : checkNumber(grid, text, slot);
}

bool BlockParameters::checkString(Grid& grid, std::string& text, int slot) {
    db1& db = bench_.db;
    const auto longest = static_cast<std::size_t>(db.ParamMax());
    text = upperCase(text);
    if (text.size() > longest) {
        text.resize(longest);
        bench_.platform.messageBox.say("String Too Long\nUsing " + toUtf8(text));
    }
    if (text.empty()) text = " ";
    grid.setText(grid.row(), kParamValue, text);
    db.ParmstrSeek(bench_.SeekBlock, slot);
    db.ParmstrEdit();
    db.ParmstrStr(text);
    db.ParmstrUpdate();
    return true;
}

/// The decimal count of the counted parameter p: in the slot before it if the parameter there holds a count, else in
/// the one before that. Showing goes by the parity of p instead; the catalogue satisfies both.
std::int32_t BlockParameters::countBehind(int p, int slot) {
    db1& db = bench_.db;
    db.ParamSeek(db.FuncFN(), p - 1);
    const int countSlot = slot - (db.ParamType() == kDecimalCountParameter ? 1 : 2);
    db.ParamSeek(db.FuncFN(), p);
    return constantAt(db, bench_.SeekBlock, countSlot);
}

bool BlockParameters::checkNumber(Grid& grid, const std::string& text, int slot) {
    db1& db = bench_.db;
    const std::optional<double> value = typedNumber(text);
    if (!value) return refuse(db.ParamMin(), db.ParamMax());
    const bool isCounted = db.ParamType() == kCountedParameter;
    const std::optional<ParameterScale> scale = isCounted ? ParameterScale::ofCount(countBehind(grid.row(), slot))
                                                          : ParameterScale::ofDecimal(db.ParamDecimal());
    const auto limit = [&](std::int32_t stored) {
        if (scale) return stored / scale->factor();
        // Without a scale a counted parameter has its raw limits, and a plain one takes 0 alone.
        return isCounted ? static_cast<double>(stored) : 0.0;
    };
    const double least = limit(db.ParamMin());
    const double greatest = limit(db.ParamMax());
    if (*value < least || *value > greatest) return refuse(least, greatest);
    if (!scale) return true;
    const std::int32_t stored = toInt32(*value * scale->factor());
    const bool isWhole = scale->shownDecimals == 0;
    grid.setText(grid.row(), kParamValue, isWhole ? joined(stored) : formatNumber(*value, scale->shownDecimals));
    storeConstant(db, bench_.SeekBlock, slot, stored);
    return true;
}

bool BlockParameters::refuse(double least, double greatest) {
    bench_.platform.messageBox.say("Invalid Parameter Value\nMin   " + joined(least) + "  Max  " + joined(greatest));
    return false;
}

// --- the blocks that read an auxiliary output of another block ---

/// What an AABO or DABO block reads from.
struct BlockParameters::AuxSource {
    BlockRef::Kind kind = BlockRef::Kind::Analog;
    std::int16_t function = kNop;
    std::string functionName;
    std::int16_t outputs = 0;  ///< auxiliary outputs of that kind
};

bool BlockParameters::readsAuxOutput() const {
    bench_.db.FuncSetIndex("FN");
    bench_.db.FuncSeekI(bench_.CurFn);
    const std::string name = trimmed(bench_.db.FuncName());
    return name == "AABO" || name == "DABO";
}

/// Leaves the catalogue's functions on the source's.
BlockParameters::AuxSource BlockParameters::auxSource() {
    db1& db = bench_.db;
    db.FuncSetIndex("FN");
    db.FuncSeekI(bench_.CurFn);
    AuxSource source;
    source.kind = trimmed(db.FuncName()) == "AABO" ? BlockRef::Kind::Analog : BlockRef::Kind::Discrete;
    const std::int16_t block = int16From(fg2_.text(1, 1));
    if (block <= kLastBlock) source.function = bench_.FnOfBlock.at(static_cast<std::size_t>(block));
    db.FuncSeekI(source.function);
    source.functionName = trimmed(db.FuncName());
    source.outputs = source.kind == BlockRef::Kind::Analog ? db.FuncAuxAnalogs() : db.FuncAuxDiscretes();
    return source;
}

void BlockParameters::ProcessAuxOutputs() {
    if (bench_.IsReadOnlyFile) return;
    const AuxSource source = auxSource();
    const bool isAnalog = source.kind == BlockRef::Kind::Analog;
    std::int16_t ordinal = 0;
    std::string text = kNoOutput;
    if (source.outputs == 0) {
        const char* lacks = isAnalog ? " has no auxiliary analog outputs" : " has no auxiliary discrete outputs";
        bench_.platform.messageBox.say(toUtf8(source.functionName) + lacks, "Output Not Found");
    } else {
        ordinal = picker_.pickOutput(source.kind, "No Selection");
        text = ordinal == 0 ? kNoSelection : picker_.List1.items.at(static_cast<std::size_t>(ordinal));
    }
    fg3_.setText(1, kParamValue, std::to_string(ordinal));
    describeRow(fg3_, 1, kParamDescription, text);
    storeConstant(bench_.db, bench_.CurBlock, kOrdinalSlot, ordinal);
}

void BlockParameters::UpdateAuxOutput() {
    db1& db = bench_.db;
    const AuxSource source = auxSource();
    std::int32_t ordinal = constantAt(db, bench_.CurBlock, kOrdinalSlot);
    std::string text = kNoSelection;
    if (source.outputs == 0) {
        ordinal = 0;
        text = kNoOutput;
    } else if (ordinal != 0) {
        db.AuxSeek(source.function, source.kind == BlockRef::Kind::Analog ? "A" : "D", ordinal);
        text = db.AuxNoMatch() ? std::string(kNoSuchOutput) : db.AuxDescription();
    }
    describeRow(fg3_, 1, kParamDescription, text);
    fg3_.setText(1, kParamValue, std::to_string(ordinal));
}

}  // namespace qrv
