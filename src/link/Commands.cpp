#include "link/Commands.h"

#include "link/Sections.h"

namespace qrv {

namespace {

int wordAt(std::span<const std::uint8_t> frame, std::size_t index) { return frame[index] * 256 + frame[index + 1]; }

std::string describedAccess(std::string_view name, std::span<const std::uint8_t> frame) {
    std::string words(name);
    words += " section " + std::to_string(frame[1]);
    if (const std::string_view section = sectionNameOf(frame[1]); !section.empty()) {
        words += " (" + std::string(section) + ")";
    }
    return words + " offset " + std::to_string(wordAt(frame, 3)) + " count " + std::to_string(frame[2]);
}

}  // namespace

std::string describedRequest(std::span<const std::uint8_t> frame) {
    if (frame.empty()) return "nothing";
    const CommandRow* row = commandOf(frame[0]);
    if (row == nullptr) return "command " + std::to_string(frame[0]);
    if (frame.size() < static_cast<std::size_t>(row->requestLength)) return std::string(row->name) + ", cut short";
    switch (row->command) {
        case Command::Write:
        case Command::Read: return describedAccess(row->name, frame);
        case Command::ReadOutput: return std::string(row->name) + " of block " + std::to_string(wordAt(frame, 1));
        case Command::PressKey: return std::string(row->name) + " " + std::to_string(frame[1]);
        default: return std::string(row->name);
    }
}

}  // namespace qrv
