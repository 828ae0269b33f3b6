#include "platform/Unattended.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

struct CountedForm : Form {
    CountedForm() : Form("frmCounted", "Counted") {}
    void load() override { ++loads; }
    void activate() override { ++activations; }
    void unload() override { ++unloads; }
    int loads = 0, activations = 0, unloads = 0;
};

TEST(Unattended, AnswersNoBox) {
    std::vector<std::string> heard;
    NoAnswerBox box([&](const Notice& notice) { heard.push_back(notice.text); });
    for (const Buttons buttons : {Buttons::Ok, Buttons::OkCancel, Buttons::YesNo, Buttons::YesNoCancel}) {
        EXPECT_EQ(box.ask({.text = "Replace?", .buttons = buttons}), Answer::None);
        EXPECT_FALSE(isAmong(Answer::None, buttons));
    }
    EXPECT_EQ(heard.size(), 4U);
    EXPECT_EQ(NoAnswerBox{}.ask({.text = "unheard"}), Answer::None);
}

TEST(Unattended, ChoosesNoFile) { EXPECT_EQ(NoFileDialog{}.ask({.initialName = "/a.qrv"}), ""); }

TEST(Unattended, ShowsNoForm) {
    NoFormHost host;
    CountedForm modal;
    host.showModal(modal);
    EXPECT_EQ(modal.loads, 1);
    EXPECT_EQ(modal.unloads, 1);
    EXPECT_EQ(modal.activations, 0);
    CountedForm plain;
    host.show(plain);
    host.show(plain);
    EXPECT_FALSE(host.isVisible(plain));
    EXPECT_EQ(plain.loads, 1);
    host.endProgram(0);
    host.unload(plain);
    EXPECT_EQ(plain.unloads, 1);
}

TEST(MessageBoxWords, AnswersAreAmongTheirButtonsAlone) {
    EXPECT_TRUE(isAmong(Answer::Ok, Buttons::Ok));
    EXPECT_FALSE(isAmong(Answer::Cancel, Buttons::Ok));
    EXPECT_TRUE(isAmong(Answer::Cancel, Buttons::OkCancel));
    EXPECT_FALSE(isAmong(Answer::Yes, Buttons::OkCancel));
    EXPECT_FALSE(isAmong(Answer::Cancel, Buttons::YesNo));
    EXPECT_TRUE(isAmong(Answer::No, Buttons::YesNoCancel));
    EXPECT_FALSE(isAmong(Answer::Ok, Buttons::YesNoCancel));
}

}  // namespace
}  // namespace qrv
