#include "shell/FrmAsk.h"

#include "store/LifeCycle.h"

namespace qrv {

FrmAsk::FrmAsk(Workbench& bench, Form& recent) : Form("FrmAsk", "QRV Edit"), bench_(bench), recent_(recent) {}

void FrmAsk::load() {
    Command1.isDefault = true;
    choose(Option1);
}

bool FrmAsk::queryUnload(UnloadMode mode) {
    if (mode == UnloadMode::ByCode) return true;
    Command2_Click();
    return false;
}

void FrmAsk::choose(Choice& chosen) {
    for (Choice* option : {&Option1, &Option2, &Option3}) option->value = option == &chosen;
}

void FrmAsk::Option1_Click() { choose(Option1); }

void FrmAsk::Option2_Click() { choose(Option2); }

void FrmAsk::Option3_Click() { choose(Option3); }

void FrmAsk::Command1_Click() {
    if (Option2.value) {
        openFileDialog(bench_);
    } else if (Option1.value) {
        newFileDialog(bench_);
    } else {
        bench_.platform.formHost.showModal(recent_);
    }
    if (bench_.FileIsOpen) bench_.platform.formHost.unload(*this);
}

void FrmAsk::Command2_Click() {
    if (bench_.FileIsOpen) CloseConfiguration(bench_, Answer::No);
    bench_.platform.formHost.endProgram(0);
}

}  // namespace qrv
