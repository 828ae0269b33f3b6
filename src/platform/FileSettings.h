// Per-user settings in a small file that a person can read and mend: "[section]" lines and "key=value" lines, UTF-8.
// Each change reads the file, changes one entry and replaces it whole under a lock, so that two programs at work lose
// neither the file nor each other's entries. A damaged line costs that line alone.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/Files.h"
#include "platform/Settings.h"

namespace qrv {

class FileSettings final : public Settings {
 public:
    /// @param path  the settings file; neither it nor its folder need be there
    explicit FileSettings(std::string path);

    [[nodiscard]] std::string get(std::string_view section, std::string_view key,
                                  std::string_view fallback) const override;
    void save(std::string_view section, std::string_view key, std::string_view value) override;
    void remove(std::string_view section, std::string_view key) override;
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> all(std::string_view section) const override;
    [[nodiscard]] std::string place() const override { return path_; }

    /// Why the last change did not reach the file, if it didn't. It holds in this program all the same.
    [[nodiscard]] const FileResult& fault() const { return fault_; }

 private:
    using Place = std::pair<std::string, std::string>;  ///< section, key
    using Values = std::map<Place, std::string>;
    /// A change: the new value, or none for an entry that goes.
    using Changes = std::map<Place, std::optional<std::string>>;

    [[nodiscard]] Values readValues() const;
    void change(std::string_view section, std::string_view key, std::optional<std::string> value);
    [[nodiscard]] FileResult writeChanges();

    static Values parse(std::string_view text);
    static std::string textOf(const Values& values);

    std::string path_;
    Changes unwritten_;  ///< changes that did not reach the file yet
    FileResult fault_;
};

}  // namespace qrv
