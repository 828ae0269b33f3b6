#include "blocks/frmBlock.h"

#include "blocks/TypedNumber.h"
#include "platform/MessageBox.h"
#include "platform/Numerals.h"
#include "platform/Platform.h"
#include "store/Workbench.h"

namespace qrv {

frmBlock::frmBlock(Workbench& bench) : Form("frmBlock", "Block Required"), bench_(bench) { Command1.isDefault = true; }

/// Each question begins with an empty answer.
void frmBlock::load() { Text1.text.clear(); }

void frmBlock::activate() {
    Combo1 = ListBox{};
    for (std::size_t block = 0; block < bench_.FnOfBlock.size(); ++block) {
        if (bench_.FnOfBlock.at(block) == bench_.WantedFunction) Combo1.items.push_back(std::to_string(block));
    }
}

void frmBlock::Combo1_Click() { Text1.text = Combo1.text(); }

void frmBlock::Command1_Click() {
    const std::optional<double> typed = typedNumber(Text1.text);
    const double number = typed ? roundedHalfEven(*typed) : -1;
    if (!typed || *typed < 0 || number > kLastBlock) {
        bench_.platform.messageBox.ask({.text = "Invalid Block Number", .icon = Icon::Warning});
        Text1.text.clear();
        return;
    }
    const std::int16_t block = toInt16(number);
    if (bench_.FnOfBlock.at(static_cast<std::size_t>(block)) != bench_.WantedFunction) {
        bench_.platform.messageBox.say("Block is Wrong Type For This Screen");
        Text1.text.clear();
        return;
    }
    bench_.ChosenBlock = block;
    bench_.platform.formHost.unload(*this);
}

void frmBlock::Command2_Click() { bench_.platform.formHost.unload(*this); }

}  // namespace qrv
