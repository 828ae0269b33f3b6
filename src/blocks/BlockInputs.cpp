#include "blocks/BlockInputs.h"

#include "blocks/BlockRef.h"
#include "blocks/DataRow.h"
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

// Columns of fg2.
constexpr int kInputNumber = 0;
constexpr int kInputBlock = 1;
constexpr int kInputOutput = 2;
constexpr int kInputDescription = 3;
constexpr int kInputSource = 4;
constexpr int kInputKind = 5;

constexpr const char* kMain = "MAIN";
constexpr const char* kKindTip = "A: analog input, D: discrete input, ?: its source is an empty block";

/// Without " INPUT" and all behind it, unless the text begins with that.
std::string withoutInput(const std::string& description) {
    const std::size_t place = description.find(" INPUT");
    return place == std::string::npos || place == 0 ? description : description.substr(0, place);
}

std::string kindLetter(std::int16_t inputType) {
    switch (inputType) {
        case kAnalog: return "A";
        case kDiscrete: return "D";
        default: return "";
    }
}

}  // namespace

void BlockInputs::layOut() {
    int col = 0;
    for (const int width : {300, 450, 750, 1775, 1000, 400}) fg2_.setColWidth(col++, width);
    fg2_.setText(0, kInputBlock, "BLK");
    fg2_.setText(0, kInputOutput, "OUTPUT");
    fg2_.setText(0, kInputDescription, "DESCRIPTION");
    fg2_.setText(0, kInputSource, "SOURCE");
    setToolTips(true);
}

void BlockInputs::setToolTips(bool shown) {
    hasToolTips_ = shown;
    fg2_.setToolTip(0, kInputKind, shown ? kKindTip : "");
}

void BlockInputs::show() {
    db1& db = bench_.db;
    for (int row = 1; row <= bench_.CurInputs; ++row) {
        db.ConstantSeek(bench_.CurBlock, row - 1);
        const std::int32_t word = db.ConstantValue();
        fg2_.setText(row, kInputNumber, std::to_string(row));
        fg2_.setText(row, kInputBlock, std::to_string(BlockRef::ofWord(word).block));
        showSource(row, BlockRef::ofWord(word).block, BlockOutputName(bench_, word));
    }
    db.FuncSetIndex("FN");
    db.FuncSeekI(bench_.CurFn);
}

void BlockInputs::showSource(int row, std::int16_t source, const std::string& output) {
    db1& db = bench_.db;
    db.InputSeek(bench_.CurFn, row);
    const bool isUsed = source <= kLastBlock && bench_.FnOfBlock.at(static_cast<std::size_t>(source)) != kNop;
    if (isUsed) {
        db.FuncSetIndex("FN");
        db.FuncSeekI(bench_.FnOfBlock.at(static_cast<std::size_t>(source)));
    }
    fg2_.setText(row, kInputOutput, output.empty() ? kMain : output);
    describeRow(fg2_, row, kInputDescription, withoutInput(db.InputDescription()));
    fg2_.setText(row, kInputSource, isUsed ? db.FuncName() : "????");
    fg2_.setText(row, kInputKind, isUsed ? kindLetter(db.InputType()) : "?");
    if (hasToolTips_) fg2_.setToolTip(row, kInputKind, kKindTip);
}

bool BlockInputs::validateEdit(int row, int col) {
    if (col != kInputBlock) {
        connect(row, int16From(fg2_.text(row, kInputBlock)));
        fg2_.setEditText(fg2_.text(row, kInputOutput));
        return true;
    }
    const std::string typed = fg2_.editText();
    if (!BlockNumberIsValid(typed)) {
        bench_.platform.messageBox.say("Enter A Block Number\n        0 to " + std::to_string(kLastBlock));
        return false;
    }
    connect(row, int16From(typed));
    return true;
}

/// Wires the input to the source's main output, and where the source has auxiliary ones of the input's kind lets the
/// user choose.
void BlockInputs::connect(int row, std::int16_t source) {
    db1& db = bench_.db;
    const auto store = [&](std::int32_t word) {
        db.ConstantSeek(bench_.CurBlock, row - 1);
        db.ConstantEdit();
        db.ConstantValue(word);
        db.ConstantUpdate();
    };
    store(source);
    std::string output = kMain;
    db.InputSeek(bench_.CurFn, row);
    const std::int16_t inputType = db.InputType();
    if (source <= kLastBlock) {
        db.FuncSetIndex("FN");
        db.FuncSeekI(bench_.FnOfBlock.at(static_cast<std::size_t>(source)));
        if (inputType == kAnalog && db.FuncAuxAnalogs() > 0) {
            const std::int16_t ordinal = picker_.pickOutput(BlockRef::Kind::Analog, kMain);
            UpdateConstant(BlockRef::analog(source, ordinal).word());
            output = bench_.AuxAnalogShort.at(static_cast<std::size_t>(ordinal));
        } else if (inputType == kDiscrete && db.FuncAuxDiscretes() > 0) {
            const std::int16_t ordinal = picker_.pickOutput(BlockRef::Kind::Discrete, kMain);
            UpdateConstant(BlockRef::discrete(source, ordinal).word());
            output = bench_.AuxDiscreteShort.at(static_cast<std::size_t>(ordinal));
        }
    }
    showSource(row, source, output);
}

void BlockInputs::UpdateConstant(std::int16_t value) {
    db1& db = bench_.db;
    db.ConstantSeek(bench_.CurBlock, fg2_.row() - 1);
    db.ConstantEdit();
    db.ConstantValue(value);
    db.ConstantUpdate();
}

bool BlockInputs::BlockNumberIsValid(const std::string& text) {
    const std::optional<double> number = typedNumber(text);
    return number && *number >= 0 && *number <= kLastBlock;
}

}  // namespace qrv
