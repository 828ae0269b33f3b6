#include "OpenFile.h"

#include "Terminal.h"
#include "platform/Files.h"
#include "platform/RunTimeError.h"
#include "store/Backups.h"
#include "store/LifeCycle.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr const char* kNewFilePrefix = "NEW";

}  // namespace

OpenFile::OpenFile(Workbench& bench) : bench_(bench) {
    try {
        bench_.db.open_database(bench_.places.catalogue);
    } catch (const RunTimeError& error) {
        throw CommandFailure(ExitCode::File, "The function catalogue can't be used: " + error.description());
    }
}

OpenFile::~OpenFile() {
    // Nothing is lost by a copy that could not be deleted.
    if (isOpen_) ignoringErrors([this] { close(); });
    if (!newFile_.empty()) static_cast<void>(removeFile(newFile_));
}

void OpenFile::open(const std::string& path) {
    OpenConfiguration(bench_, path);
    isOpen_ = true;
}

void OpenFile::openNew() {
    newFile_ = makeTemporaryName(bench_.places.work, kNewFilePrefix, "");
    bench_.db.create_new_database(newFile_);
    open(newFile_);
}

void OpenFile::abandon() { isOpen_ = false; }

void OpenFile::close() {
    isOpen_ = false;
    CloseConfiguration(bench_, Answer::No);
}

ConfigurationContent OpenFile::content() {
    // An upgraded file stays locked until its cursors are closed.
    bench_.db.close_work_dbs();
    return contentOfWorkFile(bench_.WorkFileName);
}

ConfigurationContent OpenFile::contentOf(const std::string& path) {
    open(path);
    ConfigurationContent rows = content();
    close();
    return rows;
}

void OpenFile::saveAs(const std::string& path) {
    bench_.db.close_work_dbs();
    const FileResult written = copyFile(bench_.WorkFileName, path, Permissions::OfTarget);
    const std::string kept = written ? keepBackup(bench_.places.backups, bench_.WorkFileName, path) : "";
    // Where nothing else can be written the work file is all there is of the work: it stays.
    const bool mayGo = !written || !kept.empty();
    const std::string where = mayGo ? kept : bench_.WorkFileName;
    mayGo ? close() : abandon();
    if (!written) return;
    throw CommandFailure(ExitCode::File,
                         path + " could not be written: " + written->text + ". The work is kept as " + where + ".");
}

}  // namespace qrv
