// "Comm Port Settings".
#include <gtest/gtest.h>

#include "LinkRig.h"
#include "link/CommSettings.h"
#include "platform/SerialPortList.h"

namespace qrv::test {
namespace {

using Texts = std::vector<std::string>;

class ListedPorts final : public SerialPortList {
 public:
    [[nodiscard]] std::vector<SerialPortName> names() override { return listed; }
    std::vector<SerialPortName> listed;
};

struct SettingsRig {
    ListedPorts ports;
    LineRig rig{&ports};
    frmComm& form = rig.comm;

    void list(const Texts& names) {
        for (const std::string& name : names) ports.listed.push_back({.name = name, .toolTip = "tip of " + name});
    }
    std::string stored(const char* key) { return rig.settings.get("Communication Settings", key, "-"); }
};

TEST(frmCommSettings, ShowsItsLists) {
    SettingsRig rig;
    rig.form.load();
    EXPECT_EQ(rig.form.caption, "Comm Port Settings");
    EXPECT_EQ(rig.form.Combo1.items, (Texts{"38400", "19200", " 9600", " 4800", " 2400", " 1200"}));
    EXPECT_EQ(rig.form.Combo3.items, (Texts{"ODD", "EVEN", "NONE"}));
    EXPECT_EQ(rig.form.Combo1.text(), "38400");
    EXPECT_EQ(rig.form.Combo3.text(), "ODD");
    EXPECT_EQ(rig.form.Label1.caption, "BAUD RATE");
    EXPECT_EQ(rig.form.Label2.caption, "COMM PORT");
    EXPECT_EQ(rig.form.Label3.caption, "PARITY");
    EXPECT_EQ(rig.form.mnuExitEntry.caption, "&Done");
}

struct ShownRow {
    const char* name;
    const char* baudRate;
    const char* parity;
    int baudIndex;
    int parityIndex;
    const char* baudAfter;
    const char* parityAfter;
};

class ShownSettingsTest : public testing::TestWithParam<ShownRow> {};

TEST_P(ShownSettingsTest, SelectsTheCurrentOnes) {
    SettingsRig rig;
    rig.rig.bench.baud_rate = GetParam().baudRate;
    rig.rig.bench.parity = GetParam().parity;
    rig.form.load();
    EXPECT_EQ(rig.form.Combo1.listIndex, GetParam().baudIndex);
    EXPECT_EQ(rig.form.Combo3.listIndex, GetParam().parityIndex);
    EXPECT_EQ(rig.rig.bench.baud_rate, GetParam().baudAfter);
    EXPECT_EQ(rig.rig.bench.parity, GetParam().parityAfter);
}

INSTANTIATE_TEST_SUITE_P(Values, ShownSettingsTest,
                         testing::Values(ShownRow{"usual", "38400", "O", 0, 0, "38400", "O"},
                                         ShownRow{"padded", "9600", "E", 2, 1, "9600", "E"},
                                         ShownRow{"storedWithABlank", " 9600", "N", 2, 2, "9600", "N"},
                                         ShownRow{"slowest", "1200", "N", 5, 2, "1200", "N"},
                                         ShownRow{"notInTheList", "300", "O", -1, 0, "300", "O"},
                                         ShownRow{"noParityLetter", "57600", "M", -1, 2, "57600", "N"}),
                         [](const auto& row) { return row.param.name; });

TEST(frmCommSettings, AChoiceSetsTheRateWithoutItsPadding) {
    SettingsRig rig;
    rig.form.load();
    const Texts rates{"38400", "19200", "9600", "4800", "2400", "1200", "300"};
    for (int index = 0; index < 7; ++index) {
        rig.form.chooseBaudRate(index);
        EXPECT_EQ(rig.rig.bench.baud_rate, rates.at(static_cast<std::size_t>(index)));
    }
    rig.form.chooseBaudRate(7);
    rig.form.chooseBaudRate(-1);
    EXPECT_EQ(rig.rig.bench.baud_rate, "300");
}

TEST(frmCommSettings, AChoiceSetsTheParity) {
    SettingsRig rig;
    rig.form.load();
    for (int index = 0; index < 3; ++index) {
        rig.form.chooseParity(index);
        EXPECT_EQ(rig.rig.bench.parity, (Texts{"O", "E", "N"}.at(static_cast<std::size_t>(index))));
    }
}

TEST(frmCommSettings, WithoutAListThePortsStandInTheOrderOfTheirNumbers) {
    LineRig rig;
    rig.line.opens = false;
    rig.comm.activate();
    ASSERT_EQ(rig.comm.Combo2.items.size(), 32U);
    EXPECT_EQ(rig.comm.Combo2.items[0], "COM1   (In Use)");
    EXPECT_EQ(rig.comm.Combo2.items[1], "COM2   (In Use)");
    EXPECT_EQ(rig.comm.Combo2.items[31], "COM32   (In Use)");
}

TEST(frmCommSettings, AListThatHoldsNoPortIsAsGoodAsNone) {
    SettingsRig rig;
    rig.list({"LPT1", ""});
    rig.form.activate();
    EXPECT_EQ(rig.form.Combo2.items.size(), 32U);
}

TEST(frmCommSettings, ListedPortsAreSortedAsText) {
    SettingsRig rig;
    rig.list({"COM2", "COM10", "\\Device\\COM1", "COM3"});
    rig.form.activate();
    EXPECT_EQ(rig.form.Combo2.items,
              (Texts{"COM1   (Available)", "COM10   (Available)", "COM2   (Available)", "COM3   (Available)"}));
    EXPECT_EQ(rig.form.Combo2.toolTips[1], "tip of COM10");
    EXPECT_TRUE(rig.form.Combo2.enabled);
}

TEST(frmCommSettings, AtMost256NamesFit) {
    SettingsRig rig;
    for (int number = 1; number <= 300; ++number) rig.list({"COM" + std::to_string(number)});
    rig.form.activate();
    EXPECT_EQ(rig.form.Combo2.items.size(), 256U);
}

TEST(frmCommSettings, EachPortIsTriedAndClosedAgain) {
    SettingsRig rig;
    rig.list({"COM4", "COM12"});
    rig.form.activate();
    EXPECT_EQ(rig.rig.line.opened,
              (std::vector<std::pair<std::int16_t, std::string>>{{12, "38400,O,8, 1"}, {4, "38400,O,8, 1"}}));
    EXPECT_FALSE(rig.rig.line.isOpen());
}

TEST(frmCommSettings, APortThatDoesNotOpenIsInUse) {
    SettingsRig rig;
    rig.list({"COM4"});
    rig.rig.line.opens = false;
    rig.form.activate();
    EXPECT_EQ(rig.form.Combo2.items, (Texts{"COM4   (In Use)"}));
}

TEST(frmCommSettings, WhileThePortIsOpenAllAreInUse) {
    SettingsRig rig;
    rig.list({"COM4", "COM5"});
    rig.form.Open_Comm_Port();
    rig.form.activate();
    EXPECT_EQ(rig.form.Combo2.items, (Texts{"COM4   (In Use)", "COM5   (In Use)"}));
    EXPECT_TRUE(rig.rig.line.isOpen());
    EXPECT_EQ(rig.rig.line.opened.size(), 1U);
}

TEST(frmCommSettings, TheCurrentPortIsSelectedElseTheFirst) {
    SettingsRig rig;
    rig.list({"COM1", "COM4", "COM5"});
    rig.rig.bench.comm_port = 5;
    rig.form.activate();
    EXPECT_EQ(rig.form.Combo2.text(), "COM5   (Available)");
    rig.rig.bench.comm_port = 9;
    rig.form.activate();
    EXPECT_EQ(rig.form.Combo2.text(), "COM1   (Available)");
}

TEST(frmCommSettings, TheFormIsRepaintedAfterEachEntry) {
    SettingsRig rig;
    rig.list({"COM1", "COM4", "COM5"});
    rig.form.activate();
    EXPECT_EQ(rig.rig.host.happened, (Texts{"refresh frmComm", "refresh frmComm", "refresh frmComm"}));
}

TEST(frmCommSettings, ChoosingAPortDoesNothingUntilTheFormCloses) {
    SettingsRig rig;
    rig.list({"COM1", "COM4"});
    rig.form.load();
    rig.form.activate();
    rig.form.choosePort(1);
    EXPECT_EQ(rig.rig.bench.comm_port, 1);
    rig.form.unload();
    EXPECT_EQ(rig.rig.bench.comm_port, 4);
    EXPECT_EQ(rig.stored("CommPort"), "4");
    EXPECT_EQ(rig.stored("BaudRate"), "38400");
    EXPECT_EQ(rig.stored("Parity"), "O");
}

struct PortNumberRow {
    const char* name;
    std::int16_t number;
};

class PortNumberTest : public testing::TestWithParam<PortNumberRow> {};

TEST_P(PortNumberTest, KeepsTwoDigits) {
    SettingsRig rig;
    rig.list({GetParam().name});
    rig.form.activate();
    rig.form.unload();
    EXPECT_EQ(rig.rig.bench.comm_port, GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(Names, PortNumberTest,
                         testing::Values(PortNumberRow{"COM3", 3}, PortNumberRow{"COM12", 12},
                                         PortNumberRow{"COM123", 12}),
                         [](const auto& row) { return row.param.name; });

TEST(frmCommSettings, DoneStoresAndHides) {
    SettingsRig rig;
    rig.list({"COM4"});
    rig.rig.host.show(rig.form);
    rig.form.chooseBaudRate(2);
    rig.form.chooseParity(1);
    rig.form.mnuExit();
    EXPECT_FALSE(rig.rig.host.isVisible(rig.form));
    EXPECT_EQ(rig.stored("CommPort"), "4");
    EXPECT_EQ(rig.stored("BaudRate"), "9600");
    EXPECT_EQ(rig.stored("Parity"), "E");
}

TEST(frmCommSettings, AFormThatWasNeverShownKeepsThePort) {
    SettingsRig rig;
    rig.rig.bench.comm_port = 6;
    rig.form.load();
    rig.form.unload();
    EXPECT_EQ(rig.rig.bench.comm_port, 6);
    EXPECT_EQ(rig.stored("CommPort"), "6");
}

TEST(CommSettings, HaveTheirDefaults) {
    LineRig rig;
    rig.bench.comm_port = 9;
    rig.bench.baud_rate = rig.bench.parity = "";
    readCommSettings(rig.bench);
    EXPECT_EQ(rig.bench.comm_port, 1);
    EXPECT_EQ(rig.bench.baud_rate, "38400");
    EXPECT_EQ(rig.bench.parity, "O");
}

struct WrongPort {
    const char* text;
    ErrorNumber number;
    const char* words;
};

TEST(CommSettings, APortThatIsNoNumberIsTheErrorAndTellsWhereItStands) {
    for (const WrongPort& wrong : {WrongPort{"COM3", ErrorNumber::TypeMismatch, "Type mismatch\n\nCommPort=COM3\n"},
                                   WrongPort{"99999", ErrorNumber::Overflow, "Overflow\n\nCommPort=99999\n"}}) {
        LineRig rig;
        rig.settings.save("Communication Settings", "CommPort", wrong.text);
        try {
            readCommSettings(rig.bench);
            FAIL() << wrong.text;
        } catch (const RunTimeError& error) {
            EXPECT_EQ(error.number(), wrong.number);
            EXPECT_EQ(error.description(), wrong.words + std::string("is no number of a port, in section "
                                                                     "\"Communication Settings\" of\n"
                                                                     "the memory of a test"));
        }
    }
}

TEST(CommSettings, AreReadAsTheyWereWritten) {
    LineRig rig;
    rig.bench.comm_port = 12;
    rig.bench.baud_rate = "1200";
    rig.bench.parity = "N";
    writeCommSettings(rig.bench);
    rig.bench.comm_port = 1;
    rig.bench.baud_rate = rig.bench.parity = "";
    readCommSettings(rig.bench);
    EXPECT_EQ(rig.bench.comm_port, 12);
    EXPECT_EQ(rig.bench.baud_rate, "1200");
    EXPECT_EQ(rig.bench.parity, "N");
}

}  // namespace
}  // namespace qrv::test
