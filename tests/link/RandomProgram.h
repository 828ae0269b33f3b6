// Block programs drawn at random: functions from a deck that is dealt to its end before it is shuffled anew, values of
// every sign and size, strings of every length. And what of a program a controller holds.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "ProgramText.h"
#include "blocks/BlockProgram.h"
#include "platform/RunTimeError.h"
#include "store/Workbench.h"

namespace qrv::test {

class ProgramDrawer {
 public:
    ProgramDrawer(Workbench& bench, unsigned seed) : bench_(bench), db_(bench.db), random_(seed) {
        db_.FuncSetIndex("FN");
        for (int function = 0; function < 256; ++function) {
            db_.FuncSeekI(function);
            if (!db_.FuncNoMatch() && function != kNop) all_.push_back(function);
        }
    }

    [[nodiscard]] std::size_t functionCount() const { return all_.size(); }
    /// Functions that have been placed so far, each once.
    [[nodiscard]] std::size_t placedCount() const {
        return static_cast<std::size_t>(std::ranges::count(wasPlaced_, true));
    }

    /// A program without a single constant.
    void drawEmpty() {
        for (std::int16_t block = kFirstFree; block < kBlockCount; ++block) assign(block, kNop);
    }
    /// So many functions on blocks drawn at random, the CPU's own with them.
    void draw(int count) {
        begin();
        for (int i = 0; i < count; ++i) placeNext(dealt());
        fillValues();
    }
    /// As many constants as a controller takes.
    void drawFull(int constants) {
        begin();
        // Small functions alone would need more blocks than there are.
        while (constants - slots_ > 60) {
            const int function = dealt();
            if (free_.size() > 500 || slotsOf(function) > 9) placeNext(function);
        }
        while (slots_ < constants) placeNext(largestWithin(constants - slots_));
        fillValues();
    }

    [[nodiscard]] int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

 private:
    static constexpr std::int16_t kNop = 127;
    static constexpr std::int16_t kFirstFree = 4;
    static constexpr std::int16_t kFirstOfCpu = 600;
    static constexpr std::int16_t kBehindCpu = 603;

    void assign(std::int16_t block, std::int16_t function) {
        if (bench_.FnOfBlock[static_cast<std::size_t>(block)] != function)
            assign_block_function(bench_, block, function);
    }
    void begin() {
        free_.clear();
        slots_ = 0;
        // The sum of all functions' retentive bytes is less than a controller takes; a program keeps well below.
        retentiveLeft_ = 600;
        for (std::int16_t block = kFirstFree; block < kBlockCount; ++block) {
            if (block >= kFirstOfCpu && block < kBehindCpu) {
                assign(block, block == kBehindCpu - 1 ? 125 : 2);
                slots_ += slotsOf(bench_.FnOfBlock[static_cast<std::size_t>(block)]);
                continue;
            }
            assign(block, kNop);
            free_.push_back(block);
        }
        std::shuffle(free_.begin(), free_.end(), random_);
    }
    [[nodiscard]] int slotsOf(int function) {
        db_.FuncSetIndex("FN");
        db_.FuncSeekI(function);
        return db_.FuncInputs() + db_.FuncParams() + db_.FuncHidden();
    }
    int dealt() {
        if (deck_.empty()) {
            deck_ = all_;
            std::shuffle(deck_.begin(), deck_.end(), random_);
        }
        const int function = deck_.back();
        deck_.pop_back();
        return function;
    }
    [[nodiscard]] int largestWithin(int room) {
        int best = 0;
        for (const int function : all_) {
            const int size = slotsOf(function);
            if (db_.FuncVolRam() == 0 && size <= room && size > slotsOf(best)) best = function;
        }
        return best;
    }
    void placeNext(int function) {
        const int size = slotsOf(function);
        ASSERT_FALSE(free_.empty());
        if (db_.FuncVolRam() > retentiveLeft_) return;
        retentiveLeft_ -= db_.FuncVolRam();
        static_cast<void>(placeFunction(bench_, free_.back(), " ", db_.FuncName()));
        free_.pop_back();
        slots_ += size;
        wasPlaced_.resize(256);
        wasPlaced_[static_cast<std::size_t>(function)] = true;
    }

    std::int32_t shortValue() {
        constexpr std::int32_t kEdges[] = {-32768, -32767, -1, 0, 1, 32766, 32767};
        return below(3) == 0 ? kEdges[below(7)] : below(65536) - 32768;
    }
    std::int32_t longValue() {
        using Limits = std::numeric_limits<std::int32_t>;
        constexpr std::int32_t kEdges[] = {Limits::min(), Limits::max(), -65536, -1, 0, 32768, 65535, 65536};
        return below(3) == 0 ? kEdges[below(8)] : static_cast<std::int32_t>(random_());
    }
    void fillValues() {
        db_.FuncSetIndex("FN");
        for (db_.ConstantMoveFirst(); !db_.ConstantEOF(); db_.ConstantMoveNext()) {
            db_.FuncSeekI(bench_.FnOfBlock[static_cast<std::size_t>(db_.ConstantBlockNumber())]);
            const int number = db_.ConstantOffset() - db_.FuncInputs() + 1;
            if (number > 0) db_.ParamSeek(db_.FuncFN(), number);
            const bool isLong = number > 0 && number <= db_.FuncParams() && db_.ParamType() == 1;
            db_.ConstantEdit();
            db_.ConstantValue(isLong ? longValue() : shortValue());
            db_.ConstantUpdate();
        }
        for (db_.ParmstrMoveFirst(); !db_.ParmstrEOF(); db_.ParmstrMoveNext()) {
            std::string text(static_cast<std::size_t>(1 + below(16)), ' ');
            for (char& character : text) character = static_cast<char>(' ' + below(95));
            db_.ParmstrEdit();
            db_.ParmstrStr(text);
            db_.ParmstrUpdate();
        }
    }

    Workbench& bench_;
    db1& db_;
    std::mt19937 random_;
    std::vector<int> all_;
    std::vector<int> deck_;
    std::vector<bool> wasPlaced_;
    std::vector<std::int16_t> free_;
    int slots_ = 0;
    int retentiveLeft_ = 0;
};

/// A program as it comes back, in the words of programOf: hidden constants and the slots of strings are 0.
[[nodiscard]] inline std::string heldPartOf(Workbench& bench) {
    db1& db = bench.db;
    std::string text = blockRows(db);
    db.FuncSetIndex("FN");
    // An empty table refuses to move.
    if (!ignoringErrors([&] { db.ConstantMoveFirst(); })) return text;
    for (; !db.ConstantEOF(); db.ConstantMoveNext()) {
        db.FuncSeekI(bench.FnOfBlock[static_cast<std::size_t>(db.ConstantBlockNumber())]);
        const int number = db.ConstantOffset() - db.FuncInputs() + 1;
        bool isHeld = number <= db.FuncParams();
        if (isHeld && number > 0) {
            db.ParamSeek(db.FuncFN(), number);
            isHeld = db.ParamType() != 3;
        }
        const std::int32_t value = isHeld ? db.ConstantValue() : 0;
        text += programRow("constant ", db.ConstantBlockNumber(), db.ConstantOffset(), std::to_string(value));
    }
    for (db.ParmstrMoveFirst(); !db.ParmstrEOF(); db.ParmstrMoveNext()) {
        text += programRow("string ", db.ParmstrBlockNumber(), db.ParmstrOffset(), db.ParmstrStr());
    }
    return text;
}

}  // namespace qrv::test
