// A transfer that is struck at one of its exchanges, and what became of it. One tool serves for strike after strike, as
// a user's does who tries again: what a failed transfer leaves behind would show in the next.
#pragma once

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "ProgramText.h"
#include "TransferRig.h"

namespace qrv::test {

/// Notices are kept by their words; a question is answered Yes and not kept.
class RecordingBox final : public MessageBox {
 public:
    Answer ask(const Notice& notice) override {
        if (notice.buttons == Buttons::YesNo) return Answer::Yes;
        said.push_back(notice.text);
        return Answer::Ok;
    }
    std::vector<std::string> said;
};

enum class Lasts { Once, ForEver };

struct StrikeKind {
    const char* name;
    const char* fault;  ///< as the simulated controller names it; null: none
    Lasts lasts;
    bool isDead = false;   ///< nothing comes any more, not even a bad reply
    bool cancels = false;  ///< the user cancels while the answer is awaited
};

inline constexpr std::array kStrikes{
    StrikeKind{"silentForEver", "silence", Lasts::ForEver, true},
    StrikeKind{"silentOnce", "silence", Lasts::Once},
    StrikeKind{"badSumOnce", "bad-checksum", Lasts::Once},
    StrikeKind{"badSumForEver", "bad-checksum", Lasts::ForEver},
    StrikeKind{"shortOnce", "short", Lasts::Once},
    StrikeKind{"surplusOnce", "surplus", Lasts::Once},
    StrikeKind{"hangUp", "hang-up", Lasts::ForEver, true},
    StrikeKind{.name = "cancel", .fault = nullptr, .lasts = Lasts::Once, .cancels = true},
    StrikeKind{.name = "cancelInSilence", .fault = "silence", .lasts = Lasts::ForEver, .isDead = true, .cancels = true},
    StrikeKind{.name = "cancelAtBadSum", .fault = "bad-checksum", .lasts = Lasts::ForEver, .cancels = true},
};

/// What the user is told, and the reason that is kept.
struct Told {
    std::vector<std::string> boxes;
    std::string reason;
    friend bool operator==(const Told&, const Told&) = default;
};

inline void PrintTo(const Told& told, std::ostream* out) {
    for (const std::string& text : told.boxes) *out << '"' << text << "\", ";
    *out << "reason \"" << told.reason << '"';
}

/// Every `kSlices`th exchange, so that the processes of a run share the work.
inline constexpr int kSlices = 4;
struct StrikeCase {
    StrikeKind kind;
    int slice;
    friend void PrintTo(const StrikeCase& row, std::ostream* out) { *out << row.kind.name << ", slice " << row.slice; }
};

[[nodiscard]] inline std::vector<StrikeCase> allStrikes() {
    std::vector<StrikeCase> cases;
    for (const StrikeKind& kind : kStrikes) {
        for (int slice = 0; slice < kSlices; ++slice) cases.push_back({kind, slice});
    }
    return cases;
}

struct StruckRig {
    RecordingBox box;
    TransferRig rig{{}, &box};

    /// Twelve, ten and ten constants: the last of the first frame is a hidden one, and the last of the second belongs
    /// to a parameter. Two strings.
    void placeProgram() {
        rig.place(4, "OARESET");
        rig.place(5, "AIN");
        rig.place(6, "AIN");
        rig.place(7, "PID");
        rig.place(8, "SCHEDULE");
        rig.setConstant(7, 0, 1028);
        rig.setConstant(7, 5, -123456789);
    }
    /// A fresh controller with this memory, and an empty record of what happens.
    void prepare(const SimMemory& memory) {
        rig.controller = SimulatedController();
        rig.controller.load(memory);
        rig.record.sends.clear();
        rig.record.sentAt.clear();
        rig.record.fillers.clear();
        rig.record.verdicts.clear();
        rig.clock.sleeps.clear();
        rig.host.happened.clear();
        box.said.clear();
        retriesBefore_ = rig.comm.retriesSoFar();
    }
    /// The controller is struck at its `k`th exchange, counted from 1. @param kind  may be null
    void strike(const StrikeKind* kind, int k, const std::function<void()>& cancel) {
        if (kind == nullptr) return;
        const auto request = static_cast<std::uint64_t>(k);
        if (kind->cancels) {
            rig.controller.onTrace = [this, cancel, k, seen = 0](const SimTrace&) mutable {
                if (++seen == k) rig.pump.at(rig.clock.now(), cancel);
            };
        }
        if (kind->fault == nullptr) return;
        rig.controller.play(kind->lasts == Lasts::Once ? SimFaultPlan::at(kind->fault, request)
                                                       : SimFaultPlan::from(kind->fault, request));
    }
    [[nodiscard]] std::int32_t retries() const { return rig.comm.retriesSoFar() - retriesBefore_; }
    [[nodiscard]] std::int64_t sendsOf(const Bytes& frame) const { return std::ranges::count(rig.record.sends, frame); }
    void expectAllCleared() const {
        EXPECT_FALSE(rig.port.isOpen());
        EXPECT_TRUE(rig.command1);
        EXPECT_FALSE(rig.bench.in_download);
        EXPECT_FALSE(rig.bench.in_upload);
        EXPECT_FALSE(rig.bench.xfer_abort);
        EXPECT_FALSE(rig.host.isLoaded(rig.download));
        EXPECT_FALSE(rig.host.isLoaded(rig.upload));
    }

    void download(const SimMemory& memory, const StrikeKind* kind = nullptr, int k = 0) {
        prepare(memory);
        strike(kind, k, [this] { rig.download.Cancel_Click(); });
        walkDownload();
    }
    void upload(const SimMemory& memory, const StrikeKind* kind = nullptr, int k = 0) {
        prepare(memory);
        strike(kind, k, [this] { rig.upload.Cancel_Click(); });
        walkUpload();
    }
    void walkDownload() {
        rig.host.load(rig.select);
        rig.select.Blocks.value = true;
        rig.command1 = false;
        rig.host.load(rig.download);
        rig.download.activate();
        if (rig.host.isLoaded(rig.download)) rig.download.Download_Click();
        rig.host.unload(rig.select);
    }
    void walkUpload() {
        rig.host.load(rig.upload);
        rig.upload.activate();
        if (!rig.host.isLoaded(rig.upload)) return;
        rig.upload.Blocks.value = true;
        rig.upload.Continue_Click();
    }

 private:
    std::int32_t retriesBefore_ = 0;
};

}  // namespace qrv::test
