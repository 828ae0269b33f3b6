// Every command against every fault that the simulated controller can play: what it costs in sends, filler, sleeps and
// time, under a clock that only waits move.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "LinkRig.h"
#include "link/sim/SimFaults.h"

namespace qrv::test {
namespace {

using namespace std::chrono_literals;

struct CommandCase {
    const char* name;
    std::function<void(frmComm&)> run;
    bool isPoll = false;
};

void writeBlockTable(frmComm& comm) {
    int index = comm.put_write_head(Section::BlockTable, 50, 0);
    for (int i = 0; i < 50; ++i) comm.put_byte(index, i);
    comm.send_section_frame(50);
}

void read(frmComm& comm, Section section, std::int16_t count, std::int32_t offset) {
    comm.put_read(section, count, offset);
    comm.send_and_get(7, static_cast<std::int16_t>(count + 7));
}

const std::vector<CommandCase> kCases{
    {"poll", [](frmComm& comm) { comm.poll_qrm3(); }, true},
    {"version",
     [](frmComm& comm) {
         std::string version;
         comm.get_version(version);
     }},
    {"writeBlockTable", writeBlockTable},
    {"readBlockTable", [](frmComm& comm) { read(comm, Section::BlockTableBack, 150, 0); }},
    {"readConstants", [](frmComm& comm) { read(comm, Section::Constants, 128, 128); }},
    {"readRegisters", [](frmComm& comm) { read(comm, Section::Modbus, 192, 8); }},
    {"readOutput",
     [](frmComm& comm) {
         comm.put_bytes({32, 0, 4});
         comm.sum_xmit_bfr(2);
         comm.send_and_get(5, 5);
     }},
    {"pressKey", [](frmComm& comm) { comm.send_key(7); }},
    {"commit",
     [](frmComm& comm) {
         comm.put_bytes({8});
         comm.sum_xmit_bfr(0);
         comm.send_and_get(3, 5);
     }},
    {"activateMenus", [](frmComm& comm) { comm.sendCommand(Command::ActivateMenus); }},
    {"activateCharts", [](frmComm& comm) { comm.sendCommand(Command::ActivateCharts); }},
    {"activateUnits", [](frmComm& comm) { comm.sendCommand(Command::ActivateUnits); }},
    {"activateModbus", [](frmComm& comm) { comm.sendCommand(Command::ActivateModbus); }},
    {"announce", [](frmComm& comm) { comm.sendCommand(Command::AnnounceDownload); }},
};

/// What one transaction cost.
struct Cost {
    bool ok;
    std::size_t sends;
    std::size_t fillers;  ///< and sleeps of 2 s
    milliseconds elapsed;
    friend bool operator==(const Cost&, const Cost&) = default;
};

void PrintTo(const Cost& cost, std::ostream* out) {
    *out << (cost.ok ? "ok" : "failed") << ", " << cost.sends << " sends, " << cost.fillers << " fillers, "
         << cost.elapsed.count() << " ms";
}

struct FaultCosts {
    Cost forEver;
    Cost once;
};

constexpr Cost kDead{.ok = false, .sends = 10, .fillers = 0, .elapsed = 18000ms};
constexpr Cost kGarbage{.ok = false, .sends = 10, .fillers = 9, .elapsed = 18000ms};
constexpr Cost kOneTimeOut{.ok = true, .sends = 2, .fillers = 0, .elapsed = 1800ms};
constexpr Cost kOneFiller{.ok = true, .sends = 2, .fillers = 1, .elapsed = 2000ms};
constexpr Cost kNothing{.ok = true, .sends = 1, .fillers = 0, .elapsed = 0ms};

// A late answer comes 2.5 s after its send: during the second attempt, which takes it if it comes alone. If the
// controller is late only once, the answer to the second send comes with it, and the two together are no frame.
const std::map<std::string_view, FaultCosts> kCosts{
    {"silence", {kDead, kOneTimeOut}},
    {"lost-answer", {kDead, kOneTimeOut}},
    {"late", {{true, 2, 0, 2500ms}, {true, 3, 1, 4500ms}}},
    {"short", {kDead, kOneTimeOut}},
    {"surplus", {kGarbage, kOneFiller}},
    {"bad-checksum", {kGarbage, kOneFiller}},
    {"wrong-status", {kNothing, kNothing}},
    {"cut-off", {kDead, kDead}},
    {"stale", {kGarbage, kOneFiller}},
    {"garbage", {kGarbage, kOneFiller}},
    {"hang-up", {kDead, kDead}},
};

struct FaultRow {
    CommandCase command;
    std::string_view fault;
};

void PrintTo(const FaultRow& row, std::ostream* out) { *out << row.command.name << " under " << row.fault; }

std::vector<FaultRow> allRows() {
    std::vector<FaultRow> rows;
    for (const CommandCase& command : kCases) {
        for (const SimFault& fault : kFaults) rows.push_back({command, fault.name});
    }
    return rows;
}

std::string nameOf(const testing::TestParamInfo<FaultRow>& info) {
    std::string name = std::string(info.param.command.name) + "_" + std::string(info.param.fault);
    std::ranges::replace(name, '-', '_');
    return name;
}

Cost costOf(ControllerRig& rig, const CommandCase& command) {
    const auto before = rig.clock.elapsed();
    command.run(rig.comm);
    EXPECT_EQ(rig.clock.sleeps, std::vector<milliseconds>(rig.record.fillers.size(), 2000ms));
    for (const Bytes& filler : rig.record.fillers) EXPECT_EQ(filler, Bytes(1025, 0));
    for (const Bytes& send : rig.record.sends) EXPECT_EQ(send, rig.record.sends.front());
    EXPECT_EQ(rig.comm.retry_count(),
              static_cast<std::int16_t>(rig.record.sends.size() - (rig.record.verdicts.back() == Verdict::Good)));
    return {.ok = rig.bench.xfer_ok,
            .sends = rig.record.sends.size(),
            .fillers = rig.record.fillers.size(),
            .elapsed = rig.clock.elapsed() - before};
}

/// Only the poll looks at a reply's status.
Cost wantedOf(Cost cost, const FaultRow& row) {
    if (row.fault == "wrong-status" && row.command.isPoll) cost.ok = false;
    return cost;
}

class FaultTableTest : public testing::TestWithParam<FaultRow> {};

TEST_P(FaultTableTest, PlayedForEver) {
    ControllerRig rig;
    rig.controller.play(SimFaultPlan::always(GetParam().fault));
    EXPECT_EQ(costOf(rig, GetParam().command), wantedOf(kCosts.at(GetParam().fault).forEver, GetParam()));
}

TEST_P(FaultTableTest, PlayedOnce) {
    ControllerRig rig;
    rig.controller.play(SimFaultPlan::once(GetParam().fault));
    EXPECT_EQ(costOf(rig, GetParam().command), wantedOf(kCosts.at(GetParam().fault).once, GetParam()));
}

INSTANTIATE_TEST_SUITE_P(All, FaultTableTest, testing::ValuesIn(allRows()), nameOf);

TEST(FaultTable, KnowsEveryFault) {
    EXPECT_EQ(kCosts.size(), kFaults.size());
    for (const SimFault& fault : kFaults) EXPECT_TRUE(kCosts.contains(fault.name)) << fault.name;
}

TEST(FaultTable, WithoutAFaultEveryCommandTakesOneSend) {
    for (const CommandCase& command : kCases) {
        ControllerRig rig;
        EXPECT_EQ(costOf(rig, command), kNothing) << command.name;
    }
}

}  // namespace
}  // namespace qrv::test
