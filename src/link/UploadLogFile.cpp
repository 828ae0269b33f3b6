#include "link/UploadLogFile.h"

#include "link/UploadHeadings.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Paths.h"
#include "platform/RunTimeError.h"

namespace qrv {

UploadLogFile::UploadLogFile(const std::vector<std::string>& folders) {
    std::string why;
    for (const std::string& folder : folders) {
        const bool isFirst = &folder == &folders.front();
        if (!isFirst) static_cast<void>(makeFolder(folder));
        path_ = joinedPath(folder, uploadlog::kFileName);
        const FileResult fault = makeEmptyOwnFile(path_);
        if (!fault) file_.open(path_, std::ios::binary);
        if (file_.is_open()) return;
        if (isFirst && fault) why = fault->text;
    }
    throw RunTimeError(ErrorNumber::PathAccessError, "The upload's log can't be kept: " + why + ".");
}

void UploadLogFile::print(std::string_view line) { file_ << line << "\r\n"; }

}  // namespace qrv
