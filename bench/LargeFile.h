// A configuration that is as full as one can be, for the benchmarks that ask what that costs: every block in use, all
// constants, long comments, alarms, block units, every screen item.
#pragma once

#include <string>

#include "store/db1.h"

namespace qrv {

inline constexpr int kLargeConstants = 5632;
inline constexpr int kSlotsOfLargeBlock = 8;

/// Fills the open new file. @param function  what each block is: one with 8 slots, where the catalogue is of interest
inline void fillLarge(db1& db, std::int16_t function) {
    for (int n = 0; n < kLargeConstants; ++n) {
        db.ConstantAddNew();
        db.ConstantBlockNumber(n / kSlotsOfLargeBlock);
        db.ConstantOffset(n % kSlotsOfLargeBlock);
        db.ConstantValue(n * 37 - 90000);
        db.ConstantUpdate();
    }
    for (int n = 0; n < 500; ++n) {
        db.AlarmAddNew();
        db.AlarmBlockNumber(n);
        db.AlarmDescription("HIGH TEMPERATURE " + std::to_string(n));
        db.AlarmEvent0("NORMAL");
        db.AlarmEvent1("ALARM");
        db.AlarmIsAlarm(n % 2 == 0);
        db.AlarmUpdate();
        db.BEGUAdd();
        db.BEGUBlock(n);
        db.BEGUParam(1);
        db.BEGUGEGU(0);
        db.BEGUZero(0);
        db.BEGUSpan(10000);
        db.BEGUDecimal(2);
        db.BEGUUnits("DEG F");
        db.BEGUUpdate();
    }
    const std::string sentence = "Holds the supply water at the set point of the schedule, and no higher. ";
    for (db.BlockMoveFirst(); !db.BlockEOF(); db.BlockMoveNext()) {
        db.BlockEdit();
        db.BlockFn(function);
        db.BlockConstant(kSlotsOfLargeBlock);
        db.BlockComment(sentence + sentence + sentence + sentence);
        db.BlockUpdate();
    }
    for (db.ScreenItemMoveFirst(); !db.ScreenItemEOF(); db.ScreenItemMoveNext()) {
        db.ScreenItemEdit();
        db.ScreenItemX(5);
        db.ScreenItemY(7);
        db.ScreenItemType(1);
        db.ScreenItemBlock(12);
        db.ScreenItemText0("SUPPLY TEMPERATURE");
        db.ScreenItemUpdate();
    }
}

}  // namespace qrv
