// The desktop's host with toy forms: what is loaded, shown, activated and ended, and in which order.
#include "platform/qt/DesktopHost.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <string>
#include <vector>

#include "platform/RunTimeError.h"
#include "platform/qt/Application.h"
#include "platform/qt/FormView.h"

namespace qrv {
namespace {

using Events = std::vector<std::string>;

class ToyForm : public Form {
 public:
    ToyForm(std::string_view name, Events& events) : Form(name, "Toy"), events_(events) {}
    void load() override { events_.push_back(name() + " load"); }
    void activate() override { events_.push_back(name() + " activate"); }
    void unload() override { events_.push_back(name() + " unload"); }
    bool queryUnload(UnloadMode) override {
        events_.push_back(name() + " query");
        return mayClose;
    }

    Button Command1{.caption = "&Go"};
    TextBox Text1{.text = "a", .maxLength = 5};
    Timer Timer1{.interval = std::chrono::milliseconds(1)};
    std::function<void()> onGo = [] {};
    std::function<void()> onTick = [] {};
    bool mayClose = true;

 private:
    Events& events_;
};

class ToyView final : public FormView {
 public:
    ToyView(ToyForm& toy, DesktopHost& desktop) : FormView(toy, desktop) {
        makeBody();
        addButton(QStringLiteral("Command1"), toy.Command1, [&toy] { toy.onGo(); });
        addLine(QStringLiteral("Text1"), toy.Text1, [] {});
        addTimer(toy.Timer1, [&toy] { toy.onTick(); });
    }
};

class DesktopHostTest : public testing::Test {
 protected:
    DesktopHostTest() {
        host.add<ToyView, ToyForm>("main");
        host.add<ToyView, ToyForm>("dialog");
    }
    QPushButton* buttonOf(const Form& form) { return host.viewOf(form)->findChild<QPushButton*>("Command1"); }
    /// Runs an action inside the next event loop.
    static void soon(const std::function<void()>& action) { QTimer::singleShot(0, qApp, action); }

    Events events;
    ToyForm main{"main", events};
    ToyForm dialog{"dialog", events};
    DesktopHost host;
};

TEST_F(DesktopHostTest, ShowLoadsOnceAndActivates) {
    host.show(main);
    host.hide(main);
    host.show(main);
    EXPECT_EQ(events, (Events{"main load", "main activate", "main activate"}));
    EXPECT_TRUE(host.isVisible(main));
    EXPECT_EQ(host.viewOf(main)->objectName(), "main");
}

TEST_F(DesktopHostTest, AWindowHasRoomForItsTitle) {
    main.caption = std::string(40, 'W');
    host.show(main);
    const FormView* view = host.viewOf(main);
    const int title = view->fontMetrics().horizontalAdvance(view->windowTitle());
    ASSERT_GT(title, 300);
    constexpr int kIconAndButtons = 100;
    EXPECT_GE(view->width(), title + kIconAndButtons);
}

TEST_F(DesktopHostTest, AFormWhoseLoadFailsKeepsNoOtherFromBeingShown) {
    class Broken final : public Form {
     public:
        Broken() : Form("dialog", "Broken") {}
        void load() override { throw RunTimeError(ErrorNumber::Overflow); }
    };
    Broken broken;
    EXPECT_THROW(host.load(broken), RunTimeError);
    soon([&] { host.hide(dialog); });
    host.showModal(dialog);
    EXPECT_EQ(events, (Events{"dialog load", "dialog activate"}));
}

TEST_F(DesktopHostTest, EscIsTheCloseBoxOfADialogWithoutACancelButton) {
    bool stayed = false;
    soon([&] {
        dialog.mayClose = false;
        QTest::keyClick(host.viewOf(dialog), Qt::Key_Escape);
        stayed = host.isVisible(dialog);
        dialog.mayClose = true;
        QTest::keyClick(host.viewOf(dialog)->findChild<QLineEdit*>("Text1"), Qt::Key_Escape);
    });
    host.showModal(dialog);
    EXPECT_TRUE(stayed);
    EXPECT_FALSE(host.isVisible(dialog));
}

TEST_F(DesktopHostTest, EscLeavesNoWindowThatIsNoDialog) {
    host.show(main);
    QTest::keyClick(host.viewOf(main), Qt::Key_Escape);
    EXPECT_TRUE(host.isVisible(main));
}

TEST_F(DesktopHostTest, ATimerEndedByAFormThatHidesTicksNoMore) {
    int ticks = 0;
    main.Timer1.enabled = true;
    main.onTick = [&] {
        ++ticks;
        main.Timer1.enabled = false;
        host.hide(main);
    };
    host.show(main);
    int beats = 0;
    QTimer other;
    QObject::connect(&other, &QTimer::timeout, qApp, [&] { beats += ticks > 0 ? 1 : 0; });
    other.start(main.Timer1.interval);
    ASSERT_TRUE(QTest::qWaitFor([&] { return beats > 5; }));
    EXPECT_EQ(ticks, 1);
}

TEST_F(DesktopHostTest, ModalFormComesBackToTheOneBefore) {
    host.show(main);
    events.clear();
    soon([&] { host.hide(dialog); });
    host.showModal(dialog);
    EXPECT_EQ(events, (Events{"dialog load", "dialog activate", "main activate"}));
    EXPECT_FALSE(host.isVisible(dialog));
}

TEST_F(DesktopHostTest, HiddenFormIsNotActivatedByALeavingModal) {
    host.show(main);
    host.hide(main);
    events.clear();
    soon([&] { host.unload(dialog); });
    host.showModal(dialog);
    EXPECT_EQ(events, (Events{"dialog load", "dialog activate", "dialog unload"}));
}

TEST_F(DesktopHostTest, AModalFormThatGivesItsPlaceForAWhileIsAwaitedOnAndStaysModal) {
    ToyForm third("dialog", events);
    host.show(main);
    dialog.onGo = [&] {
        host.hide(dialog);
        soon([&] {
            host.hide(third);
            host.show(dialog);
        });
        host.showModal(third);
    };
    bool cameBack = false;
    Qt::WindowModality modality = Qt::NonModal;
    soon([&] {
        QTest::mouseClick(buttonOf(dialog), Qt::LeftButton);
        soon([&] {
            cameBack = host.isVisible(dialog);
            modality = host.viewOf(dialog)->windowModality();
            host.hide(dialog);
        });
    });
    host.showModal(dialog);
    EXPECT_TRUE(cameBack);
    EXPECT_EQ(modality, Qt::ApplicationModal);
    EXPECT_FALSE(host.isVisible(dialog));
    EXPECT_EQ(events.back(), "main activate");
}

TEST_F(DesktopHostTest, CloseBoxAsksTheForm) {
    host.show(main);
    main.mayClose = false;
    host.viewOf(main)->close();
    EXPECT_TRUE(host.isVisible(main));
    main.mayClose = true;
    host.viewOf(main)->close();
    EXPECT_FALSE(host.isVisible(main));
    EXPECT_EQ(events, (Events{"main load", "main activate", "main query", "main query", "main unload"}));
}

TEST_F(DesktopHostTest, EventShowsEveryVisibleFormAgain) {
    host.show(main);
    main.onGo = [&] {
        main.caption = "Changed";
        main.Command1.enabled = false;
        main.Text1.text = "\x80";
    };
    QTest::mouseClick(buttonOf(main), Qt::LeftButton);
    EXPECT_EQ(host.viewOf(main)->windowTitle(), "Changed");
    EXPECT_FALSE(buttonOf(main)->isEnabled());
    EXPECT_EQ(host.viewOf(main)->findChild<QLineEdit*>("Text1")->text(), QStringLiteral("€"));
}

TEST_F(DesktopHostTest, TypedTextReachesTheForm) {
    host.show(main);
    auto* line = host.viewOf(main)->findChild<QLineEdit*>("Text1");
    line->selectAll();
    QTest::keyClicks(line, QStringLiteral("boiler"));
    EXPECT_EQ(main.Text1.text, "boile");
}

TEST_F(DesktopHostTest, FormThatUnloadsItselfInItsOwnEventKeepsItsWindowUntilTheEventEnds) {
    host.show(main);
    QPointer<FormView> view = host.viewOf(main);
    main.onGo = [&] {
        host.unload(main);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(view.isNull());
        EXPECT_TRUE(view->isBusy());
    };
    QTest::mouseClick(buttonOf(main), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(view.isNull());
}

TEST_F(DesktopHostTest, EndOfTheProgramUnloadsEveryFormAndLeavesEveryLoop) {
    host.show(main);
    soon([&] { host.showModal(dialog); });
    QTimer::singleShot(0, qApp, [&] { host.endProgram(3); });
    EXPECT_EQ(QApplication::exec(), 3);
    EXPECT_FALSE(host.isVisible(main));
    EXPECT_EQ(host.exitCode(), 3);
    EXPECT_EQ(std::count(events.begin(), events.end(), "main unload"), 1);
    EXPECT_EQ(std::count(events.begin(), events.end(), "dialog unload"), 1);
    host.show(main);
    EXPECT_FALSE(host.isVisible(main));
}

TEST_F(DesktopHostTest, RunTimeErrorOfAnEventGoesToTheProgramsEdge) {
    std::vector<std::string> errors;
    Application::setEnding([&](const RunTimeError& error) { errors.push_back(error.description()); });
    host.show(main);
    main.onGo = [] { throw RunTimeError(ErrorNumber::ReadOnlyDatabase); };
    QTest::mouseClick(buttonOf(main), Qt::LeftButton);
    Application::setEnding([](const RunTimeError&) { FAIL() << "no error was expected"; });
    EXPECT_EQ(errors, std::vector<std::string>{"The file is read-only."});
}

TEST_F(DesktopHostTest, AWindowIsNoLargerThanTheScreen) {
    ToyForm form("main", events);
    host.load(form);
    host.viewOf(form)->resize(9000, 9000);
    host.show(form);
    const QSize screen = host.viewOf(form)->screen()->availableSize();
    EXPECT_EQ(host.viewOf(form)->width(), screen.width());
    EXPECT_LT(host.viewOf(form)->height(), screen.height());
}

/// A form whose loading takes the user's events, as one does that looks for a controller.
class SlowForm final : public ToyForm {
 public:
    using ToyForm::ToyForm;
    void load() override {
        ToyForm::load();
        meanwhile();
    }
    std::function<void()> meanwhile = [] {};
};

TEST_F(DesktopHostTest, NobodyBeginsAgainWhatIsStillLoading) {
    SlowForm slow("dialog", events);
    host.show(main);
    int clicks = 0;
    main.onGo = [&] {
        ++clicks;
        host.showModal(slow);
    };
    slow.meanwhile = [&] {
        QTest::mouseClick(buttonOf(main), Qt::LeftButton);
        QTest::keyClick(host.viewOf(main), Qt::Key_G, Qt::AltModifier);
        QApplication::processEvents();
        // By no way at all.
        host.showModal(slow);
        soon([&] { host.unload(slow); });
    };
    QTest::mouseClick(buttonOf(main), Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(std::count(events.begin(), events.end(), "dialog load"), 1);
    EXPECT_TRUE(host.isVisible(main));
}

TEST_F(DesktopHostTest, TheWaitCursorOfALongLoadGoesWhileABoxIsUp) {
    SlowForm slow("main", events);
    const auto waits = [] {
        const QCursor* shape = QGuiApplication::overrideCursor();
        return shape && shape->shape() == Qt::WaitCursor;
    };
    bool waitsOverTheBox = true;
    slow.meanwhile = [&] {
        ASSERT_TRUE(QTest::qWaitFor(waits));
        QDialog box;
        soon([&] {
            waitsOverTheBox = waits();
            box.accept();
        });
        box.exec();
        EXPECT_TRUE(QTest::qWaitFor(waits));
    };
    host.show(slow);
    EXPECT_FALSE(waitsOverTheBox);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(DesktopHostTest, ABoxThatALoadingFormShowsTakesInput) {
    SlowForm slow("main", events);
    bool isPressed = false;
    slow.meanwhile = [&] {
        QDialog box;
        QPushButton button("Yes", &box);
        QObject::connect(&button, &QPushButton::clicked, [&] {
            isPressed = true;
            box.accept();
        });
        soon([&] { QTest::mouseClick(&button, Qt::LeftButton); });
        QTimer::singleShot(2000, &box, &QDialog::reject);
        box.exec();
    };
    host.show(slow);
    EXPECT_TRUE(isPressed);
}

}  // namespace
}  // namespace qrv
