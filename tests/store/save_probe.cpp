// One whole session with a configuration, for a test that lets its system calls fail, starves it or kills it:
//   save_probe new FOLDER FILE            makes FILE and closes it
//   save_probe save FOLDER FILE TITLE     opens FILE, changes it, saves it, opens it again
//   save_probe saveas FOLDER FILE OTHER   opens FILE, changes it, saves it as OTHER, closes that
// FOLDER takes the work files and the copies of unsaved work. Ends with 0 and "done", or with what went wrong and the
// number of the stage that it went wrong in.
#include <cstdio>
#include <string>

#include "platform/RunTimeError.h"
#include "store/LifeCycle.h"
#include "twins/UnattendedBench.h"

namespace qrv {
namespace {

constexpr std::int16_t kConstantsAdded = 200;

// The test that runs this program knows the numbers.
enum Stage { kDone = 0, kUsage = 2, kOpening = 3, kEditing = 4, kSaving = 5, kAfterwards = 6 };
Stage stage = kOpening;

/// Enough of a change to touch many pages of the file.
void change(db1& db, const std::string& title) {
    db.CommentEdit();
    db.CommentTitle(title);
    db.CommentUpdate();
    for (std::int16_t block = 1; block <= kConstantsAdded; ++block) {
        db.ConstantAddNew();
        db.ConstantBlockNumber(block);
        db.ConstantOffset(0);
        db.ConstantValue(block * 1000);
        db.ConstantUpdate();
        db.BlockSeek(block);
        db.BlockEdit();
        db.BlockComment("block " + std::to_string(block) + " of " + title);
        db.BlockUpdate();
    }
}

void makeNew(UnattendedBench& rig, const std::string& file) {
    rig.dialog.name = file;
    stage = kSaving;
    newFileDialog(rig.bench);
    stage = kAfterwards;
    CloseConfiguration(rig.bench, Answer::No);
}

void save(UnattendedBench& rig, const std::string& file, const std::string& title) {
    OpenConfiguration(rig.bench, file);
    stage = kEditing;
    change(rig.bench.db, title);
    stage = kSaving;
    CloseConfiguration(rig.bench, Answer::Yes);
    stage = kAfterwards;
    OpenConfiguration(rig.bench, file);
    CloseConfiguration(rig.bench, Answer::No);
}

void saveAs(UnattendedBench& rig, const std::string& file, const std::string& other) {
    OpenConfiguration(rig.bench, file);
    stage = kEditing;
    change(rig.bench.db, "saved as");
    rig.dialog.name = other;
    stage = kSaving;
    saveConfigurationAs(rig.bench);
    stage = kAfterwards;
    CloseConfiguration(rig.bench, Answer::No);
}

int run(int argc, char** argv) {
    if (argc < 4) return kUsage;
    const std::string mode = argv[1];
    UnattendedBench rig(argv[2]);
    if (mode == "new" && argc == 4) {
        makeNew(rig, argv[3]);
    } else if (mode == "save" && argc == 5) {
        save(rig, argv[3], argv[4]);
    } else if (mode == "saveas" && argc == 5) {
        saveAs(rig, argv[3], argv[4]);
    } else {
        return kUsage;
    }
    std::puts("done");
    return kDone;
}

}  // namespace
}  // namespace qrv

int main(int argc, char** argv) {
    try {
        return qrv::run(argc, argv);
    } catch (const qrv::RunTimeError& error) {
        std::puts(error.what());
        return qrv::stage;
    }
}
