#include "store/LifeCycle.h"

#include <algorithm>

#include "platform/FileDialog.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/RunTimeError.h"
#include "store/Backups.h"
#include "store/ConfigurationContent.h"
#include "store/DefaultRows.h"
#include "store/WorkCopy.h"

namespace qrv {

namespace {

constexpr const char* kWorkFilePrefix = "QRM";

std::string askForFile(Workbench& bench, FileQuestion question) {
    question.filter = kConfigurationFilter;
    const std::string chosen = bench.platform.fileDialog.ask(question);
    return chosen.empty() ? chosen : absolutePath(chosen);
}

/// The error as the user is to read it: of the file that was asked for, not of the copy that was being opened.
RunTimeError aboutUsersFile(const RunTimeError& error, const std::string& workFile, const std::string& path) {
    std::string description = error.description();
    const auto place = workFile.empty() ? std::string::npos : description.find(workFile);
    if (place != std::string::npos) description.replace(place, workFile.size(), path);
    return {error.number(), description};
}

void deleteWorkFile(const std::string& path) {
    if (path.empty() || !exists(path)) return;
    // What can't be deleted stays behind; the next file gets another name.
    static_cast<void>(setReadOnly(path, false));
    static_cast<void>(removeFile(path));
}

void makeWorkCopyName(Workbench& bench) {
    try {
        bench.WorkFileName = MakeWorkFileName(bench);
    } catch (const RunTimeError& error) {
        bench.WorkFileName.clear();
        bench.platform.messageBox.say(std::to_string(error.code()) + " " + error.description());
    }
}

void openWorkCopy(Workbench& bench, const std::string& path, const FileResult& copied) {
    try {
        if (bench.WorkFileName.empty()) {
            throw RunTimeError(ErrorNumber::CouldNotOpenFile,
                               path + " could not be opened: no work file could be made in " + bench.places.work + ".");
        }
        if (copied) {
            throw RunTimeError(ErrorNumber::CouldNotOpenFile, path + " could not be opened: " + copied->text + ".");
        }
        // The upgrade itself tests again; this early look decides nothing.
        static_cast<void>(bench.db.TestVisioComments(bench.WorkFileName));
        bench.db.open_existing_database(bench.WorkFileName);
    } catch (const RunTimeError& error) {
        const RunTimeError told = aboutUsersFile(error, bench.WorkFileName, path);
        // Nothing of the user's stands in it.
        deleteWorkFile(bench.WorkFileName);
        throw told;
    }
}

/// Whether the user's file holds every row of the work file. The engine never opens the user's own file.
bool isSaved(const Workbench& bench) {
    const std::string copy = makeTemporaryName(bench.places.work, kWorkFilePrefix, bench.WorkFileName);
    bool isEqual = false;
    if (!copyToWorkFile(bench.CurrentFileName, copy)) {
        const auto rowsAreEqual = [](const TableContent& one, const TableContent& other) {
            return one.rows == other.rows;
        };
        // A file that can't be read, or is older than the work, isn't what the work is.
        ignoringErrors([&] {
            isEqual = std::ranges::equal(contentOfWorkFile(bench.WorkFileName).tables, contentOfWorkFile(copy).tables,
                                         rowsAreEqual);
        });
    }
    deleteWorkFile(copy);
    return isEqual;
}

std::string titleOf(const Workbench& bench) {
    return "QRV Edit - " + bench.CurrentFileName + (bench.IsReadOnlyFile ? " - READ ONLY" : "");
}

bool mayReplace(Workbench& bench, const Notice& question) {
    return bench.platform.messageBox.ask(question) == Answer::Yes;
}

/// The work goes to the user's file; where that fails, to the folder for backups. False: it is nowhere but in the work
/// file.
bool storeWork(Workbench& bench, const std::string& target, FileResult& written) {
    written = copyFile(bench.WorkFileName, target, Permissions::OfTarget);
    return !written || !keepBackup(bench.places.backups, bench.WorkFileName, target).empty();
}

}  // namespace

std::string MakeWorkFileName(Workbench& bench) {
    return makeTemporaryName(bench.places.work, kWorkFilePrefix, bench.WorkFileName);
}

void LoadFnOfBlock(Workbench& bench) {
    std::size_t ordinal = 0;
    bench.db.BlockMoveFirst();
    while (!bench.db.BlockEOF()) {
        bench.FnOfBlock.at(ordinal++) = bench.db.BlockFn();
        bench.db.BlockMoveNext();
    }
}

void OpenConfiguration(Workbench& bench, const std::string& givenPath) {
    const std::string path = absolutePath(givenPath);
    // Nothing of this file's is to be kept as the work on the one before.
    bench.FileIsOpen = false;
    makeWorkCopyName(bench);
    FileResult copied;
    if (!bench.WorkFileName.empty()) copied = copyToWorkFile(path, bench.WorkFileName);
    openWorkCopy(bench, path, copied);
    // A window that can't be filled keeps no file from being opened.
    ignoringErrors([&bench] { bench.windows.loadBoardTexts(); });
    bench.IsReadOnlyFile = bench.db.ReadOnlyFile();
    LoadFnOfBlock(bench);
    bench.windows.addRecentFile(path);
    bench.CurrentFileName = path;
    bench.TitleText = titleOf(bench);
    bench.FileIsOpen = true;
    bench.windows.showOpened();
}

bool CloseConfiguration(Workbench& bench, Answer answer) {
    // A read-only file refuses the board texts; the other steps run all the same.
    ignoringErrors([&bench] { bench.windows.storeBoardTexts(); });
    if (bench.WorkFileName.empty()) return false;
    if (answer == Answer::Yes) {
        bench.db.close_work_dbs();
    } else {
        // Work that is thrown away need not reach the disk.
        ignoringErrors([&bench] { bench.db.close_work_dbs(); });
    }
    FileResult written;
    const bool isWanted = answer == Answer::Yes && !bench.IsReadOnlyFile;
    const bool isKept = isWanted && storeWork(bench, bench.CurrentFileName, written);
    if (isKept || !isWanted) deleteWorkFile(bench.WorkFileName);
    return isKept && !written;
}

std::string KeepUnsavedWork(Workbench& bench) {
    if (!bench.FileIsOpen || !exists(bench.WorkFileName)) return "";
    // Blocks of a new board stand in the file already, its name does only with this.
    ignoringErrors([&bench] { bench.windows.storeBoardTexts(); });
    bench.db.close_work_dbs();
    bench.FileIsOpen = false;
    std::string copy;
    if (!bench.IsReadOnlyFile && !bench.isHalfUploaded && !isSaved(bench)) {
        copy = keepBackup(bench.places.backups, bench.WorkFileName, bench.CurrentFileName);
        // Then the work file is all that there is.
        if (copy.empty()) return bench.WorkFileName;
    }
    deleteWorkFile(bench.WorkFileName);
    return copy;
}

bool newFileDialog(Workbench& bench) {
    bench.DialogResultOpen = false;
    bench.FileIsOpen = false;
    const std::string path = askForFile(bench, {.kind = FileDialogKind::Save, .title = bench.windows.newFileTitle});
    if (path.empty()) return false;
    if (exists(path) &&
        !mayReplace(bench, {.text = "Replace " + path + "\n" + path + " Already Exists", .buttons = Buttons::YesNo})) {
        return false;
    }
    for (std::int16_t block = 0; block < kBlockCount; ++block) {
        bench.FnOfBlock[static_cast<std::size_t>(block)] = defaultFunction(block);
    }
    // Takes the old file's place in one step: should it fail, the old file is still there.
    bench.db.create_new_database(path);
    OpenConfiguration(bench, path);
    bench.DialogResultOpen = true;
    return true;
}

bool openByName(Workbench& bench, const std::string& path) {
    const std::string absolute = absolutePath(path);
    if (!exists(absolute)) {
        bench.platform.messageBox.say(path + " Does Not Exist");
        return false;
    }
    OpenConfiguration(bench, absolute);
    bench.DialogResultOpen = true;
    return true;
}

bool openFileDialog(Workbench& bench) {
    bench.DialogResultOpen = false;
    bench.FileIsOpen = false;
    const std::string path = askForFile(bench, {.kind = FileDialogKind::Open});
    return !path.empty() && openByName(bench, path);
}

std::string GetMDBName(Workbench& bench) { return askForFile(bench, {.kind = FileDialogKind::Open}); }

SaveAsResult saveConfigurationAs(Workbench& bench) {
    std::string chosen = askForFile(bench, {.kind = FileDialogKind::Save, .initialName = bench.CurrentFileName});
    if (chosen.empty()) chosen = bench.CurrentFileName;
    if (chosen == bench.CurrentFileName) return SaveAsResult::SameName;
    if (exists(chosen) && !mayReplace(bench, {.text = chosen + " already exists.\nDo you want to replace it?",
                                              .title = "Save AS",
                                              .buttons = Buttons::YesNo,
                                              .icon = Icon::Warning})) {
        return SaveAsResult::Nothing;
    }
    bench.db.close_work_dbs();
    FileResult written;
    if (storeWork(bench, chosen, written)) deleteWorkFile(bench.WorkFileName);
    // To open what stands under that name now would pass another file off as the user's work.
    if (written) {
        throw RunTimeError(ErrorNumber::PathAccessError, chosen + " could not be written: " + written->text + ".");
    }
    // The attribute travels with the copy, onto a file that was there as well.
    if (bench.IsReadOnlyFile) static_cast<void>(setReadOnly(chosen, true));
    bench.CurrentFileName = chosen;
    OpenConfiguration(bench, chosen);
    return SaveAsResult::Saved;
}

}  // namespace qrv
