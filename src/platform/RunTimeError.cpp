#include "platform/RunTimeError.h"

#include <array>
#include <utility>

namespace qrv {

namespace {

constexpr std::array kDescriptions{
    std::pair{ErrorNumber::Overflow, std::string_view{"Overflow"}},
    std::pair{ErrorNumber::SubscriptOutOfRange, std::string_view{"Subscript out of range"}},
    std::pair{ErrorNumber::TypeMismatch, std::string_view{"Type mismatch"}},
    std::pair{ErrorNumber::FileNotFound, std::string_view{"File not found"}},
    std::pair{ErrorNumber::DeviceIoError, std::string_view{"Device I/O error"}},
    std::pair{ErrorNumber::FileAlreadyExists, std::string_view{"File already exists"}},
    std::pair{ErrorNumber::DiskFull, std::string_view{"Disk full"}},
    std::pair{ErrorNumber::PathAccessError, std::string_view{"Path/File access error"}},
    std::pair{ErrorNumber::ObjectNotSet, std::string_view{"Object variable or With block variable not set"}},
    std::pair{ErrorNumber::InvalidUseOfNull, std::string_view{"Invalid use of Null"}},
    std::pair{ErrorNumber::NoCurrentIndex, std::string_view{"Operation invalid without a current index."}},
    std::pair{ErrorNumber::UpdateWithoutEdit, std::string_view{"Update or CancelUpdate without AddNew or Edit."}},
    std::pair{ErrorNumber::NoCurrentRecord, std::string_view{"No current record."}},
    std::pair{ErrorNumber::DuplicateKey,
              std::string_view{"The row would repeat a value that the table's key holds already."}},
    std::pair{ErrorNumber::ReadOnlyDatabase, std::string_view{"The file is read-only."}},
    std::pair{ErrorNumber::NullInKey, std::string_view{"A key field can't be empty."}},
    std::pair{ErrorNumber::CouldNotOpenFile, std::string_view{"The file could not be opened."}},
    std::pair{ErrorNumber::FieldTooSmall, std::string_view{"The text is too long for its field."}},
    std::pair{ErrorNumber::ItemNotFound, std::string_view{"Item not found in this collection."}},
    std::pair{ErrorNumber::ZeroLengthString, std::string_view{"The field can't hold an empty text."}},
    std::pair{ErrorNumber::DataTypeConversion, std::string_view{"Data type conversion error."}},
    std::pair{ErrorNumber::UnrecognizedFormat, std::string_view{"Unrecognized file format."}},
};

}  // namespace

std::string_view descriptionOf(ErrorNumber number) {
    for (const auto& [known, words] : kDescriptions) {
        if (known == number) return words;
    }
    return "Application-defined or object-defined error";
}

}  // namespace qrv
