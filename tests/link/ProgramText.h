// The block program of the open configuration as text, a line a row: what a controller holds, and beside it what it
// doesn't, for comparing before and after a transfer.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/RunTimeError.h"
#include "store/Workbench.h"

namespace qrv::test {

/// Every function with its count of constants, every constant with its place, every string.
[[nodiscard]] inline std::string programOf(Workbench& bench) {
    db1& db = bench.db;
    std::string text;
    const auto row = [&text](const char* kind, int place, int offset, const std::string& value) {
        text += kind + std::to_string(place) + '.' + std::to_string(offset) + '=' + value + '\n';
    };
    for (db.BlockMoveFirst(); !db.BlockEOF(); db.BlockMoveNext()) {
        row("block ", db.blockNumber(), db.BlockConstant(), std::to_string(db.BlockFn()));
    }
    // An empty table refuses to move.
    const bool hasConstants = ignoringErrors([&] { db.ConstantMoveFirst(); });
    for (; hasConstants && !db.ConstantEOF(); db.ConstantMoveNext()) {
        row("constant ", db.ConstantBlockNumber(), db.ConstantOffset(), std::to_string(db.ConstantValue()));
    }
    for (db.ParmstrMoveFirst(); !db.ParmstrEOF(); db.ParmstrMoveNext()) {
        row("string ", db.ParmstrBlockNumber(), db.ParmstrOffset(), db.ParmstrStr());
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
