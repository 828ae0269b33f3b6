// The desktop's message box, file dialog and pump, answered by a user made of events.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <array>
#include <chrono>
#include <fstream>
#include <string>

#include "platform/SerialPort.h"
#include "platform/qt/QtFileDialog.h"
#include "platform/qt/QtMessageBox.h"
#include "platform/qt/QtPump.h"
#include "twins/TemporaryFolder.h"

namespace qrv {
namespace {

/// Lets `act` work on the modal window once it is up.
template <typename Dialog, typename Act>
void whenUp(Act act) {
    QTimer::singleShot(0, qApp, [act] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        act(*dialog);
    });
}

TEST(QtMessageBox, ShowsTitleTextAndButtonsAsTold) {
    whenUp<QMessageBox>([](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), "Warning!");
        EXPECT_EQ(box.text(), "Save changes to /tmp/a&b.qrv?");
        EXPECT_EQ(box.icon(), QMessageBox::Question);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        QTest::mouseClick(box.button(QMessageBox::No), Qt::LeftButton);
    });
    EXPECT_EQ(QtMessageBox().ask(
                  {.text = "Save changes to /tmp/a&b.qrv?", .buttons = Buttons::YesNoCancel, .icon = Icon::Question}),
              Answer::No);
}

TEST(QtMessageBox, AWindowThatIsOnItsWayOutHasNoBox) {
    auto* window = new QWidget;
    window->show();
    window->activateWindow();
    window->hide();
    window->deleteLater();
    whenUp<QMessageBox>([](QMessageBox& box) {
        EXPECT_EQ(box.parentWidget(), nullptr);
        box.accept();
    });
    static_cast<void>(QtMessageBox().ask({.text = "?"}));
}

struct EscapeRow {
    const char* name;
    Buttons buttons;
    Answer answer;
};

class QtMessageBoxEscape : public testing::TestWithParam<EscapeRow> {};

TEST_P(QtMessageBoxEscape, AnswersTheCarefulWay) {
    whenUp<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(QtMessageBox().ask({.text = "?", .buttons = GetParam().buttons}), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Buttons, QtMessageBoxEscape,
                         testing::Values(EscapeRow{"ok", Buttons::Ok, Answer::Ok},
                                         EscapeRow{"okCancel", Buttons::OkCancel, Answer::Cancel},
                                         EscapeRow{"yesNo", Buttons::YesNo, Answer::No},
                                         EscapeRow{"yesNoCancel", Buttons::YesNoCancel, Answer::Cancel}),
                         [](const auto& row) { return row.param.name; });

TEST(QtFileDialog, FiltersAreTheirDescriptionsAndThePatternsAsTheToolkitPartsThem) {
    EXPECT_EQ(nameFilters(kConfigurationFilter), QStringList{"QRV Configuration Database (*.qrv;*.mdb) (*.qrv *.mdb)"});
    EXPECT_EQ(nameFilters("Text|*.txt|All|*.*"), (QStringList{"Text (*.txt)", "All (*.*)"}));
}

TEST(QtFileDialog, ShowsTheFilterAsItIsToldAndTheFilesOfBothItsPatterns) {
    const TemporaryFolder folder;
    for (const char* name : {"a.qrv", "b.mdb", "c.txt", "d.qrv;e.mdb.bak"}) std::ofstream(folder.file(name)) << "x";
    QString shownFilter;
    QStringList shownFiles;
    whenUp<QFileDialog>([&](QFileDialog& dialog) {
        shownFilter = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"))->currentText();
        const auto* list = dialog.findChild<QListView*>(QStringLiteral("listView"));
        const auto names = [list] {
            QStringList found;
            for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row) {
                found << list->model()->index(row, 0, list->rootIndex()).data().toString();
            }
            return found;
        };
        // The folder is read in the background.
        const QStringList expected{QStringLiteral("a.qrv"), QStringLiteral("b.mdb")};
        static_cast<void>(QTest::qWaitFor([&] { return names() == expected; }));
        shownFiles = names();
        dialog.reject();
    });
    EXPECT_EQ(QtFileDialog().ask(
                  {.kind = FileDialogKind::Open, .filter = kConfigurationFilter, .initialName = folder.file("x.qrv")}),
              "");
    EXPECT_EQ(shownFilter, "QRV Configuration Database (*.qrv;*.mdb)");
    EXPECT_EQ(shownFiles, (QStringList{"a.qrv", "b.mdb"}));
}

// What a link leads out of is for the system to say, not for the dialog.
TEST(QtFileDialog, GivesAPathAsItWasTyped) {
    const TemporaryFolder folder;
    whenUp<QFileDialog>([](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QStringLiteral("link/../x.qrv"));
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    EXPECT_EQ(QtFileDialog().ask(
                  {.kind = FileDialogKind::Save, .filter = kConfigurationFilter, .initialName = folder.file("y.qrv")}),
              folder.file("link/../x.qrv"));
}

TEST(QtFileDialog, AsksNothingAboutNamesAndAddsNoSuffix) {
    whenUp<QFileDialog>([](QFileDialog& dialog) {
        EXPECT_TRUE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
        EXPECT_EQ(dialog.fileMode(), QFileDialog::AnyFile);
        EXPECT_EQ(dialog.defaultSuffix(), "");
        dialog.selectFile(QStringLiteral("no such file"));
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    const std::string path =
        QtFileDialog().ask({.kind = FileDialogKind::Open, .filter = kConfigurationFilter, .initialName = "/tmp/x"});
    EXPECT_EQ(path, "/tmp/no such file");
}

TEST(QtFileDialog, ShowsWhatIsToldOfAFileWhole) {
    const TemporaryFolder folder;
    std::ofstream(folder.file("a.qrv")) << "x";
    whenUp<QFileDialog>([](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "New Configuration");
        const auto* list = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
        // The folder is read in the background.
        EXPECT_TRUE(QTest::qWaitFor([&] { return list->model()->rowCount(list->rootIndex()) == 1; }));
        for (int col = 0; col < list->model()->columnCount(); ++col) {
            const QModelIndex cell = list->model()->index(0, col, list->rootIndex());
            EXPECT_TRUE(QTest::qWaitFor([&] { return list->columnWidth(col) >= list->sizeHintForIndex(cell).width(); }))
                << col;
        }
        EXPECT_EQ(list->header()->length(), list->viewport()->width());
        dialog.reject();
    });
    EXPECT_EQ(QtFileDialog().ask({.kind = FileDialogKind::Save,
                                  .filter = kConfigurationFilter,
                                  .initialName = folder.file("x.qrv"),
                                  .title = "New Configuration"}),
              "");
}

TEST(QtFileDialog, CancelGivesNoName) {
    whenUp<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(QtFileDialog().ask({.kind = FileDialogKind::Save, .filter = kConfigurationFilter}), "");
}

/// A port that is one end of a pipe.
class PipePort final : public SerialPort {
 public:
    PipePort() { EXPECT_EQ(pipe(ends_.data()), 0); }
    ~PipePort() override {
        ::close(ends_[0]);
        ::close(ends_[1]);
    }
    void arrive() { EXPECT_EQ(::write(ends_[1], "x", 1), 1); }

    bool open(std::int16_t, const std::string&) override { return true; }
    void close() override {}
    [[nodiscard]] bool isOpen() const override { return true; }
    [[nodiscard]] std::size_t waitingCount() override { return 0; }
    void discardInput() override {}
    void write(std::span<const std::uint8_t>) override {}
    [[nodiscard]] std::vector<std::uint8_t> readAll() override { return {}; }
    [[nodiscard]] SerialFault fault() const override { return SerialFault::None; }
    [[nodiscard]] std::string faultText() const override { return ""; }
    [[nodiscard]] int descriptor() const override { return ends_[0]; }

 private:
    std::array<int, 2> ends_{};
};

using std::chrono::hours;
using std::chrono::milliseconds;

TEST(QtPump, WakesWhenBytesArrive) {
    PipePort port;
    port.arrive();
    // Without the wake-up this would last an hour.
    for (int wake = 0; wake < 3; ++wake) QtPump().pumpUntil(std::chrono::steady_clock::now() + hours(1), &port);
}

TEST(QtPump, ComesBackAtTheDeadline) {
    const auto deadline = std::chrono::steady_clock::now() + milliseconds(20);
    QtPump pump;
    while (std::chrono::steady_clock::now() < deadline) pump.pumpUntil(deadline, nullptr);
}

TEST(QtPump, HandlesAnEventThatWaits) {
    bool handled = false;
    QTimer::singleShot(0, qApp, [&] { handled = true; });
    QtPump pump;
    for (int round = 0; round < 100 && !handled; ++round) {
        pump.pumpUntil(std::chrono::steady_clock::now() + milliseconds(5), nullptr);
    }
    EXPECT_TRUE(handled);
}

}  // namespace
}  // namespace qrv
