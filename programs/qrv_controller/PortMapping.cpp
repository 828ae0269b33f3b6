#include "PortMapping.h"

#include <utility>

#include "platform/Files.h"
#include "platform/Settings.h"
#include "platform/posix/SerialPorts.h"

namespace qrv {

PortMapping::PortMapping(Settings& settings, std::int16_t number, std::string path)
    : settings_(settings),
      key_("COM" + std::to_string(number)),
      path_(std::move(path)),
      formerPath_(settings.get(SerialPorts::kSection, key_, "")) {
    // What another controller left behind when it was killed is not worth keeping.
    if (!exists(formerPath_)) formerPath_.clear();
    settings_.save(SerialPorts::kSection, key_, path_);
}

PortMapping::~PortMapping() {
    // Somebody has given the number another device meanwhile: that is theirs.
    if (settings_.get(SerialPorts::kSection, key_, "") != path_) return;
    if (formerPath_.empty() || formerPath_ == path_) {
        settings_.remove(SerialPorts::kSection, key_);
    } else {
        settings_.save(SerialPorts::kSection, key_, formerPath_);
    }
}

std::optional<std::int16_t> PortMapping::numberOf(std::string_view name) {
    const auto number = SerialPorts::numberOf(name);
    if (!number || *number > SerialPorts::kHighestNumber) return std::nullopt;
    return number;
}

}  // namespace qrv
