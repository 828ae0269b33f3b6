// Files that other tools have put into write-ahead mode.
#include "store/WorkCopy.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "LifeCycleRig.h"
#include "platform/Files.h"
#include "platform/RunTimeError.h"
#include "store/LifeCycle.h"

namespace qrv {

using test::modeOf;
using test::writeText;
using Rig = test::LifeCycleRig;

namespace {

namespace fs = std::filesystem;

/// As another tool that likes it better.
void putIntoWriteAheadMode(const std::string& file) {
    ASSERT_EQ(std::system(("sqlite3 '" + file + "' 'PRAGMA journal_mode = WAL' >/dev/null").c_str()), 0);
    const std::string bytes = readWhole(file, 1 << 24).bytes;
    ASSERT_EQ(bytes.substr(18, 2), "\x02\x02");
}

class WriteAheadFile : public testing::TestWithParam<mode_t> {};

TEST_P(WriteAheadFile, OpensAndIsLeftAsItIs) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    ASSERT_NO_FATAL_FAILURE(putIntoWriteAheadMode(file));
    ASSERT_EQ(chmod(file.c_str(), GetParam()), 0);
    const std::string bytes = readWhole(file, 1 << 24).bytes;
    const auto names = rig.folder.names();
    OpenConfiguration(rig.bench, file);
    EXPECT_EQ(rig.bench.FnOfBlock[3], 91);
    EXPECT_EQ(rig.bench.IsReadOnlyFile, GetParam() == 0400);
    EXPECT_EQ(KeepUnsavedWork(rig.bench), "");
    EXPECT_EQ(readWhole(file, 1 << 24).bytes, bytes);
    EXPECT_EQ(modeOf(file), GetParam());
    EXPECT_EQ(rig.folder.names(), names);
    EXPECT_TRUE(rig.workFiles().empty());
}

INSTANTIATE_TEST_SUITE_P(Attributes, WriteAheadFile, testing::Values(0600, 0400),
                         [](const auto& row) { return row.param == 0400 ? "readOnly" : "writable"; });

TEST(WorkCopy, OfAWriteAheadFileWhoseChangesStillWaitIsRefused) {
    Rig rig;
    const std::string file = rig.configuration("a.qrv");
    ASSERT_NO_FATAL_FAILURE(putIntoWriteAheadMode(file));
    fs::create_symlink(file, rig.path("link.qrv"));
    writeText(file + "-wal", "a log");
    for (const std::string& path : {file, rig.path("link.qrv")}) {
        std::string said;
        try {
            OpenConfiguration(rig.bench, path);
        } catch (const RunTimeError& error) {
            said = error.description();
        }
        EXPECT_EQ(said, path + " could not be opened: changes that another program made still wait in " +
                            fs::canonical(file).string() + "-wal.");
        EXPECT_TRUE(rig.workFiles().empty());
    }
    // An empty log holds nothing back.
    writeText(file + "-wal", "");
    OpenConfiguration(rig.bench, file);
    EXPECT_TRUE(rig.bench.FileIsOpen);
}

}  // namespace
}  // namespace qrv
