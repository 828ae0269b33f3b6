// Settings that live as long as the test.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/Settings.h"

namespace qrv {

class MemorySettings final : public Settings {
 public:
    [[nodiscard]] std::string get(std::string_view section, std::string_view key,
                                  std::string_view fallback) const override {
        const auto found = values_.find({std::string(section), std::string(key)});
        return found == values_.end() ? std::string(fallback) : found->second;
    }
    void save(std::string_view section, std::string_view key, std::string_view value) override {
        values_[{std::string(section), std::string(key)}] = value;
    }
    void remove(std::string_view section, std::string_view key) override {
        values_.erase({std::string(section), std::string(key)});
    }
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> all(std::string_view section) const override {
        std::vector<std::pair<std::string, std::string>> found;
        for (const auto& [place, value] : values_) {
            if (place.first == section) found.emplace_back(place.second, value);
        }
        return found;
    }
    [[nodiscard]] std::string place() const override { return "the memory of a test"; }

 private:
    std::map<std::pair<std::string, std::string>, std::string> values_;
};

}  // namespace qrv
