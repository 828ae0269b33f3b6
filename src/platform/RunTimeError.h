// What the database engine or the arithmetic refuses. It travels up to the program's edge, which shows it and ends the
// program. What a user may cause is a message box instead; what only our own mistake causes is an assertion.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qrv {

/// The errors that the tool raises by number. The numbers are part of what a user reports.
enum class ErrorNumber : std::int32_t {
    Overflow = 6,
    SubscriptOutOfRange = 9,
    TypeMismatch = 13,
    FileNotFound = 53,
    DeviceIoError = 57,
    FileAlreadyExists = 58,
    DiskFull = 61,
    PathAccessError = 75,
    ObjectNotSet = 91,
    InvalidUseOfNull = 94,
    NoCurrentIndex = 3019,
    UpdateWithoutEdit = 3020,
    NoCurrentRecord = 3021,
    DuplicateKey = 3022,
    ReadOnlyDatabase = 3027,
    NullInKey = 3058,
    CouldNotOpenFile = 3051,
    FieldTooSmall = 3163,
    ItemNotFound = 3265,
    ZeroLengthString = 3315,
    DataTypeConversion = 3421,
    UnrecognizedFormat = 3343,
};

/// The fixed description of an error, in the words that the box shows.
[[nodiscard]] std::string_view descriptionOf(ErrorNumber number);

class RunTimeError : public std::runtime_error {
 public:
    explicit RunTimeError(ErrorNumber number) : RunTimeError(number, std::string(descriptionOf(number))) {}
    RunTimeError(ErrorNumber number, const std::string& description)
        : std::runtime_error(description), number_(number) {}

    [[nodiscard]] ErrorNumber number() const { return number_; }
    [[nodiscard]] std::int32_t code() const { return static_cast<std::int32_t>(number_); }
    [[nodiscard]] std::string description() const { return what(); }

 private:
    ErrorNumber number_;
};

/// Runs `action` and drops a RunTimeError that it raises: for the few routines that are meant to ignore errors.
/// Every use says why. Gives true if the action ran to its end.
template <typename Action>
bool ignoringErrors(Action&& action) {
    try {
        action();
        return true;
    } catch (const RunTimeError&) {
        return false;
    }
}

}  // namespace qrv
