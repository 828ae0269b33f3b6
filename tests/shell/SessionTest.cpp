// A whole session as its user lives it: a program is written, saved and found again as it was.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "EditorRig.h"

namespace qrv {
namespace {

struct Placed {
    int block;
    const char* function;
};

constexpr Placed kProgram[] = {{10, "ADD"},    {11, "MUL"},   {12, "LIMIT"}, {13, "FILTER"}, {14, "SQRT"},
                               {15, "LININT"}, {16, "HICMP"}, {17, "AND2"},  {18, "NOT"},    {19, "OPSP"}};

struct Wire {
    int block;
    int input;  // from 1
    const char* source;
};

constexpr Wire kWires[] = {{11, 1, "10"}, {11, 2, "19"}, {12, 1, "11"}, {13, 1, "10"}, {13, 2, "17"},
                           {14, 1, "11"}, {15, 1, "10"}, {17, 1, "16"}, {17, 2, "3"},  {18, 1, "17"}};

class SessionTest : public testing::Test {
 protected:
    void nameAndBoards(EditorRun& run) {
        frmGeneral& general = run.program.general;
        general.txtTitle.text = "BOILER HOUSE";
        general.txtTitle_Change();
        general.txtCfg.text = "REVISION A";
        general.txtCfg_Change();
        EXPECT_EQ(general.fg.text(0, 1), "CPU BOARD - 610050");
        EXPECT_EQ(general.fg.text(1, 1), "NONE");
        general.fg.edit(1, 1, "ANALOG INPUT      610014");
        general.fg.edit(2, 1, "DISCRETE INPUT   610012");
        general.fg.edit(3, 1, "RELAY OUTPUT     610027");
    }
    void writeProgram(EditorRun& run) {
        for (const Placed& placed : kProgram) {
            run.place(placed.block, placed.function);
            EXPECT_EQ(run.cellOf(placed.block), placed.function);
        }
        run.form3.choose("mnuEditBlk");
        for (const Wire& wire : kWires) {
            run.clickBlock(wire.block);
            EXPECT_TRUE(run.form3.blocks.fg2.edit(wire.input, 1, wire.source)) << wire.block;
        }
    }
    /// Block 10 takes an auxiliary output of the CPU's first analog input.
    void wireToAnAuxOutput(EditorRun& run) {
        run.clickBlock(10);
        run.host.onModal("frmAaboPick", [&run](Form&) {
            frmAaboPick& picker = run.form3.blocks.picker;
            EXPECT_EQ(picker.List1.items.at(0), "MAIN");
            picker.List1.listIndex = 1;
            picker.List1_DblClick();
        });
        EXPECT_TRUE(run.form3.blocks.fg2.edit(1, 1, "600"));
    }
    void parametersAndComment(EditorRun& run) {
        BlockPanel& panel = run.form3.blocks;
        run.clickBlock(10);
        EXPECT_TRUE(panel.fg3.edit(1, 1, "12.5"));
        run.host.onModal("FormComment", [&panel](Form&) {
            panel.comment.Text1.text = "Sum of both\nfeeders";
            panel.comment.Text1_Change();
            panel.comment.mnuexit();
        });
        panel.txtCmt_DblClick();
        run.clickBlock(15);
        EXPECT_TRUE(panel.fg3.edit(1, 1, "feed water"));
    }
    void expectAsWritten(EditorRun& run) {
        for (const Placed& placed : kProgram) EXPECT_EQ(run.cellOf(placed.block), placed.function);
        EXPECT_EQ(run.cellOf(20), " ");
        BlockPanel& panel = run.form3.blocks;
        for (const Wire& wire : kWires) {
            run.clickBlock(wire.block);
            EXPECT_EQ(panel.fg2.text(wire.input, 1), wire.source) << wire.block;
            EXPECT_EQ(panel.fg2.text(wire.input, 2), "MAIN") << wire.block;
        }
        run.clickBlock(10);
        EXPECT_EQ(panel.Label5.caption, "BLOCK 10 - ADD");
        EXPECT_EQ(panel.fg2.text(1, 1), "600");
        EXPECT_EQ(panel.fg2.text(1, 4), "AIN");
        EXPECT_EQ(run.bench.db.BlockFn(), run.bench.FnOfBlock[10]);
        EXPECT_EQ(panel.fg3.text(1, 1), "12.500");
        EXPECT_EQ(panel.txtCmt.text, "Sum of both\nfeeders");
        EXPECT_TRUE(panel.txtCmt.visible);
        EXPECT_EQ(panel.Label4.caption, "COMMENTS:");
        run.clickBlock(15);
        EXPECT_EQ(panel.fg3.text(1, 1), "FEED WATER");
        run.clickBlock(20);
        EXPECT_FALSE(panel.txtCmt.visible);
        EXPECT_EQ(panel.fg2.text(1, 1), "");
    }
    void expectBoards(EditorRun& run) {
        frmGeneral& general = run.program.general;
        EXPECT_EQ(general.txtTitle.text, "BOILER HOUSE");
        EXPECT_EQ(general.txtCfg.text, "REVISION A");
        const std::vector<std::string> boards{"CPU BOARD - 610050",
                                              "ANALOG INPUT      610014",
                                              "DISCRETE INPUT   610012",
                                              "RELAY OUTPUT     610027",
                                              "NONE",
                                              "NONE",
                                              "NONE"};
        for (int slot = 0; slot < 7; ++slot) {
            EXPECT_EQ(general.fg.text(slot, 1), boards.at(static_cast<std::size_t>(slot)));
        }
    }
    void expectIoBlocks(EditorRun& run) {
        EXPECT_EQ(run.cellOf(615), "AI");
        EXPECT_EQ(run.cellOf(623), ".");
        EXPECT_EQ(run.cellOf(644), "DI");
        EXPECT_EQ(run.cellOf(645), "RO");
        EXPECT_EQ(run.cellOf(660), ".");
        EXPECT_EQ(run.cellOf(602), "RO");
        run.clickBlock(615);
        EXPECT_EQ(run.form3.blocks.Label5.caption, "BLOCK 615 - AIN");
    }

    Machine machine;
    std::string path = machine.path("boiler house.qrv");
};

TEST_F(SessionTest, AProgramIsFoundAgainAsItWasWritten) {
    {
        EditorRun run(machine);
        run.startWithNew(path);
        nameAndBoards(run);
        run.leaveGeneral();
        writeProgram(run);
        wireToAnAuxOutput(run);
        parametersAndComment(run);
        expectAsWritten(run);
        run.form3.choose("mnuFileSave");
        run.quit(Answer::No);
        EXPECT_EQ(run.host.ended, 0);
    }
    {
        EditorRun run(machine, "\"" + path + "\"");
        run.start();
        expectBoards(run);
        run.leaveGeneral();
        expectAsWritten(run);
        expectIoBlocks(run);
        run.quit(Answer::No);
    }
    machine.makeReadOnly(path);
    const std::string before = machine.bytesOf(path);
    {
        EditorRun run(machine, "\"" + path + "\"");
        run.start();
        EXPECT_EQ(run.form3.caption, "QRV Edit - " + path + " - READ ONLY");
        expectBoards(run);
        machine.boxes.expect("The file is read-only.");
        run.leaveGeneral();
        EXPECT_FALSE(run.isEnabled("mnuEditCfg"));
        EXPECT_FALSE(run.isEnabled("mnuFileSave"));
        expectAsWritten(run);
        expectIoBlocks(run);
        run.quit(Answer::Yes);
    }
    EXPECT_EQ(machine.bytesOf(path), before);
    EXPECT_TRUE(machine.workFiles().empty());
}

}  // namespace
}  // namespace qrv
