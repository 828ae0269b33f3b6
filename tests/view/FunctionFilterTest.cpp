// The box over the function list, which narrows it.
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>

#include "ViewRig.h"

namespace qrv {
namespace {

class FunctionFilter : public testing::Test {
 protected:
    void SetUp() override { rig.startWithNewFile(); }

    ViewRig rig;
};

TEST_F(FunctionFilter, NarrowsTheFunctionListAndTellsWhatAFunctionDoes) {
    ViewRig::choose(rig.mainView(), "mnuEditCfg");
    auto* list = ViewRig::find<QListWidget>(rig.mainView(), "List1");
    QListWidgetItem* add = list->findItems(QStringLiteral("ADD"), Qt::MatchFixedString).first();
    QListWidgetItem* pid = list->findItems(QStringLiteral("PID"), Qt::MatchFixedString).first();
    QTest::keyClicks(ViewRig::find<QLineEdit>(rig.mainView(), "functionFilter"), QStringLiteral("add"));
    EXPECT_FALSE(add->isHidden());
    EXPECT_TRUE(pid->isHidden());
    list->setCurrentItem(add);
    EXPECT_EQ(ViewRig::find<QLabel>(rig.mainView(), "functionSentence")->text(), "Sum of two");
}

TEST_F(FunctionFilter, FindsAFunctionByItsSentenceAndByTheWordsOfTheTrade) {
    ViewRig::choose(rig.mainView(), "mnuEditCfg");
    const auto* list = ViewRig::find<QListWidget>(rig.mainView(), "List1");
    auto* filter = ViewRig::find<QLineEdit>(rig.mainView(), "functionFilter");
    const std::pair<const char*, QStringList> rows[] = {
        {"average", {"AVG8", "MOVAVG", "AVGTIME"}},
        {"mean", {"AVG8", "MOVAVG", "AVGTIME"}},
        {"period highest", {"AVGTIME"}},
        {"minimum", {"MIN2", "MIN8", "LIMIT", "AVGTIME", "PEAK", "MINONOFF"}},
        {"low select", {"MIN2", "MIN8"}},
        {"maximum", {"MAX2", "MAX8", "LIMIT", "AVGTIME", "PEAK"}},
        {"multiply", {"MUL"}},
        {"divide", {"DIV"}},
        {"addition", {"ADD", "SUM4"}},
        {"subtract", {"SUB"}},
        {"timer", {"OPTIME", "RUNHOURS", "ONESHOT", "ONDELAY", "OFFDELAY", "FLASHER", "MINONOFF", "SCHEDULE"}},
        {"delay", {"DEADTIME", "ONDELAY", "OFFDELAY", "ALARM"}},
        {"select", {"MULTISW", "MAX2", "MIN2", "MAX8", "MIN8", "MEDIAN3", "ASW", "MUX8", "DSW"}},
        {"compare", {"HICMP", "LOCMP", "COMPARE", "WINDOW"}},
        {"flip-flop", {"LATCH"}},
        {"counter", {"PULSETOT", "COUNTER"}},
        {"ramp", {"RATELIM", "RAMP"}},
        {"integral", {"TOTAL", "PID", "PIDX"}},
        {"totalizer", {"TOTAL", "PULSETOT", "RUNHOURS", "BATCH"}},
        {"logic", {"AND2", "AND8", "OR2", "OR8", "NOT", "XOR", "VOTE", "LATCH"}},
        {"schedule", {"SCHEDSP", "SCHEDULE", "PGRSCHED", "HOLIDAY", "OPTSTART"}},
        {"square root", {"SQRT"}},
        {"no such function", {}},
    };
    for (const auto& [typed, expected] : rows) {
        filter->clear();
        QTest::keyClicks(filter, QString::fromLatin1(typed));
        QStringList found;
        for (int row = 0; row < list->count(); ++row) {
            if (!list->item(row)->isHidden()) found << list->item(row)->text().trimmed();
        }
        EXPECT_EQ(found, expected) << typed;
    }
    const auto* sentence = ViewRig::find<QLabel>(rig.mainView(), "functionSentence");
    EXPECT_EQ(sentence->text(), "No function is found by these words.");
    filter->clear();
    EXPECT_EQ(sentence->text(), "");
}

TEST_F(FunctionFilter, DownFromTheFilterChoosesTheFirstFunctionFound) {
    ViewRig::choose(rig.mainView(), "mnuEditCfg");
    auto* list = ViewRig::find<QListWidget>(rig.mainView(), "List1");
    auto* filter = ViewRig::find<QLineEdit>(rig.mainView(), "functionFilter");
    EXPECT_TRUE(filter->hasFocus()) << "the list has come up";
    QTest::keyClicks(filter, QStringLiteral("average"));
    QTest::keyClick(filter, Qt::Key_Down);
    EXPECT_TRUE(list->hasFocus());
    EXPECT_EQ(rig.program.mainWindow.blocks.CurFuncName, "AVG8");
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(rig.program.mainWindow.blocks.CurFuncName, "MOVAVG");
    QTest::keyClick(filter, Qt::Key_Down);
    EXPECT_EQ(rig.program.mainWindow.blocks.CurFuncName, "MOVAVG");
}

}  // namespace
}  // namespace qrv
