#include "shell/Form3ExtrasView.h"

#include <QAction>
#include <QDockWidget>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include "blocks/BlockNumbers.h"
#include "blocks/MemoryUse.h"
#include "platform/qt/Application.h"
#include "platform/qt/GridView.h"
#include "platform/qt/Texts.h"
#include "platform/qt/Theme.h"
#include "shell/Form3View.h"
#include "store/ControllerLimits.h"
#include "store/KnownFunctions.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr int kMeterWidth = 110;      // pixels
constexpr int kMeterDelay = 250;      // milliseconds of rest before the meters are counted
constexpr int kMessageTime = 4000;    // milliseconds
constexpr int kGoToWidth = 130;       // pixels
constexpr double kNearlyFull = 0.95;  // from here on a meter warns

constexpr const char* kNoFile = "No configuration is open: File, New or Open begins";

struct Borrowed {
    const char* entry;
    const char* icon;
    const char* tip;
};

// A null entry is a separator.
constexpr Borrowed kTools[] = {
    {"mnuFileNew", "new", "New configuration (Ctrl+N)"},
    {"mnuFileOpen", "open", "Open a configuration (Ctrl+O)"},
    {"mnuFileSave", "save", "Save (Ctrl+S)"},
    {nullptr, nullptr, nullptr},
    {"mnuFileDownload", "download", "Download to the controller"},
    {"mnuFileUpload", "upload", "Upload from the controller"},
    {"mnuViewAll", "monitor", "Watch all blocks"},
    {nullptr, nullptr, nullptr},
    {"mnuEditBlk", "data", "Block data: inputs and parameters"},
    {"mnuEditCfg", "function", "Block function type: place functions"},
    {"mnuFileCheck", "check", "Error check"},
    {"mnuFilePrint", "print", "Print"},
};

struct Stroke {
    QKeySequence keys;
    const char* entry;
};

constexpr const char* kKeys =
    "F1\tthe function's page\n"
    "F5, F6\tprevious, next block\n"
    "Ctrl+G\tgo to a block by number or name\n"
    "F2, typing\tedit a cell\n"
    "Enter\tend an edit; show or place a block\n"
    "Esc\tgive back the old value; leave a dialog\n"
    "Tab\tnext part of the window\n"
    "Arrows\tgo along a grid; move a label of the board, choose its colour\n"
    "Ctrl+N, Ctrl+O, Ctrl+S\tnew, open, save";

/// Two columns, the second of which is broken where the panel is narrow.
QString keysTable() {
    QString rows;
    for (const QString& line : QString::fromLatin1(kKeys).split(QLatin1Char('\n'))) {
        const QStringList parts = line.toHtmlEscaped().split(QLatin1Char('\t'));
        rows += QStringLiteral("<tr><td>%1</td><td>%2</td></tr>").arg(parts.first(), parts.last());
    }
    return QStringLiteral("<table cellspacing='6'>%1</table>").arg(rows);
}

/// Its text is marked, so that what is typed takes its place, as long as the keys go there.
class GoToBox final : public QLineEdit {
 public:
    using QLineEdit::QLineEdit;

 protected:
    void focusOutEvent(QFocusEvent* event) override {
        QLineEdit::focusOutEvent(event);
        if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason) deselect();
    }
};

}  // namespace

Form3ExtrasView::Form3ExtrasView(Form3View& window, Workbench& bench)
    : QObject(&window), window_(window), bench_(bench), later_(new QTimer(this)) {
    makeToolBar();
    makeStatusBar();
    makeMenus();
    makeShortcuts();
    explainIdleEntries();
    // Counting moves the shared cursors, so it waits until no event is under way.
    later_->setSingleShot(true);
    later_->setInterval(kMeterDelay);
    connect(later_, &QTimer::timeout, this, [this] { Application::guarded([this] { showMeters(); }); });
    window_.setAfterRefresh([this] {
        later_->start();
        showFunction();
        showTransferEnd();
    });
}

QAction* Form3ExtrasView::borrow(const char* entry, const char* icon, const QString& tip) {
    auto* action = window_.findChild<QAction*>(QString::fromLatin1(entry));
    action->setIcon(theme::icon(QString::fromLatin1(icon)));
    // A menu has words alone.
    action->setIconVisibleInMenu(false);
    action->setToolTip(tip);
    return action;
}

void Form3ExtrasView::makeToolBar() {
    bar_ = window_.addToolBar(QStringLiteral("Tools"));
    bar_->setObjectName(QStringLiteral("toolBar"));
    bar_->setMovable(false);
    bar_->setIconSize(QSize(20, 20));
    for (const Borrowed& tool : kTools) {
        if (!tool.entry) {
            bar_->addSeparator();
        } else {
            bar_->addAction(borrow(tool.entry, tool.icon, QString::fromLatin1(tool.tip)));
        }
    }
    bar_->addSeparator();
    step("previousBlock", "previous", QStringLiteral("Previous block (F5)"), Key::F5);
    step("nextBlock", "next", QStringLiteral("Next block (F6)"), Key::F6);
    goTo_ = new GoToBox(bar_);
    goTo_->setObjectName(QStringLiteral("goToBlock"));
    goTo_->setPlaceholderText(QStringLiteral("Go to block"));
    goTo_->setAccessibleName(QStringLiteral("Go to block"));
    goTo_->setToolTip(QStringLiteral("A block number, or a function's name to find its next block (Ctrl+G)"));
    goTo_->setFixedWidth(kGoToWidth);
    goTo_->addAction(theme::icon(QStringLiteral("goto")), QLineEdit::LeadingPosition);
    connect(goTo_, &QLineEdit::returnPressed, this, [this] { Application::guarded([this] { goToTyped(); }); });
    bar_->addWidget(goTo_);
}

void Form3ExtrasView::step(const char* name, const char* icon, const QString& tip, Key key) {
    QAction* action = bar_->addAction(theme::icon(QString::fromLatin1(icon)), tip);
    action->setObjectName(QString::fromLatin1(name));
    connect(action, &QAction::triggered, this, [this, key] {
        BlockPanel& blocks = window_.mainForm().blocks;
        const bool isIo = bench_.SeekBlock >= kFirstIoBlock;
        // In the assignment view the key would place a function, and a button that steps must not.
        if (!blocks.isDataView()) return;
        window_.tell([&] { (isIo ? blocks.Ig : blocks.Grid1).keyDown(key); });
        (isIo ? window_.Ig() : window_.Grid1())->reveal();
    });
}

Form3ExtrasView::Meter Form3ExtrasView::makeMeter(const char* name, const QString& what, int most) {
    auto* words = new QLabel(&window_);
    words->setObjectName(QString::fromLatin1(name));
    words->setContentsMargins(8, 0, 2, 0);
    auto* bar = new QProgressBar(&window_);
    bar->setRange(0, most);
    bar->setTextVisible(false);
    bar->setFixedSize(kMeterWidth, 10);
    bar->setAccessibleName(what);
    window_.statusBar()->addPermanentWidget(words);
    window_.statusBar()->addPermanentWidget(bar);
    return {words, bar};
}

void Form3ExtrasView::makeStatusBar() {
    window_.statusBar()->setObjectName(QStringLiteral("statusBar"));
    end_ = new QLabel(&window_);
    end_->setObjectName(QStringLiteral("transferEnd"));
    end_->setTextFormat(Qt::PlainText);
    // Long words are cut, the tool tip has them whole; the window needn't be as wide as they are.
    end_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    window_.statusBar()->addWidget(end_, 1);
    constants_ = makeMeter("constantsMeter", QStringLiteral("Constants used"), kMostConstants);
    retentive_ = makeMeter("retentiveMeter", QStringLiteral("Retentive bytes used"), kMostRetentiveBytes);
}

void Form3ExtrasView::makeMenus() {
    QMenu* tools = window_.menuBar()->addMenu(QStringLiteral("&Tools"));
    tools->setObjectName(QStringLiteral("mnuTools"));
    goToAction_ = tools->addAction(QStringLiteral("&Go to Block"));
    goToAction_->setObjectName(QStringLiteral("mnuToolsGoToBlock"));
    goToAction_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_G));
    connect(goToAction_, &QAction::triggered, goTo_, [this] {
        goTo_->setFocus(Qt::ShortcutFocusReason);
        goTo_->selectAll();
    });
    QMenu* help = window_.menuBar()->addMenu(QStringLiteral("&Help"));
    help->setObjectName(QStringLiteral("mnuHelp"));
    makeFunctionPanel(help);
    makeKeysPanel(help);
}

void Form3ExtrasView::makeFunctionPanel(QMenu* help) {
    auto* dock = new QDockWidget(QStringLiteral("Function"), &window_);
    dock->setObjectName(QStringLiteral("functionPanel"));
    page_ = new QPlainTextEdit(dock);
    page_->setObjectName(QStringLiteral("functionPage"));
    page_->setAccessibleName(QStringLiteral("Page of the function"));
    page_->setReadOnly(true);
    page_->setTabChangesFocus(true);
    page_->setFont(theme::fixedFont());
    page_->setLineWrapMode(QPlainTextEdit::NoWrap);
    dock->setWidget(page_);
    window_.addDockWidget(Qt::BottomDockWidgetArea, dock);
    dock->hide();
    QAction* shown = dock->toggleViewAction();
    shown->setText(QStringLiteral("&Function Reference"));
    shown->setObjectName(QStringLiteral("mnuHelpFunction"));
    shown->setShortcut(QKeySequence(Qt::Key_F1));
    connect(dock, &QDockWidget::visibilityChanged, this, &Form3ExtrasView::showFunction);
    help->addAction(shown);
}

void Form3ExtrasView::showFunction() {
    if (!page_->isVisible()) return;
    BlockPanel& blocks = window_.mainForm().blocks;
    std::string name = blocks.CurFuncName;
    if (blocks.isDataView()) {
        // "BLOCK 12 - PID"
        const std::string& shown = blocks.Label5.caption;
        const std::size_t dash = shown.find(" - ");
        name = dash == std::string::npos ? std::string{} : shown.substr(dash + 3);
    }
    const QString page = shownUtf8(window_.guide().pageOf(name));
    if (page_->toPlainText() != page) page_->setPlainText(page);
}

/// Until the next transfer ends, for the user may have been elsewhere: messages that pass only hide it.
void Form3ExtrasView::showTransferEnd() {
    const QString words = shownUtf8(window_.mainForm().transferEnd);
    if (words == end_->text()) return;
    end_->setText(words);
    end_->setToolTip(words);
}

void Form3ExtrasView::makeKeysPanel(QMenu* help) {
    auto* dock = new QDockWidget(QStringLiteral("Keys"), &window_);
    dock->setObjectName(QStringLiteral("keysPanel"));
    auto* words = new QLabel(keysTable(), dock);
    words->setTextFormat(Qt::RichText);
    words->setWordWrap(true);
    words->setMargin(10);
    words->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    dock->setWidget(words);
    window_.addDockWidget(Qt::RightDockWidgetArea, dock);
    dock->hide();
    QAction* shown = dock->toggleViewAction();
    shown->setText(QStringLiteral("&Keys"));
    shown->setObjectName(QStringLiteral("mnuHelpKeys"));
    help->addAction(shown);
}

/// Says why nothing happens where an entry needs an open file.
void Form3ExtrasView::explainIdleEntries() {
    const auto explain = [this](const std::string& entry) {
        if (!window_.mainForm().lacksFile(entry)) return;
        window_.statusBar()->showMessage(QString::fromLatin1(kNoFile), kMessageTime);
    };
    for (const TopMenu& menu : window_.mainForm().menu.menus()) {
        for (const MenuEntry& entry : menu.entries) {
            auto* action = window_.findChild<QAction*>(QString::fromStdString(entry.name));
            connect(action, &QAction::triggered, this, [explain, name = entry.name] { explain(name); });
        }
        explainComing(menu);
    }
    auto* download = window_.findChild<QPushButton*>(QStringLiteral("Command1"));
    connect(download, &QPushButton::clicked, this, [explain] { explain("mnuFileDownload"); });
}

/// In the tool tips of menu and tool bar, and in the status bar while the pointer is on a tool.
void Form3ExtrasView::explainComing(const TopMenu& menu) {
    window_.findChild<QMenu*>(QString::fromStdString(menu.name))->setToolTipsVisible(true);
    for (const MenuEntry& entry : menu.entries) {
        if (!window_.mainForm().isComing(entry.name)) continue;
        auto* action = window_.findChild<QAction*>(QString::fromStdString(entry.name));
        action->setToolTip(QString::fromLatin1(kComing));
        action->setStatusTip(QString::fromLatin1(kComing));
    }
}

void Form3ExtrasView::makeShortcuts() {
    const Stroke strokes[] = {
        {QKeySequence::New, "mnuFileNew"}, {QKeySequence::Open, "mnuFileOpen"}, {QKeySequence::Save, "mnuFileSave"}};
    for (const Stroke& stroke : strokes) {
        window_.findChild<QAction*>(QString::fromLatin1(stroke.entry))->setShortcut(stroke.keys);
    }
}

void Form3ExtrasView::showMeters() {
    if (window_.isBusy() || !window_.isActiveWindow()) return;
    const MemoryUse use = bench_.FileIsOpen ? MemoryUse::of(bench_) : MemoryUse{};
    const auto show = [](const Meter& meter, const char* pattern, int used, int most) {
        meter.words->setText(QString::fromLatin1(pattern).arg(used).arg(most));
        meter.bar->setValue(std::min(used, most));
        QPalette palette = meter.bar->palette();
        palette.setColor(QPalette::Highlight, used > most * kNearlyFull ? theme::warning() : theme::accent());
        meter.bar->setPalette(palette);
    };
    show(constants_, "Constants %1 of %2", use.constants, kMostConstants);
    show(retentive_, "Retentive bytes %1 of %2", use.retentiveBytes, kMostRetentiveBytes);
}

int Form3ExtrasView::nextOf(const QString& name) const {
    db1& db = bench_.db;
    db.FuncSetIndex("FN");
    const int start = here();
    for (int step = 1; step <= kBlockCount; ++step) {
        const int block = (start + step) % kBlockCount;
        const std::int16_t function = bench_.FnOfBlock.at(static_cast<std::size_t>(block));
        if (function == kNop || !window_.mainForm().blocks.hasBoard(block)) continue;
        db.FuncSeekI(function);
        if (!db.FuncNoMatch() && shownText(db.FuncName()).trimmed().compare(name, Qt::CaseInsensitive) == 0)
            return block;
    }
    return -1;
}

/// The block that the search for a name begins behind.
int Form3ExtrasView::here() const {
    const BlockPanel& blocks = window_.mainForm().blocks;
    // Where no data is shown, the search itself selects and shows nothing.
    if (blocks.isDataView()) return bench_.SeekBlock;
    const bool isAtFoundIo =
        found_ >= kFirstIoBlock && ioBlockAt({.row = blocks.Ig.row(), .col = blocks.Ig.col()}) == found_;
    return isAtFoundIo ? found_ : logicBlockAt({.row = blocks.Grid1.row(), .col = blocks.Grid1.col()});
}

QString Form3ExtrasView::goTo(const QString& wanted) {
    if (!bench_.FileIsOpen) return QString::fromLatin1(kNoFile);
    bool isNumber = false;
    const int number = wanted.trimmed().toInt(&isNumber);
    const int block = isNumber ? number : nextOf(wanted.trimmed());
    if (block < 0 || block > kLastBlock) return QStringLiteral("There is no block \"%1\"").arg(wanted);
    BlockPanel& blocks = window_.mainForm().blocks;
    if (!blocks.hasBoard(block)) return QStringLiteral("Block %1 has no board").arg(block);
    found_ = block;
    window_.tell([&blocks, block] { blocks.goToBlock(block); });
    (block < kFirstIoBlock ? window_.Grid1() : window_.Ig())->reveal();
    return {};
}

void Form3ExtrasView::goToTyped() {
    window_.statusBar()->showMessage(goTo(goTo_->text()), kMessageTime);
    if (goTo_->hasFocus()) goTo_->selectAll();
}

}  // namespace qrv
