#include "blocks/frmAaboPick.h"

#include <algorithm>

#include "platform/CodePage.h"
#include "platform/Platform.h"
#include "store/Workbench.h"

namespace qrv {

frmAaboPick::frmAaboPick(Workbench& bench) : Form("frmAaboPick", "Menu Picker"), bench_(bench) {}

void frmAaboPick::load() { bench_.PickedOutput = 0; }

std::int16_t frmAaboPick::pickOutput(BlockRef::Kind kind, const std::string& firstRow) {
    const bool isAnalog = kind == BlockRef::Kind::Analog;
    const std::string name = toUtf8(bench_.db.FuncName());
    fill(List1, kind, firstRow);
    Label1.caption = name + (isAnalog ? " AUX ANALOG" : " AUX DESCRETES");
    List2 = ListBox{.visible = false};
    Label2.visible = false;
    caption = "BLOCK OUTPUT SELECTOR";
    bench_.PickedOutput = 0;
    bench_.platform.formHost.showModal(*this);
    return bench_.PickedOutput;
}

void frmAaboPick::fill(ListBox& list, BlockRef::Kind kind, const std::string& firstRow) {
    db1& db = bench_.db;
    const bool isAnalog = kind == BlockRef::Kind::Analog;
    auto& shortNames = isAnalog ? bench_.AuxAnalogShort : bench_.AuxDiscreteShort;
    const std::int32_t outputs = isAnalog ? db.FuncAuxAnalogs() : db.FuncAuxDiscretes();
    const std::int32_t listed = std::min(outputs, static_cast<std::int32_t>(kMostListedOutputs) - 1);
    list = ListBox{.items = {firstRow}, .listIndex = 0};
    shortNames.front() = "MAIN";
    for (std::int32_t n = 1; n <= listed; ++n) {
        db.AuxSeek(db.FuncFN(), isAnalog ? "A" : "D", n);
        list.items.push_back(db.AuxDescription());
        shortNames.at(static_cast<std::size_t>(n)) = db.AuxShort();
    }
}

void frmAaboPick::List1_Click() {
    bench_.PickedOutput = static_cast<std::int16_t>(std::max(List1.listIndex, 0));
    bench_.PickedAnalog = true;
}

void frmAaboPick::List2_Click() {
    bench_.PickedOutput = static_cast<std::int16_t>(std::max(List2.listIndex, 0));
    bench_.PickedAnalog = false;
}

void frmAaboPick::List1_DblClick() {
    List1_Click();
    close();
}

void frmAaboPick::List2_DblClick() {
    List2_Click();
    close();
}

bool frmAaboPick::keyDown(Key key) {
    if (key == Key::Escape) {
        escape();
        return true;
    }
    if (key != Key::Enter) return false;
    close();
    return true;
}

bool frmAaboPick::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode) return true;
    escape();
    return false;
}

void frmAaboPick::close() { bench_.platform.formHost.hide(*this); }

void frmAaboPick::escape() {
    bench_.PickedOutput = 0;
    close();
}

}  // namespace qrv
