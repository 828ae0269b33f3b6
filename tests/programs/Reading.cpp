#include "programs/Reading.h"

#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

namespace qrv {

ReadJson::ReadJson(const char* text) : text_(nlohmann::json(text).dump()) {}

ReadJson ReadJson::of(const std::string& text) {
    ReadJson json;
    json.text_ = nlohmann::json::parse(text).dump();
    return json;
}

std::vector<ReadJson> ReadJson::linesOf(const std::string& text) {
    std::vector<ReadJson> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(of(line));
    return lines;
}

ReadJson ReadJson::operator[](const char* name) const { return of(nlohmann::json::parse(text_).at(name).dump()); }

ReadJson ReadJson::operator[](int index) const { return elements().at(static_cast<std::size_t>(index)); }

std::vector<ReadJson> ReadJson::elements() const {
    std::vector<ReadJson> list;
    const auto json = nlohmann::json::parse(text_);
    for (const auto& element : json) list.push_back(of(element.dump()));
    return list;
}

std::string ReadJson::text() const { return nlohmann::json::parse(text_).get<std::string>(); }

int ReadJson::number() const { return nlohmann::json::parse(text_).get<int>(); }

bool matches(const std::string& text, const std::string& pattern) {
    return std::regex_match(text, std::regex(pattern));
}

std::vector<std::string> captured(const std::string& text, const std::string& pattern) {
    std::vector<std::string> list;
    const std::regex compiled(pattern);
    for (std::sregex_iterator match(text.begin(), text.end(), compiled), end; match != end; ++match) {
        list.push_back(match->str(compiled.mark_count() == 0 ? 0 : 1));
    }
    return list;
}

}  // namespace qrv
