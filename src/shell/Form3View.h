// The main window: menu, the block maps, and beside them the data view or the assignment view. Tool bar, status bar and
// what else we add stand in Form3ExtrasView, and are absent in the classic look.
#pragma once

#include "platform/qt/FormView.h"
#include "shell/Form3.h"
#include "shell/FunctionGuide.h"

class QSplitter;

namespace qrv {

struct Workbench;

/// Whether a window has what we add to the usual one.
enum class Extras { Shown, Absent };
/// Absent with QRV_EDIT_CLASSIC=1 in the environment.
[[nodiscard]] Extras extrasOfEnvironment();

class Form3View final : public FormView {
 public:
    Form3View(Form3& form, DesktopHost& host, Workbench& bench, Extras extras);

    [[nodiscard]] Form3& mainForm() { return form_; }
    [[nodiscard]] GridView* Grid1() { return grid1_; }
    [[nodiscard]] GridView* Ig() { return ig_; }
    [[nodiscard]] FunctionGuide& guide() { return guide_; }

 protected:
    void afterRefresh() override;

 private:
    void makeMenus();
    QWidget* makeMaps();
    QWidget* makeDataPane();
    QWidget* makeListPane(Extras extras);
    QLabel* legend(const char* name, const Label& label, Colour colour);
    void nameCells();

    Form3& form_;
    BlockPanel& blocks_;
    Workbench& bench_;
    FunctionGuide guide_;
    GridView* grid1_ = nullptr;
    GridView* ig_ = nullptr;
    GridView* fg2_ = nullptr;
    GridView* fg3_ = nullptr;
};

}  // namespace qrv
