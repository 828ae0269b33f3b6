// The whole program with its real windows, offscreen: boxes and file dialogs are scripted, all else is a user's events.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QListWidget>
#include <QMenu>
#include <QObject>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <string>

#include "platform/qt/DesktopHost.h"
#include "platform/qt/FormView.h"
#include "platform/qt/GridView.h"
#include "shell/AllFormsView.h"
#include "shell/EditorProgram.h"
#include "store/LifeCycle.h"
#include "twins/FalseClock.h"
#include "twins/MemorySettings.h"
#include "twins/NoPort.h"
#include "twins/ScriptedBox.h"
#include "twins/ScriptedFileDialog.h"
#include "twins/TemporaryFolder.h"

namespace qrv {

/// What a test brings along to talk to a controller; without it there is no port.
struct LineServices {
    Clock& clock;
    EventPump& pump;
    SerialPort& port;
};

struct ViewRig {
    explicit ViewRig(const std::string& commandLine = "", Extras extras = Extras::Shown,
                     const LineServices* line = nullptr)
        : program({.messageBox = boxes,
                   .fileDialog = dialogs,
                   .formHost = host,
                   .settings = settings,
                   .clock = line ? line->clock : static_cast<Clock&>(clock),
                   .eventPump = line ? line->pump : static_cast<EventPump&>(pump),
                   .serialPort = line ? line->port : static_cast<SerialPort&>(port)},
                  {.places = {.work = made("work"), .catalogue = QRV_CATALOGUE_FOLDER, .backups = made("kept")},
                   .commandLine = commandLine,
                   .isClassic = extras == Extras::Absent}) {
        addAllViews(host, program.bench, extras);
    }
    ~ViewRig() { host.unloadAll(); }

    std::string made(const std::string& name) {
        std::filesystem::create_directories(folder.file(name));
        return folder.file(name);
    }
    [[nodiscard]] std::string path(const std::string& name) const { return folder.file(name); }

    /// Comes up with a new file open and the configuration info done: the user stands before the main window.
    void startWithNewFile(const std::string& name = "boiler.qrv") {
        dialogs.answer(path(name));
        whenUp("FrmAsk", [](FormView& view) { click<QAbstractButton>(view, "Command1"); });
        whenUp("frmGeneral", [](FormView& view) { choose(view, "mnuexit"); });
        host.load(program.splash);
        program.splash.Timer1_Timer();
        EXPECT_TRUE(QTest::qWaitFor([this] { return host.isVisible(program.mainWindow); }));
    }

    /// The same, and on to the window that an entry of the main window's menu opens in its place.
    FormView& startWithView(const char* entry, const Form& form) {
        startWithNewFile();
        choose(mainView(), entry);
        return *host.viewOf(form);
    }

    /// Lets `act` be the user of a form's window as soon as the window is up; whatever else runs meanwhile.
    void whenUp(const std::string& form, std::function<void(FormView&)> act) {
        QTimer::singleShot(0, &life, [this, form, act = std::move(act)] {
            FormView* view = upView(form);
            if (view) {
                act(*view);
            } else {
                whenUp(form, act);
            }
        });
    }
    [[nodiscard]] static FormView* upView(const std::string& form) {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* view = dynamic_cast<FormView*>(window);
            if (view && view->isVisible() && view->form().name() == form) return view;
        }
        return nullptr;
    }

    template <typename Widget>
    static Widget* find(FormView& view, const char* name) {
        auto* widget = view.findChild<Widget*>(QString::fromLatin1(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }
    template <typename Button>
    static void click(FormView& view, const char* name) {
        QTest::mouseClick(find<Button>(view, name), Qt::LeftButton);
    }
    static void choose(FormView& view, const char* entry) { find<QAction>(view, entry)->trigger(); }
    static void clickCell(GridView& grid, int row, int col) {
        // The headings are no rows or columns of the view's.
        const int above = grid.horizontalHeader()->isHidden() ? 0 : 1;
        const int beside = grid.verticalHeader()->isHidden() ? 0 : 1;
        grid.scrollTo(grid.model()->index(row - above, col - beside));
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.rectOf(row, col).center());
    }
    /// The function goes to block 10 by way of the list, and the block's data is shown.
    void place(const char* function) {
        choose(mainView(), "mnuEditCfg");
        auto* list = find<QListWidget>(mainView(), "List1");
        const auto found = list->findItems(QString::fromLatin1(function), Qt::MatchFixedString);
        ASSERT_EQ(found.size(), 1);
        list->setCurrentItem(found.first());
        clickCell(*find<GridView>(mainView(), "Grid1"), 2, 1);
        choose(mainView(), "mnuEditBlk");
    }
    /// Selects a cell, types into it and presses Enter.
    static void typeInto(GridView& grid, int row, int col, const char* text) {
        clickCell(grid, row, col);
        QTest::keyClicks(&grid, QString::fromLatin1(text).left(1));
        auto* editor = grid.viewport()->findChild<QWidget*>(QStringLiteral("gridEditor"));
        ASSERT_NE(editor, nullptr);
        QTest::keyClicks(editor, QString::fromLatin1(text).mid(1));
        QTest::keyClick(editor, Qt::Key_Return);
    }
    [[nodiscard]] FormView& mainView() { return *host.viewOf(program.mainWindow); }

    TemporaryFolder folder;
    ScriptedBox boxes;
    ScriptedFileDialog dialogs;
    DesktopHost host;
    MemorySettings settings;
    FalseClock clock;
    FalsePump pump{clock};
    NoPort port;
    EditorProgram program;
    QObject life;  ///< what waits for a window ends with it
};

}  // namespace qrv
