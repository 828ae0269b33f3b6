// The block table as it was read back, against what a download of the same functions writes.
#include "link/BlockTable.h"

#include <gtest/gtest.h>

#include "TransferRig.h"

namespace qrv::test {
namespace {

using Faults = std::vector<std::string>;

/// A rig whose controller holds 705 blocks, three of them used.
struct BlockTable : testing::Test {
    BlockTable() {
        rig.place(4, "PID");
        rig.place(5, "SCHEDULE");
        rig.place(300, "PID");
        rig.runDownload();
    }
    void write(std::uint32_t block, std::uint32_t place, const Bytes& bytes) {
        SimMemory memory = rig.controller.working();
        memory.write(1, block * 10 + place, bytes);
        rig.controller.load(memory);
    }
    Faults faults() {
        rig.runUpload();
        Faults lines;
        for (const BlockTableFault& fault : faultsOf(rig.comm.uploadFindings.blockTable, rig.bench.db)) {
            lines.push_back(std::to_string(fault.block) + " " + std::string(fault.field) + " " +
                            std::to_string(fault.found - fault.wanted));
        }
        return lines;
    }
    TransferRig rig;
};

TEST_F(BlockTable, OfADownloadHasNoFault) {
    EXPECT_EQ(faults(), Faults{});
    EXPECT_EQ(rig.comm.uploadFindings.blockTable.size(), 705U);
}

TEST_F(BlockTable, OfANewControllerHasNoFault) {
    rig.controller.load(SimMemory());
    EXPECT_EQ(faults(), Faults{});
}

TEST_F(BlockTable, AWrongPlaceIsToldWhereItBeginsAndWhereItEnds) {
    const auto record = rig.controller.working().read(1, 3000, 10);
    const int index = record[4] * 256 + record[5] + 258;
    write(300, 4, {static_cast<std::uint8_t>(index / 256), static_cast<std::uint8_t>(index % 256)});
    EXPECT_EQ(faults(), (Faults{"300 constant index 258", "301 constant index -258"}));
}

TEST_F(BlockTable, AddressesInRamAndTheTypeAreLookedAt) {
    const auto record = rig.controller.working().read(1, 7040, 10);
    write(704, 2, {record[2], static_cast<std::uint8_t>(record[3] + 1)});
    write(704, 7, {static_cast<std::uint8_t>(record[7] + 2)});
    write(704, 8, {static_cast<std::uint8_t>(record[8] + 3)});
    EXPECT_EQ(faults(), (Faults{"704 temporary RAM address 1", "704 retentive RAM address 2", "704 function type 3"}));
}

TEST_F(BlockTable, TheBytesAroundAnEntryMeanNothing) {
    write(4, 0, {1});
    write(4, 9, {2});
    write(704, 0, {255});
    write(704, 9, {255});
    EXPECT_EQ(faults(), Faults{});
}

TEST_F(BlockTable, AFunctionPutInThePlaceOfAnotherLeavesItsOldPlacesBehind) {
    const auto before = rig.controller.working().read(1, 3000, 20);
    // Block 300 becomes an empty one, which needs nothing: those behind it begin too late.
    write(300, 1, {127});
    const int need = (before[14] - before[4]) * 256 + before[15] - before[5];
    const Faults found = faults();
    EXPECT_NE(std::ranges::find(found, "301 constant index " + std::to_string(need)), found.end());
    for (const std::string& line : found) {
        EXPECT_TRUE(line.starts_with("301 ") || line.starts_with("300 function type")) << line;
    }
}

}  // namespace
}  // namespace qrv::test
