// A new content for a file, written beside it and put in its place in one step. Until commit() the file is untouched;
// a replacement that goes away before that takes its temporary with it.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"
#include "platform/posix/Descriptor.h"

namespace qrv {

inline constexpr mode_t kPermissionBits = 0777;

class Replacement {
 public:
    /// Follows links to the file that is meant.
    explicit Replacement(const std::string& path);
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// Looks at the target and makes the temporary.
    [[nodiscard]] FileResult begin();
    [[nodiscard]] FileResult write(std::string_view bytes);
    /// Gives the file its permission bits, flushes it if told, and puts it in place.
    [[nodiscard]] FileResult commit(mode_t mode, Durability durability);
    /// The same, flushed, where there is nothing to be replaced: fails where anything is there by now.
    [[nodiscard]] FileResult commitAsNew(mode_t mode);

    /// The permission bits of the file that is to be replaced, if there is one.
    [[nodiscard]] const std::optional<mode_t>& targetMode() const { return targetMode_; }

 private:
    [[nodiscard]] FileResult inspectTarget();
    void keepOwner();
    [[nodiscard]] FileResult finish(mode_t mode, Durability durability);
    [[nodiscard]] FileResult flushFolder() const;

    std::string target_;
    std::string folder_;
    std::string temporary_;  ///< "" while there is none
    Descriptor descriptor_;
    std::optional<mode_t> targetMode_;
    uid_t targetOwner_ = 0;
    gid_t targetGroup_ = 0;
};

/// A number that nobody can foretell, for names.
[[nodiscard]] std::uint32_t randomNumber();
/// The fault that errno tells of.
[[nodiscard]] FileResult lastFault(const char* operation, const std::string& path);
[[nodiscard]] FileResult faultOf(int code, const char* operation, const std::string& path);

}  // namespace qrv
