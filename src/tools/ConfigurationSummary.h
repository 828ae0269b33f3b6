// What a configuration holds, in numbers: how full it is, and how much of each kind is in use.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/ConfigurationContent.h"
#include "store/db1.h"

namespace qrv {

/// A count beside the most that a controller takes.
struct Usage {
    std::int32_t used = 0;
    std::int32_t most = 0;
};

/// Texts are code page 1252.
struct ConfigurationSummary {
    std::string title;
    std::string configLine;
    std::string layoutRevision;       ///< of the file's tables, as "5.01"
    std::string version;              ///< major and minor, as "3.1"
    std::vector<std::string> boards;  ///< texts of the seven slots, the CPU's first
    Usage blocks;                     ///< that hold a function other than the NOP
    Usage constants;
    Usage retentiveBytes;
    std::int32_t unknownFunctions = 0;  ///< blocks whose function the catalogue lacks
    Usage strings;
    Usage alarms;
    Usage menus;             ///< with a title
    Usage screens;           ///< with a title
    Usage charts;            ///< with a description
    Usage engineeringUnits;  ///< global ones that differ from a new file's
    std::int32_t blockEngineeringUnits = 0;
    Usage loopEntries;
    Usage registers;  ///< Modbus registers that name a block
    Usage coils;
};

/// @param catalogue  with its catalogue open; its cursor of functions is moved
[[nodiscard]] ConfigurationSummary summaryOf(const ConfigurationContent& content, db1& catalogue);

}  // namespace qrv
