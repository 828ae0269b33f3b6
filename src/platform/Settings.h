// Per-user settings: texts by section and key, as the tool keeps its serial settings and recent files.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qrv {

class Settings {
 public:
    virtual ~Settings() = default;

    /// The value under section and key, or `fallback` where there is none. UTF-8.
    [[nodiscard]] virtual std::string get(std::string_view section, std::string_view key,
                                          std::string_view fallback) const = 0;
    virtual void save(std::string_view section, std::string_view key, std::string_view value) = 0;
    virtual void remove(std::string_view section, std::string_view key) = 0;
    /// All (key, value) pairs of a section, sorted by key; empty where the section doesn't exist.
    [[nodiscard]] virtual std::vector<std::pair<std::string, std::string>> all(std::string_view section) const = 0;
    /// Where a person finds them, to mend one: the file's path.
    [[nodiscard]] virtual std::string place() const = 0;
};

}  // namespace qrv
