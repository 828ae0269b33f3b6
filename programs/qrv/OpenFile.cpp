#include "OpenFile.h"

#include <cerrno>

#include "platform/RunTimeError.h"
#include "platform/posix/HeldSignals.h"
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
    leave();
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

void OpenFile::leave() {
    // Nothing is lost by a copy that could not be deleted.
    if (isOpen_) ignoringErrors([this] { close(); });
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

/// For as long as there is a work file no signal ends the program, for that would leave it behind.
ConfigurationContent OpenFile::contentOf(const std::string& path) {
    const HeldSignals held;
    struct Leaving {
        ~Leaving() { file.leave(); }
        OpenFile& file;
    };
    const Leaving atTheEnd{*this};
    open(path);
    ConfigurationContent rows = content();
    close();
    return rows;
}

void OpenFile::saveAs(const std::string& path, const std::optional<FileIdentity>& before) {
    bench_.db.close_work_dbs();
    const std::string changed = before ? " has changed meanwhile." : " was made meanwhile by somebody else.";
    if (identityOf(path) != before) keepWork(ExitCode::Refused, path, changed);
    const FileResult fault =
        before ? copyFile(bench_.WorkFileName, path, Permissions::OfTarget) : copyToNewFile(bench_.WorkFileName, path);
    if (fault && fault->code == EEXIST) keepWork(ExitCode::Refused, path, changed);
    if (fault) keepWork(ExitCode::File, path, " could not be written: " + fault->text + ".");
    close();
}

void OpenFile::keepWork(ExitCode code, const std::string& path, const std::string& why) {
    const std::string kept = keepBackup(bench_.places.backups, bench_.WorkFileName, path);
    // Where nothing else can be written the work file is all there is of the work: it stays.
    const std::string where = kept.empty() ? bench_.WorkFileName : kept;
    kept.empty() ? abandon() : close();
    throw CommandFailure(code, path + why + " The work is kept as " + where + ".");
}

}  // namespace qrv
