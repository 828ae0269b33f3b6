// The block program of the open configuration as text, a line a row: what a controller holds, and beside it what it
// doesn't, for comparing before and after a transfer.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/RunTimeError.h"
#include "store/Workbench.h"

namespace qrv::test {

/// One line of a program: what stands at a place.
[[nodiscard]] inline std::string programRow(const char* kind, int place, int offset, const std::string& value) {
    return kind + std::to_string(place) + '.' + std::to_string(offset) + '=' + value + '\n';
}

[[nodiscard]] inline std::string blockRows(db1& db) {
    std::string text;
    for (db.BlockMoveFirst(); !db.BlockEOF(); db.BlockMoveNext()) {
        text += programRow("block ", db.blockNumber(), db.BlockConstant(), std::to_string(db.BlockFn()));
    }
    return text;
}

/// Every function with its count of constants, every constant with its place, every string.
[[nodiscard]] inline std::string programOf(Workbench& bench) {
    db1& db = bench.db;
    std::string text = blockRows(db);
    // An empty table refuses to move.
    const bool hasConstants = ignoringErrors([&] { db.ConstantMoveFirst(); });
    for (; hasConstants && !db.ConstantEOF(); db.ConstantMoveNext()) {
        text +=
            programRow("constant ", db.ConstantBlockNumber(), db.ConstantOffset(), std::to_string(db.ConstantValue()));
    }
    for (db.ParmstrMoveFirst(); !db.ParmstrEOF(); db.ParmstrMoveNext()) {
        text += programRow("string ", db.ParmstrBlockNumber(), db.ParmstrOffset(), db.ParmstrStr());
    }
    return text;
}

/// What stands on the slots, and the functions that the program keeps in mind.
[[nodiscard]] inline std::string boardsAndFunctionsOf(Workbench& bench) {
    std::string text;
    db1& db = bench.db;
    db.SlotMoveFirst();
    for (int slot = 0; slot < kSlotCount; ++slot, db.SlotMoveNext()) text += db.SlotDescription() + '\n';
    for (const std::int16_t function : bench.FnOfBlock) text += std::to_string(function) + ' ';
    return text;
}

[[nodiscard]] inline std::string bytesOfFile(const std::string& path) {
    std::string bytes(std::filesystem::file_size(path), '\0');
    std::ifstream(path, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

}  // namespace qrv::test
