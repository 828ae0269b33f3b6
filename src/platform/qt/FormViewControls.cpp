// The widgets of a FormView: each is made here, tied to its data, and shows it at every refresh.
#include <QAction>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <algorithm>

#include "platform/qt/DesktopHost.h"
#include "platform/qt/FormView.h"
#include "platform/qt/GridView.h"
#include "platform/qt/TextBoxes.h"
#include "platform/qt/Texts.h"

namespace qrv {

namespace {

/// Shows or hides without a word where nothing changes, for the toolkit lays out anew at each call.
void showIf(QWidget* widget, bool visible) {
    if (widget->isHidden() == visible) widget->setVisible(visible);
}

/// Gives a widget's items the texts of a list, touching it only where something differs.
template <typename Widget, typename TextAt>
void showItems(Widget* widget, const std::vector<std::string>& items, const TextAt& textAt) {
    const int count = static_cast<int>(items.size());
    bool same = widget->count() == count;
    for (int i = 0; same && i < count; ++i) same = textAt(i) == shownText(items[static_cast<std::size_t>(i)]);
    if (same) return;
    widget->clear();
    QStringList texts;
    for (const std::string& item : items) texts << shownText(item);
    widget->addItems(texts);
}

/// The caption of an entry that stands for something has no mnemonic: its "&" is a character like any other.
QString shownCaption(const MenuEntry& entry) {
    QString caption = shownUtf8(entry.caption);
    if (!entry.tag.empty()) caption.replace(QLatin1Char('&'), QLatin1String("&&"));
    return caption;
}

/// The toolkit stands on the first entry as soon as the list has the focus, and the first Down would choose the second.
class UnchosenList final : public QListWidget {
 public:
    using QListWidget::QListWidget;

 protected:
    void focusInEvent(QFocusEvent* event) override {
        QListWidget::focusInEvent(event);
        if (!selectionModel()->hasSelection()) selectionModel()->clearCurrentIndex();
    }
};

void showCaption(QAbstractButton* widget, const std::string& caption) {
    const QString text = shownUtf8(caption);
    if (widget->text() != text) widget->setText(text);
}

}  // namespace

void FormView::setUp(QWidget* widget, const QString& name) { widget->setObjectName(name); }

void FormView::nameAfter(QWidget* widget, const Label& label) {
    widget->setAccessibleName(shownUtf8(label.caption).simplified());
}

void FormView::addTip(QWidget* widget, const QString& text) {
    if (host_.hasTips()) widget->setToolTip(text);
}

QLabel* FormView::addLabel(const QString& name, const Label& source) {
    auto* label = new QLabel(this);
    setUp(label, name);
    label->setTextFormat(Qt::PlainText);
    addMirror([label, &source] {
        const QString text = shownUtf8(source.caption);
        if (label->text() != text) label->setText(text);
        showIf(label, source.visible);
    });
    return label;
}

QLabel* FormView::addWords(const QString& name, const std::function<QString()>& words) {
    auto* line = new QLabel(this);
    setUp(line, name);
    line->setTextFormat(Qt::PlainText);
    addMirror([line, words] {
        const QString text = words();
        if (line->text() != text) line->setText(text);
    });
    return line;
}

QPushButton* FormView::addButton(const QString& name, const Button& source, const Event& clicked) {
    auto* button = new QPushButton(this);
    setUp(button, name);
    button->setAutoDefault(true);
    if (source.isDefault) setDefaultButton(button);
    connect(button, &QPushButton::clicked, this, [this, clicked] { tell(clicked); });
    addMirror([button, &source] {
        showCaption(button, source.caption);
        button->setEnabled(source.enabled);
        showIf(button, source.visible);
    });
    return button;
}

QLineEdit* FormView::addLine(const QString& name, TextBox& source, const Event& changed) {
    auto* line = new LineBox(this);
    setUp(line, name);
    connect(line, &QLineEdit::textEdited, this, [this, &source, changed](const QString& text) {
        tell([&] {
            source.text = typedLine(text);
            changed();
        });
    });
    addMirror([line, &source] {
        // Set again, even to the same length, it would move the caret and forget what can be undone.
        if (source.maxLength > 0 && line->maxLength() != source.maxLength) line->setMaxLength(source.maxLength);
        // What was typed may be stored as another text, and that one is shown at once.
        const QString text = shownText(source.text).left(line->maxLength());
        if (line->text() != text) {
            const int caret = line->cursorPosition();
            line->setText(text);
            line->setCursorPosition(line->hasFocus() ? caret : 0);
        }
        line->setReadOnly(source.locked);
        line->setEnabled(source.enabled);
        showIf(line, source.visible);
    });
    return line;
}

QPlainTextEdit* FormView::addText(const QString& name, TextBox& source, const Event& changed) {
    auto* box = new PageBox(this);
    setUp(box, name);
    box->setTabChangesFocus(true);
    box->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    connect(box, &QPlainTextEdit::textChanged, this, [this, box, &source, changed] {
        tell([&] {
            source.text = typedText(box->exactText());
            changed();
        });
    });
    addMirror([box, &source] {
        const QString text = shownText(source.text);
        if (box->exactText() != text) {
            const int caret = box->textCursor().position();
            box->setPlainText(text);
            QTextCursor cursor = box->textCursor();
            cursor.setPosition(std::min(caret, static_cast<int>(text.size())));
            box->setTextCursor(cursor);
        }
        box->setReadOnly(source.locked);
        box->setEnabled(source.enabled);
        showIf(box, source.visible);
    });
    return box;
}

QListWidget* FormView::addList(const QString& name, ListBox& source, const Event& clicked) {
    auto* list = new UnchosenList(this);
    setUp(list, name);
    list->setUniformItemSizes(true);
    const auto choose = [this, list, &source, clicked] {
        // A choice that was taken back, as where the items change, is none.
        if (list->selectedItems().isEmpty()) return;
        tell([&] {
            source.listIndex = list->currentRow();
            clicked();
        });
    };
    // The arrow keys choose too; the second event is for a click on the row that is chosen already.
    connect(list, &QListWidget::itemSelectionChanged, this, choose);
    connect(list, &QListWidget::itemClicked, this, [list, &source, choose] {
        if (list->currentRow() != source.listIndex) choose();
    });
    addMirror([this, list, &source] {
        showItems(list, source.items, [list](int i) { return list->item(i)->text(); });
        const std::size_t tips = host_.hasTips() ? std::min(source.toolTips.size(), source.items.size()) : 0;
        for (std::size_t i = 0; i < tips; ++i) {
            list->item(static_cast<int>(i))->setToolTip(shownText(source.toolTips[i]));
        }
        if (list->currentRow() != source.listIndex) list->setCurrentRow(source.listIndex);
        list->setEnabled(source.enabled);
        showIf(list, source.visible);
    });
    return list;
}

QComboBox* FormView::addDropDown(const QString& name, ListBox& source, const Event& chosen) {
    auto* box = new QComboBox(this);
    setUp(box, name);
    connect(box, &QComboBox::activated, this, [this, &source, chosen](int index) {
        tell([&] {
            source.listIndex = index;
            chosen();
        });
    });
    addMirror([box, &source] {
        showItems(box, source.items, [box](int i) { return box->itemText(i); });
        if (box->currentIndex() != source.listIndex) box->setCurrentIndex(source.listIndex);
        box->setEnabled(source.enabled);
        showIf(box, source.visible);
    });
    return box;
}

QAbstractButton* FormView::tie(QAbstractButton* widget, const QString& name, Choice& source, const Event& clicked) {
    setUp(widget, name);
    connect(widget, &QAbstractButton::clicked, this, [this, widget, &source, clicked] {
        tell([&] {
            source.value = widget->isChecked();
            clicked();
        });
    });
    addMirror([widget, &source] {
        showCaption(widget, source.caption);
        if (widget->isChecked() != source.value) widget->setChecked(source.value);
        widget->setEnabled(source.enabled);
        showIf(widget, source.visible);
    });
    return widget;
}

QAbstractButton* FormView::addOption(const QString& name, Choice& source, const Event& clicked) {
    auto* option = new QRadioButton(this);
    // Which option is off is the form's to say.
    option->setAutoExclusive(false);
    return tie(option, name, source, clicked);
}

QAbstractButton* FormView::addCheck(const QString& name, Choice& source, const Event& clicked) {
    return tie(new QCheckBox(this), name, source, clicked);
}

void FormView::addChoiceGroup(QBoxLayout* body, const ChoiceGroup& group) {
    for (const auto& [name, source] : group.boxes) {
        QAbstractButton* box = addCheck(QString::fromLatin1(name), *source, [] {});
        if (!source->enabled) addTip(box, QString::fromLatin1(kComing));
        body->addWidget(box);
    }
    auto* choose = new QHBoxLayout;
    choose->addWidget(addButton(QStringLiteral("btnAll"), group.all, group.allClicked));
    choose->addWidget(addButton(QStringLiteral("btnNone"), group.none, group.noneClicked));
    body->addLayout(choose);
}

void FormView::addLastRow(QBoxLayout* body, const ButtonOf& goOn, const ButtonOf& cancel) {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(addButton(goOn.name, goOn.source, goOn.clicked));
    QPushButton* last = addButton(cancel.name, cancel.source, cancel.clicked);
    row->addWidget(last);
    setCancelButton(last);
    body->addLayout(row);
}

GridView* FormView::addGrid(Grid& source) {
    auto* grid = new GridView(source, this);
    grid->setTellsCutTexts(host_.hasTips());
    grids_.push_back(grid);
    // What is being typed into another grid goes first, while that grid's selection is still on its cell.
    grid->setRunner([this, grid](const Event& event) {
        for (GridView* each : grids_) {
            if (each != grid && !each->finishEdit()) return;
        }
        perform(event);
    });
    grid->setIsFree([this, grid] {
        return std::ranges::none_of(grids_, [grid](const GridView* each) { return each != grid && each->isEditing(); });
    });
    grid->setAfterKey([this] {
        for (GridView* each : grids_) each->reveal();
    });
    addMirror([grid] { grid->refresh(); });
    return grid;
}

void FormView::addTimer(const Timer& source, const Event& tick) {
    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this, timer, &source, tick] {
        // A form that ends its timer and hides is mirrored no more.
        if (source.enabled) {
            tell(tick);
        } else {
            timer->stop();
        }
    });
    addMirror([timer, &source] {
        if (!source.enabled) {
            timer->stop();
        } else if (!timer->isActive() || timer->intervalAsDuration() != source.interval) {
            timer->start(source.interval);
        }
    });
}

QAction* FormView::addEntry(QMenu* menu, const MenuEntry& source, const Event& triggered) {
    QAction* action = source.caption == "-" ? menu->addSeparator() : menu->addAction(shownUtf8(source.caption));
    action->setObjectName(QString::fromStdString(source.name));
    connect(action, &QAction::triggered, this, [this, triggered] { tell(triggered); });
    addMirror([action, &source] {
        if (!action->isSeparator()) action->setText(shownCaption(source));
        action->setEnabled(source.enabled);
        action->setVisible(source.visible);
    });
    return action;
}

QAction* FormView::addEntry(QMenu* menu, const QString& name, const QString& caption, const Event& triggered) {
    QAction* action = menu->addAction(caption);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, [this, triggered] { tell(triggered); });
    return action;
}

}  // namespace qrv
