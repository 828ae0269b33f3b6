#include "platform/Paths.h"

#include <filesystem>
#include <system_error>

namespace qrv {

namespace {

namespace fs = std::filesystem;

/// Takes the step "..". What a link leads out of is the folder that it points at; out of what is no folder the system
/// finds no way, and the step stays to be refused.
void leaveFolder(fs::path& folder) {
    std::error_code fault;
    if (fs::is_symlink(fs::symlink_status(folder, fault))) {
        const fs::path meant = fs::canonical(folder, fault);
        if (!fault) folder = meant;
    }
    if (fs::is_directory(fs::symlink_status(folder, fault))) {
        folder = folder.parent_path();
    } else {
        folder /= "..";
    }
}

}  // namespace

std::size_t lastSeparator(std::string_view path) { return path.find_last_of("/\\"); }

std::string folderOf(std::string_view path) {
    const std::size_t mark = lastSeparator(path);
    if (mark == std::string_view::npos) return {};
    return std::string(path.substr(0, mark == 0 ? 1 : mark));
}

std::string fileNameOf(std::string_view path) {
    const std::size_t mark = lastSeparator(path);
    return std::string(mark == std::string_view::npos ? path : path.substr(mark + 1));
}

std::string withCleanSeparators(std::string_view path) {
    std::string clean;
    for (const char c : path) {
        const bool isMark = c == '/' || c == '\\';
        if (isMark && clean.ends_with('/')) continue;
        clean += isMark ? '/' : c;
    }
    if (clean.size() > 1 && clean.ends_with('/')) clean.pop_back();
    return clean;
}

std::string withoutEndSeparator(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return std::string(path);
}

std::string joinedPath(std::string_view folder, std::string_view name) {
    if (folder.empty()) return std::string(name);
    return std::string(folder) + (folder.ends_with('/') ? "" : "/") + std::string(name);
}

std::string absolutePath(const std::string& path) {
    if (path.empty()) return {};
    std::error_code fault;
    const fs::path absolute = fs::absolute(path, fault);
    if (fault) return path;
    fs::path plain;
    for (const fs::path& part : absolute) {
        if (part == "..") {
            leaveFolder(plain);
        } else if (part != ".") {
            plain /= part;
        }
    }
    return plain.string();
}

}  // namespace qrv
