#include "link/sim/SimMemoryFile.h"

#include <cstdint>
#include <string_view>
#include <vector>

#include "link/sim/SimSections.h"
#include "platform/Files.h"

namespace qrv {

namespace {

// Every section full, and room for what stands around them.
constexpr std::size_t kMostBytes = (SimMemory::kSectionCount + 1) * kSimSectionSize;

}  // namespace

SimMemoryFile loadSimMemory(const std::string& path) {
    if (!exists(path)) return {};
    const auto content = readWhole(path, kMostBytes);
    if (content.fault) return {.memory = std::nullopt, .fault = content.fault->text};
    auto memory = SimMemory::parsed(std::vector<std::uint8_t>(content.bytes.begin(), content.bytes.end()));
    if (!memory) return {.memory = std::nullopt, .fault = path + " is no memory of a controller, or is damaged"};
    return {.memory = std::move(memory), .fault = {}};
}

std::string saveSimMemory(const std::string& path, const SimMemory& memory) {
    const auto bytes = memory.serialised();
    const auto fault = writeWholeAtOnce(path, std::string(bytes.begin(), bytes.end()));
    return fault ? fault->text : std::string{};
}

}  // namespace qrv
