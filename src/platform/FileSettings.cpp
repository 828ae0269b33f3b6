#include "platform/FileSettings.h"

#include <sys/file.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>

#include "platform/CodePage.h"
#include "platform/Folders.h"
#include "platform/HexText.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/Replacement.h"

namespace qrv {

namespace {

constexpr std::size_t kMostBytes = 1024 * 1024;

std::string folderOfFile(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

/// Holds the settings' folder against other programs' changes; goes with its descriptor.
Descriptor lockedFolder(const std::string& folder) {
    Descriptor held(uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (held.isOpen() && uninterrupted([&] { return ::flock(held.number(), LOCK_EX); }) < 0) return Descriptor{};
    return held;
}

/// A character that would part or end a line, or go with the blanks at a line's ends, stands as "%" and two digits; so
/// do all bytes beyond ASCII of a text that isn't UTF-8, as a path may be.
std::string escaped(std::string_view text, std::string_view reserved) {
    std::string result;
    const bool isUtf8 = isWellFormedUtf8(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<std::uint8_t>(text[i]);
        const bool isAtEnd = i == 0 || i + 1 == text.size();
        const bool isPlain = byte >= 0x20 && byte != 0x7F && (byte < 0x80 || isUtf8) && byte != '%' &&
                             !(byte == ' ' && isAtEnd) && reserved.find(text[i]) == std::string_view::npos;
        if (isPlain) {
            result += text[i];
        } else {
            result += {'%', kHexDigits[byte >> 4], kHexDigits[byte & 0xF]};
        }
    }
    return result;
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view digits = text.substr(i, 3);
        const std::size_t high = digits.size() == 3 ? kHexDigits.find(digits[1]) : std::string_view::npos;
        const std::size_t low = digits.size() == 3 ? kHexDigits.find(digits[2]) : std::string_view::npos;
        const bool isEscape = text[i] == '%' && high != std::string_view::npos && low != std::string_view::npos;
        result += isEscape ? static_cast<char>(high * 16 + low) : text[i];
        if (isEscape) i += 2;
    }
    return result;
}

std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

}  // namespace

FileSettings::FileSettings(std::string path) : path_(std::move(path)) {}

FileSettings::Values FileSettings::parse(std::string_view text) {
    Values values;
    std::string section;
    while (!text.empty()) {
        const std::string line = trimmed(takeLine(text));
        const std::size_t mark = line.find('=');
        const bool isComment = line.starts_with(';') || line.starts_with('#');
        if (!isWellFormedUtf8(line) || isComment) continue;
        if (line.starts_with('[') && line.ends_with(']')) {
            section = unescaped(line.substr(1, line.size() - 2));
        } else if (mark != std::string::npos && mark > 0) {
            const std::string key = unescaped(trimmed(line.substr(0, mark)));
            values[{section, key}] = unescaped(trimmed(line.substr(mark + 1)));
        }
    }
    return values;
}

std::string FileSettings::textOf(const Values& values) {
    std::string text;
    std::string section;
    for (const auto& [place, value] : values) {
        if (place.first != section) {
            section = place.first;
            text += (text.empty() ? "[" : "\n[") + escaped(section, "") + "]\n";
        }
        text += escaped(place.second, "=[;#") + "=" + escaped(value, "") + "\n";
    }
    return text;
}

FileSettings::Values FileSettings::readValues() const {
    Values values = parse(readWhole(path_, kMostBytes).bytes);
    for (const auto& [place, value] : unwritten_) {
        if (value) {
            values[place] = *value;
        } else {
            values.erase(place);
        }
    }
    return values;
}

std::string FileSettings::get(std::string_view section, std::string_view key, std::string_view fallback) const {
    const Values values = readValues();
    const auto found = values.find({std::string(section), std::string(key)});
    return found == values.end() ? std::string(fallback) : found->second;
}

std::vector<std::pair<std::string, std::string>> FileSettings::all(std::string_view section) const {
    std::vector<std::pair<std::string, std::string>> found;
    for (const auto& [place, value] : readValues()) {
        if (place.first == section) found.emplace_back(place.second, value);
    }
    return found;
}

void FileSettings::save(std::string_view section, std::string_view key, std::string_view value) {
    change(section, key, std::string(value));
}

void FileSettings::remove(std::string_view section, std::string_view key) { change(section, key, std::nullopt); }

void FileSettings::change(std::string_view section, std::string_view key, std::optional<std::string> value) {
    unwritten_[{std::string(section), std::string(key)}] = std::move(value);
    fault_ = writeChanges();
    if (!fault_) unwritten_.clear();
}

FileResult FileSettings::writeChanges() {
    const std::string folder = folderOfFile(path_);
    if (!makeFolder(folder)) return lastFault("make the folder", folder);
    const Descriptor lock = lockedFolder(folder);
    if (!lock.isOpen()) return lastFault("lock the folder", folder);
    // What is there but can't be read is not written over.
    const FileResult unread = readWhole(path_, kMostBytes).fault;
    if (unread && unread->code != ENOENT) return unread;
    return writeWholeAtOnce(path_, textOf(readValues()));
}

}  // namespace qrv
