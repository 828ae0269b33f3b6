#include "link/UploadLogFile.h"

#include "link/UploadHeadings.h"
#include "platform/RunTimeError.h"

namespace qrv {

UploadLogFile::UploadLogFile(const std::string& folder)
    : path_(folder + "/" + std::string(uploadlog::kFileName)), file_(path_, std::ios::binary | std::ios::trunc) {
    if (!file_) throw RunTimeError(ErrorNumber::PathAccessError, path_ + " could not be written.");
}

void UploadLogFile::print(std::string_view line) { file_ << line << "\r\n"; }

}  // namespace qrv
