// For as long as it lives a port number of the tool stands for a device; then for what it stood for before.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qrv {

class Settings;

class PortMapping {
 public:
    PortMapping(Settings& settings, std::int16_t number, std::string path);
    ~PortMapping();
    PortMapping(const PortMapping&) = delete;
    PortMapping& operator=(const PortMapping&) = delete;

    /// The number in "COM7", if a device can be given to it.
    [[nodiscard]] static std::optional<std::int16_t> numberOf(std::string_view name);

 private:
    Settings& settings_;
    std::string key_;
    std::string path_;
    std::string formerPath_;
};

}  // namespace qrv
