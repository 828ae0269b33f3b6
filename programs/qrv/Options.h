// What the command line gives each command of `qrv`.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Files.h"

namespace qrv {

/// A command that makes, shows or reads a configuration.
struct FileOptions {
    std::string file;
    std::string text;  ///< the text to make it from; "-" for the standard input
    bool force = false;
    bool json = false;

    [[nodiscard]] Overwrite overwrite() const { return force ? Overwrite::Allow : Overwrite::Refuse; }
};

struct CompareOptions {
    std::string pathA;
    std::string pathB;
    bool json = false;
    bool onlyHeld = false;  ///< only what a controller holds
};

struct PortsOptions {
    bool json = false;
    std::string map;    ///< "COM7=/dev/pts/3"; empty: none
    std::string unmap;  ///< "COM7"; empty: none
};

/// The options that name a line. Empty: as in the user's settings.
struct LineOptions {
    std::string port;    ///< "COM7" or a device path
    std::string baud;    ///< bits a second
    std::string parity;  ///< O, E or N
    std::string trace;   ///< file that takes every frame; "-" for the standard error
};

struct ReadBlockOptions {
    LineOptions line;
    std::int16_t block = 0;
};

struct ReadOptions {
    LineOptions line;
    int section = 0;
    int offset = 0;
    int count = 0;
};

struct WatchOptions {
    LineOptions line;
    std::string file;
    std::vector<std::int16_t> blocks;
    std::string csv;
    int interval = 1000;  ///< milliseconds
    int count = 0;        ///< rows; 0 for no end
    bool force = false;
};

/// What the commands share that move configurations in and out of controllers.
struct TransferOptions {
    LineOptions line;
    std::string file;
    std::string sections;  ///< words with commas between; all where empty
    bool yes = false;
    bool json = false;
    bool force = false;
    bool dryRun = false;
};

}  // namespace qrv
