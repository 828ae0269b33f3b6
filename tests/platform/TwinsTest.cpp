// The doubles themselves: a double that lets a fault through would make every test that stands on it worthless.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "platform/RunTimeError.h"
#include "twins/FalseClock.h"
#include "twins/MemorySettings.h"
#include "twins/NoPort.h"
#include "twins/ScriptedBox.h"
#include "twins/ScriptedFileDialog.h"
#include "twins/ScriptedHost.h"
#include "twins/TemporaryFolder.h"

namespace qrv {
namespace {

using std::chrono::milliseconds;
using Texts = std::vector<std::string>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

TEST(ScriptedBoxTwin, GivesTheScriptsAnswersAndKeepsWhatWasSaid) {
    ScriptedBox box;
    const Notice question{.text = "Save changes to /a?", .buttons = Buttons::YesNoCancel, .icon = Icon::Question};
    box.expect(question, Answer::No);
    box.expect("Export Complete");
    EXPECT_EQ(box.ask(question), Answer::No);
    box.say("Export Complete");
    EXPECT_EQ(box.said, (std::vector<Notice>{question, {.text = "Export Complete"}}));
}

TEST(ScriptedBoxTwin, FailsOnAnUnexpectedBoxWithItsWords) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedBox box;
            EXPECT_EQ(box.ask({.text = "no pager table"}), Answer::None);
        },
        "an unexpected box: \"no pager table\" titled \"Warning!\"");
}

TEST(ScriptedBoxTwin, FailsOnOtherWordsTitleButtonsOrIcon) {
    const Notice expected{.text = "a", .title = "t", .buttons = Buttons::OkCancel, .icon = Icon::Warning};
    for (int changed = 0; changed < 4; ++changed) {
        Notice said = expected;
        if (changed == 0) said.text = "b";
        if (changed == 1) said.title = "T";
        if (changed == 2) said.buttons = Buttons::Ok;
        if (changed == 3) said.icon = Icon::None;
        testing::TestPartResultArray failures;
        {
            const testing::ScopedFakeTestPartResultReporter reporter(&failures);
            ScriptedBox box;
            box.expect(expected, Answer::Ok);
            box.ask(said);
        }
        EXPECT_EQ(failures.size(), 1) << changed;
    }
}

TEST(ScriptedBoxTwin, FailsForABoxThatNeverCame) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedBox box;
            box.expect("Export Complete");
        },
        "a box never came: \"Export Complete\"");
}

TEST(ScriptedBoxTwin, RefusesAnAnswerThatIsNotAmongTheButtons) {
    EXPECT_FATAL_FAILURE(
        {
            ScriptedBox box;
            box.expect({.text = "a", .buttons = Buttons::YesNo}, Answer::Cancel);
        },
        "a button that isn't there");
}

TEST(ScriptedFileDialogTwin, AnswersInOrderAndFailsWithoutAnAnswerOrAQuestion) {
    {
        ScriptedFileDialog dialog;
        dialog.answer("/a.qrv");
        dialog.answer("");
        EXPECT_EQ(dialog.ask({.kind = FileDialogKind::Save, .initialName = "/b"}), "/a.qrv");
        EXPECT_EQ(dialog.ask({}), "");
        EXPECT_EQ(dialog.asked.front(), (FileQuestion{.kind = FileDialogKind::Save, .initialName = "/b"}));
    }
    EXPECT_NONFATAL_FAILURE(ScriptedFileDialog{}.ask({}), "an unexpected file dialog");
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedFileDialog dialog;
            dialog.answer("/a.qrv");
        },
        "a file dialog never came, for /a.qrv");
}

/// A form whose events are only told.
struct ToyForm : Form {
    explicit ToyForm(const char* formName) : Form(formName, formName) {}
    bool queryUnload(UnloadMode) override { return mayGo; }
    bool mayGo = true;
};

struct ScriptedHostTwin : testing::Test {
    ScriptedHost host;
    ToyForm first{"Form3"};
    ToyForm second{"frmPager"};
    ToyForm third{"frmBlock"};
};

TEST_F(ScriptedHostTwin, LoadsOnceAndActivatesEachTime) {
    host.show(first);
    host.hide(first);
    host.show(first);
    EXPECT_TRUE(host.isVisible(first));
    host.unload(first);
    host.unload(first);
    EXPECT_FALSE(host.isVisible(first));
    host.show(first);
    EXPECT_EQ(host.happened, (Texts{"load Form3", "activate Form3", "activate Form3", "unload Form3", "load Form3",
                                    "activate Form3"}));
}

TEST_F(ScriptedHostTwin, LoadsWithoutShowing) {
    host.load(first);
    EXPECT_TRUE(host.isLoaded(first));
    EXPECT_FALSE(host.isVisible(first));
    host.show(first);
    EXPECT_EQ(host.happened, (Texts{"load Form3", "activate Form3"}));
}

TEST_F(ScriptedHostTwin, GivesControlBackAfterAModalForm) {
    host.show(first);
    host.onModal("frmPager", [&](Form& form) {
        host.onModal("frmBlock", [&](Form& inner) { host.unload(inner); });
        host.showModal(third);
        host.hide(form);
    });
    host.showModal(second);
    EXPECT_EQ(host.happened,
              (Texts{"load Form3", "activate Form3", "load frmPager", "activate frmPager", "load frmBlock",
                     "activate frmBlock", "unload frmBlock", "activate frmPager", "activate Form3"}));
    EXPECT_TRUE(host.isLoaded(second));
}

TEST_F(ScriptedHostTwin, GivesNoControlToAFormThatIsHidden) {
    host.show(first);
    host.onModal("frmPager", [&](Form& form) {
        host.hide(first);
        host.unload(form);
    });
    host.showModal(second);
    EXPECT_EQ(host.happened.back(), "unload frmPager");
}

TEST_F(ScriptedHostTwin, LeavesControlWithAFormThatCameUpFromWithin) {
    host.onModal("frmPager", [&](Form& form) {
        host.unload(form);
        host.show(first);
    });
    host.showModal(second);
    EXPECT_EQ(host.happened,
              (Texts{"load frmPager", "activate frmPager", "unload frmPager", "load Form3", "activate Form3"}));
}

TEST_F(ScriptedHostTwin, AsksTheFormWhenTheUserClosesIt) {
    host.show(first);
    first.mayGo = false;
    EXPECT_FALSE(host.close(first));
    EXPECT_TRUE(host.isVisible(first));
    first.mayGo = true;
    EXPECT_TRUE(host.close(first));
    EXPECT_FALSE(host.isLoaded(first));
}

TEST_F(ScriptedHostTwin, UnloadsEveryFormAtTheEndAndLoadsNoneAfterwards) {
    host.show(first);
    host.load(second);
    host.endProgram(3);
    host.endProgram(4);
    EXPECT_EQ(host.ended, 3);
    EXPECT_FALSE(host.isLoaded(first));
    EXPECT_FALSE(host.isLoaded(second));
    host.showModal(third);
    EXPECT_FALSE(host.isLoaded(third));
}

TEST_F(ScriptedHostTwin, FailsOnAModalFormThatNoScriptWaitsFor) {
    EXPECT_NONFATAL_FAILURE(host.showModal(second), "an unexpected modal form: frmPager");
    EXPECT_FALSE(host.isLoaded(second));
}

TEST_F(ScriptedHostTwin, FailsOnAModalFormThatIsLeftOpen) {
    host.onModal("frmPager", [](Form&) {});
    EXPECT_NONFATAL_FAILURE(host.showModal(second), "frmPager was left open");
    EXPECT_FALSE(host.isLoaded(second));
}

TEST(ScriptedHostTwinAlone, FailsForAFormThatNeverCameUp) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedHost host;
            host.onModal("frmPager", [](Form&) {});
        },
        "the form frmPager never came up");
}

TEST(FalseClockTwin, StandsStillUntilItIsTold) {
    FalseClock clock;
    const auto start = clock.now();
    const auto wall = clock.wallTime();
    EXPECT_EQ(clock.now(), start);
    clock.sleep(milliseconds(200));
    clock.advanceTo(start + milliseconds(500));
    clock.advanceTo(start);
    EXPECT_EQ(clock.elapsed(), milliseconds(500));
    EXPECT_EQ(clock.wallTime() - wall, milliseconds(500));
    EXPECT_EQ(clock.sleeps, (std::vector<milliseconds>{milliseconds(200)}));
}

struct FalsePumpTwin : testing::Test {
    [[nodiscard]] Clock::TimePoint in(int count) const { return Clock::TimePoint{} + milliseconds(count); }
    FalseClock clock;
    FalsePump pump{clock};
    std::string told;
};

TEST_F(FalsePumpTwin, GoesOnToTheDeadlineWhereNothingHappens) {
    pump.pumpUntil(in(600), nullptr);
    EXPECT_EQ(clock.elapsed(), milliseconds(600));
    pump.pumpUntil(in(100), nullptr);
    EXPECT_EQ(clock.elapsed(), milliseconds(600));
}

TEST_F(FalsePumpTwin, StopsAtWhatHappensFirst) {
    pump.at(in(300), [&] { told += "user "; });
    pump.nextArrival = [&]() -> std::optional<Clock::TimePoint> {
        return clock.now() < in(500) ? std::optional(in(500)) : std::nullopt;
    };
    pump.pumpUntil(in(1000), nullptr);
    EXPECT_EQ(clock.elapsed(), milliseconds(300));
    EXPECT_EQ(told, "user ");
    pump.pumpUntil(in(1000), nullptr);
    EXPECT_EQ(clock.elapsed(), milliseconds(500));
    pump.pumpUntil(in(1000), nullptr);
    EXPECT_EQ(clock.elapsed(), milliseconds(1000));
}

TEST_F(FalsePumpTwin, RunsWhatIsDueInOrderAndNothingElse) {
    pump.at(in(10), [&] { told += "b "; });
    pump.at(in(0), [&] { told += "a "; });
    pump.at(in(10), [&] { told += "c "; });
    pump.pump();
    EXPECT_EQ(told, "a ");
    EXPECT_EQ(clock.elapsed(), milliseconds(0));
    clock.sleep(milliseconds(10));
    pump.pump();
    EXPECT_EQ(told, "a b c ");
}

TEST_F(FalsePumpTwin, DoesNotLetTimeGoOnWhileAnEventWaits) {
    pump.at(in(0), [&] { told += "now "; });
    pump.pumpUntil(in(600), nullptr);
    EXPECT_EQ(told, "now ");
    EXPECT_EQ(clock.elapsed(), milliseconds(0));
}

TEST_F(FalsePumpTwin, RefusesAWaitThatNothingWouldEnd) {
    EXPECT_THROW(pump.pumpUntil(Clock::TimePoint::max(), nullptr), std::logic_error);
}

TEST(MemorySettingsTwin, KeepsTextsBySectionAndKey) {
    MemorySettings settings;
    EXPECT_EQ(settings.get("S", "a", "none"), "none");
    settings.save("S", "b", "2");
    settings.save("S", "a", "1");
    settings.save("T", "a", "9");
    EXPECT_EQ(settings.get("S", "a", ""), "1");
    EXPECT_EQ(settings.all("S"), (Pairs{{"a", "1"}, {"b", "2"}}));
    settings.remove("S", "a");
    EXPECT_EQ(settings.all("S"), (Pairs{{"b", "2"}}));
}

TEST(TemporaryFolderTwin, IsGoneWithItsOwner) {
    auto folder = std::make_unique<TemporaryFolder>();
    const std::string path = folder->path();
    std::filesystem::create_directories(folder->file("b/c"));
    std::filesystem::create_directories(folder->file("a"));
    EXPECT_EQ(folder->names(), (Texts{"a", "b"}));
    folder.reset();
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(NoPortTwin, NeverOpens) {
    NoPort port;
    EXPECT_FALSE(port.open(1, "38400,O,8, 1"));
    EXPECT_FALSE(port.isOpen());
    EXPECT_EQ(port.fault(), SerialFault::Missing);
    EXPECT_THROW(static_cast<void>(port.waitingCount()), RunTimeError);
}

}  // namespace
}  // namespace qrv
