#include "shell/Form3View.h"

#include <QBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>

#include "blocks/BlockMap.h"
#include "blocks/BlockNumbers.h"
#include "platform/qt/FormMenu.h"
#include "platform/qt/GridView.h"
#include "platform/qt/Texts.h"
#include "platform/qt/Theme.h"
#include "shell/Form3ExtrasView.h"
#include "shell/FunctionFilterView.h"
#include "shell/FunctionWords.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr int kWindowWidth = 1280;  // pixels, without the frame
constexpr int kWindowHeight = 690;
constexpr int kCommentLines = 4;
constexpr int kSideMargin = 12;  // pixels beside the data grids

QBoxLayout* columnIn(QWidget* pane) {
    auto* layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(5);
    return layout;
}

}  // namespace

Extras extrasOfEnvironment() {
    return qEnvironmentVariable("QRV_EDIT_CLASSIC") == QLatin1String("1") ? Extras::Absent : Extras::Shown;
}

Form3View::Form3View(Form3& form, DesktopHost& host, Workbench& bench, Extras extras)
    : FormView(form, host), form_(form), blocks_(form.blocks), bench_(bench), guide_(bench.places.catalogue) {
    makeMenus();
    grid1_ = addGrid(blocks_.Grid1);
    auto* right = new QWidget(this);
    auto* panes = columnIn(right);
    QWidget* maps = makeMaps();
    panes->addWidget(makeDataPane(), 1);
    panes->addWidget(makeListPane(extras), 1);
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(8);
    for (QWidget* pane : {static_cast<QWidget*>(grid1_), maps, right}) splitter->addWidget(pane);
    splitter->setStretchFactor(0, 5);
    splitter->setStretchFactor(1, 0);
    splitter->setStretchFactor(2, 3);
    const int side = fg2_->sizeHint().width() + kSideMargin;
    splitter->setSizes({kWindowWidth - side - maps->sizeHint().width(), maps->sizeHint().width(), side});
    // Around the splitter, which leaves margins of its own out of its least size.
    auto* body = new QWidget(this);
    auto* layout = new QVBoxLayout(body);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->addWidget(splitter);
    auto* scroller = new QScrollArea(this);
    scroller->setWidget(body);
    scroller->setWidgetResizable(true);
    scroller->setFrameShape(QFrame::NoFrame);
    setCentralWidget(scroller);
    nameCells();
    if (extras == Extras::Shown) new Form3ExtrasView(*this, bench);
    resize(kWindowWidth, kWindowHeight);
}

void Form3View::makeMenus() {
    for (TopMenu& top : form_.menu.menus()) {
        auto* menu = new FormMenu(shownUtf8(top.caption), menuBar());
        menuBar()->addMenu(menu);
        menu->setObjectName(QString::fromStdString(top.name));
        for (MenuEntry& entry : top.entries) addEntry(menu, entry, [this, name = entry.name] { form_.choose(name); });
    }
}

QLabel* Form3View::legend(const char* name, const Label& label, Colour colour) {
    QLabel* sample = addLabel(QString::fromLatin1(name), label);
    QPalette palette = sample->palette();
    palette.setColor(QPalette::Window, QColor(colour.rgb));
    sample->setPalette(palette);
    sample->setAutoFillBackground(true);
    sample->setMargin(2);
    QFont bold = theme::gridFont();
    bold.setBold(true);
    sample->setFont(bold);
    return sample;
}

QWidget* Form3View::makeMaps() {
    auto* pane = new QWidget(this);
    QBoxLayout* column = columnIn(pane);
    QLabel* heading = addLabel(QStringLiteral("Label3"), blocks_.Label3);
    heading->setFont(theme::headingFont());
    ig_ = addGrid(blocks_.Ig);
    ig_->showAllRows();
    ig_->setMinimumWidth(ig_->sizeHint().width());
    heading->setBuddy(ig_);
    column->addWidget(heading);
    column->addWidget(ig_);
    auto* colours = new QHBoxLayout;
    colours->setSpacing(4);
    colours->addWidget(legend("Label8", blocks_.Label8, kAlarmColour));
    colours->addWidget(legend("Label9", blocks_.Label9, kEventColour));
    colours->addWidget(legend("Label10", blocks_.Label10, kPageColour));
    column->addLayout(colours);
    column->addSpacing(6);
    QLabel* boards = addLabel(QStringLiteral("Label7"), blocks_.Label7);
    boards->setFont(theme::headingFont());
    column->addWidget(boards);
    QLabel* map = addLabel(QStringLiteral("Label6"), blocks_.Label6);
    map->setFont(theme::gridFont());
    column->addWidget(map);
    QListWidget* slotTexts = addList(QStringLiteral("List2"), blocks_.List2, [] {});
    slotTexts->setAccessibleName(QStringLiteral("Slot descriptions"));
    column->addWidget(slotTexts);
    column->addStretch(1);
    QPushButton* alarms = addButton(QStringLiteral("cmdViewAlarmInfo"), blocks_.cmdViewAlarmInfo,
                                    [this] { blocks_.cmdViewAlarmInfo_Click(); });
    alarms->setToolTip(QString::fromLatin1(BlockPanel::kCmdViewAlarmInfoToolTip));
    column->addWidget(alarms);
    column->addWidget(addButton(QStringLiteral("Command1"), form_.Command1, [this] { form_.Command1_Click(); }));
    return pane;
}

QWidget* Form3View::makeDataPane() {
    auto* pane = new QWidget(this);
    QBoxLayout* column = columnIn(pane);
    QLabel* block = addLabel(QStringLiteral("Label5"), blocks_.Label5);
    block->setFont(theme::titleFont());
    column->addWidget(block);
    auto* grids = new QSplitter(Qt::Vertical, pane);
    grids->setChildrenCollapsible(false);
    const auto half = [&](const char* name, const Label& caption, Grid& grid) {
        auto* part = new QWidget(grids);
        QBoxLayout* layout = columnIn(part);
        QLabel* label = addLabel(QString::fromLatin1(name), caption);
        label->setFont(theme::headingFont());
        GridView* view = addGrid(grid);
        label->setBuddy(view);
        nameAfter(view, caption);
        layout->addWidget(label);
        layout->addWidget(view, 1);
        grids->addWidget(part);
        return view;
    };
    fg2_ = half("Label1", blocks_.Label1, blocks_.fg2);
    fg3_ = half("Label2", blocks_.Label2, blocks_.fg3);
    column->addWidget(grids, 1);
    QLabel* heading = addLabel(QStringLiteral("Label4"), blocks_.Label4);
    heading->setFont(theme::headingFont());
    QPlainTextEdit* comment = addText(QStringLiteral("txtCmt"), blocks_.txtCmt, [] {});
    comment->setFixedHeight(kCommentLines * comment->fontMetrics().lineSpacing() + 12);
    comment->setAccessibleName(QStringLiteral("Comment of the block"));
    addTip(comment, QStringLiteral("Double click, or Enter, to edit the comments"));
    heading->setBuddy(comment);
    watchDoubleClick(comment->viewport(), [this] { blocks_.txtCmt_DblClick(); });
    watchKeys(comment, [this](Key key) {
        if (key != Key::Enter) return false;
        blocks_.txtCmt_DblClick();
        return true;
    });
    column->addWidget(heading);
    column->addWidget(comment);
    addMirror([this, pane] { pane->setVisible(blocks_.isDataView()); });
    return pane;
}

QWidget* Form3View::makeListPane(Extras extras) {
    auto* pane = new QWidget(this);
    QBoxLayout* column = columnIn(pane);
    QListWidget* functions = addList(QStringLiteral("List1"), blocks_.List1, [this] { blocks_.List1_Click(); });
    functions->setAccessibleName(QStringLiteral("Functions"));
    if (extras == Extras::Shown) {
        const FunctionFilterView::Texts texts{
            .sentence = [this](const QString& name) { return shownUtf8(guide_.sentenceOf(typedText(name))); },
            .words = [](const QString& name) { return shownUtf8(std::string(wordsOfFunction(typedText(name)))); }};
        auto* filter = new FunctionFilterView(functions, texts, pane);
        column->addWidget(filter);
        column->addWidget(functions, 1);
        column->addWidget(filter->sentence());
    } else {
        column->addWidget(functions, 1);
    }
    addMirror([this, pane] { pane->setVisible(blocks_.List1.visible); });
    return pane;
}

void Form3View::nameCells() {
    const auto words = [](int block, const std::string& text) {
        const QString name = shownText(text).trimmed();
        return QStringLiteral("block %1, %2").arg(block).arg(name.isEmpty() ? QStringLiteral("empty") : name);
    };
    grid1_->setAccessibleName(QStringLiteral("Blocks 0 to 599"));
    grid1_->setAccessibleText([this, words](int row, int col) {
        return words(logicBlockAt({.row = row, .col = col}), blocks_.Grid1.text(row, col));
    });
    ig_->setAccessibleName(QStringLiteral("I/O blocks 600 to 704"));
    ig_->setAccessibleText([this, words](int row, int col) {
        const std::string& text = blocks_.Ig.text(row, col);
        return words(ioBlockAt({.row = row, .col = col}), text == "." ? "no board" : text);
    });
    const auto dataWords = [](const Grid& grid, const char* kind, int description) {
        return [&grid, kind, description](int row, int col) {
            return QStringLiteral("%1 %2, %3, %4 %5")
                .arg(QString::fromLatin1(kind))
                .arg(row)
                .arg(shownText(grid.text(row, description)), shownText(grid.text(0, col)),
                     shownText(grid.text(row, col)));
        };
    };
    fg2_->setAccessibleText(dataWords(blocks_.fg2, "input", 3));
    fg3_->setAccessibleText(dataWords(blocks_.fg3, "parameter", 2));
}

void Form3View::afterRefresh() {
    const bool isIo = bench_.SeekBlock >= kFirstIoBlock;
    grid1_->setMuted(isIo || !blocks_.isCellChosen());
    ig_->setMuted(!isIo);
    if (blocks_.focus.empty()) return;
    const std::string name = std::exchange(blocks_.focus, {});
    if (fg3_->isBeingLeft()) return;
    if (auto* widget = findChild<QWidget*>(QString::fromStdString(name))) widget->setFocus(Qt::OtherFocusReason);
}

}  // namespace qrv
