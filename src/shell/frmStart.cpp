#include "shell/frmStart.h"

#include <chrono>

#include "link/CommSettings.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/RunTimeError.h"
#include "shell/frmAbout.h"
#include "store/LifeCycle.h"

namespace qrv {

namespace {

constexpr const char* kLogoFile = "ts-logosm.jpg";
constexpr std::size_t kMostLogoBytes = 16U << 20U;
constexpr std::chrono::milliseconds kSplashTime{2000};

std::string addressLines(const frmAbout& about) {
    std::string lines;
    for (const Label& line : about.lblAddress) lines += (lines.empty() ? "" : "\n") + line.caption;
    return lines;
}

std::string logoIn(const std::string& folder) {
    FileContent logo = readWhole(joinedPath(folder, kLogoFile), kMostLogoBytes);
    if (logo.fault) throw RunTimeError(ErrorNumber::FileNotFound);
    return std::move(logo.bytes);
}

}  // namespace

frmStart::frmStart(Workbench& bench, const frmAbout& about, Form& mainWindow)
    : Form("frmStart", "QRV Edit"), bench_(bench), about_(about), mainWindow_(mainWindow) {}

void frmStart::load() {
    Image1 = logoIn(bench_.places.catalogue);
    readCommSettings(bench_);
    bench_.db.open_database(bench_.places.catalogue);
    lblVersion.caption = about_.lblVersion.caption;
    lblAddress.caption = addressLines(about_);
    bench_.platform.formHost.load(mainWindow_);
    Timer1 = {.interval = kSplashTime, .enabled = true};
    bench_.FileIsOpen = false;
}

void frmStart::Timer1_Timer() {
    Timer1.enabled = false;
    FormHost& host = bench_.platform.formHost;
    // Gone first: showing the main window runs its activation, and with it the start dialog.
    host.hide(*this);
    host.show(mainWindow_);
}

void frmStart::ExitProgram() {
    const Answer answer = bench_.platform.messageBox.ask({.text = "Exit Program", .buttons = Buttons::YesNo});
    if (answer != Answer::Yes) return;
    if (bench_.FileIsOpen) CloseConfiguration(bench_, Answer::No);
    bench_.platform.formHost.endProgram(0);
}

}  // namespace qrv
