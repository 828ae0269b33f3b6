#include "platform/Files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>

#include "platform/RunTimeError.h"
#include "twins/Seed.h"
#include "twins/TemporaryFolder.h"

namespace qrv {
namespace {

constexpr std::size_t kLimit = 64 * 1024 * 1024;

struct FilesTest : testing::Test {
    std::string put(const std::string& name, const std::string& bytes, mode_t mode = 0644) {
        const std::string path = folder.file(name);
        std::ofstream(path, std::ios::binary) << bytes;
        ::chmod(path.c_str(), mode);
        return path;
    }
    static std::string content(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static int modeOf(const std::string& path) {
        struct stat state {};
        return ::stat(path.c_str(), &state) == 0 ? static_cast<int>(state.st_mode & 07777) : -1;
    }
    using Names = std::vector<std::string>;

    TemporaryFolder folder;
};

using CopyFile = FilesTest;
using WriteWhole = FilesTest;
using ReadWhole = FilesTest;
using FileBits = FilesTest;
using TemporaryNames = FilesTest;

/// Writes beyond this many bytes of a file fail while this stands: a disk that fills up in the middle of a write.
class FileSizeLimit {
 public:
    explicit FileSizeLimit(rlim_t byteCount) {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limit = before_;
        limit.rlim_cur = byteCount;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before_); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
    rlimit before_{};
};

TEST_F(CopyFile, MakesANewFileWithTheSourcesBits) {
    const std::string from = put("a.qrv", "content", 0640);
    EXPECT_FALSE(copyFile(from, folder.file("b.qrv"), Permissions::OfSource));
    EXPECT_EQ(content(folder.file("b.qrv")), "content");
    EXPECT_EQ(modeOf(folder.file("b.qrv")), 0640);
    EXPECT_EQ(folder.names(), (Names{"a.qrv", "b.qrv"}));
}

TEST_F(CopyFile, GivesAnExistingTargetTheReadOnlyBitOfItsSource) {
    const std::string from = put("a.qrv", "new", 0444);
    const std::string to = put("b.qrv", "old and longer", 0600);
    EXPECT_FALSE(copyFile(from, to, Permissions::OfSource));
    EXPECT_EQ(content(to), "new");
    EXPECT_EQ(modeOf(to), 0444);
    EXPECT_TRUE(isReadOnly(to));
}

TEST_F(CopyFile, KeepsAWorkFileFromOthers) {
    EXPECT_FALSE(copyFile(put("a.qrv", "x", 0444), folder.file("ro"), Permissions::OwnerOnly));
    EXPECT_FALSE(copyFile(put("b.qrv", "x", 0666), folder.file("rw"), Permissions::OwnerOnly));
    EXPECT_EQ(modeOf(folder.file("ro")), 0400);
    EXPECT_EQ(modeOf(folder.file("rw")), 0600);
}

TEST_F(CopyFile, KeepsTheModeOfTheUsersFile) {
    const std::string to = put("user.qrv", "old", 0664);
    EXPECT_FALSE(copyFile(put("work", "new", 0600), to, Permissions::OfTarget));
    EXPECT_EQ(content(to), "new");
    EXPECT_EQ(modeOf(to), 0664);
}

TEST_F(CopyFile, GivesANewFileTheUsualModeOrAReadOnlyOne) {
    const mode_t before = ::umask(022);
    EXPECT_FALSE(copyFile(put("work", "x", 0600), folder.file("new"), Permissions::OfTarget));
    EXPECT_FALSE(copyFile(put("locked", "x", 0400), folder.file("copy"), Permissions::OfTarget));
    EXPECT_EQ(::umask(before), 022U);
    EXPECT_EQ(modeOf(folder.file("new")), 0644);
    EXPECT_EQ(modeOf(folder.file("copy")), 0444);
}

TEST_F(CopyFile, RefusesAReadOnlyTargetWhoeverAsks) {
    const std::string from = put("a", "new");
    const std::string to = put("b", "old", 0444);
    const FileResult fault = copyFile(from, to, Permissions::OfTarget);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->code, EACCES);
    EXPECT_EQ(fault->text, "cannot replace " + to + ": Permission denied");
    EXPECT_EQ(content(to), "old");
    EXPECT_EQ(modeOf(to), 0444);
    EXPECT_EQ(folder.names(), (Names{"a", "b"}));
}

TEST_F(CopyFile, LeavesASymbolicLinkPointing) {
    const std::string target = put("real.qrv", "old", 0640);
    std::filesystem::create_directory(folder.file("sub"));
    std::filesystem::create_symlink("../real.qrv", folder.file("sub/one"));
    std::filesystem::create_symlink(folder.file("sub/one"), folder.file("two"));
    EXPECT_FALSE(copyFile(put("work", "new"), folder.file("two"), Permissions::OfTarget));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("two")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("sub/one")));
    EXPECT_FALSE(std::filesystem::is_symlink(target));
    EXPECT_EQ(content(target), "new");
    EXPECT_EQ(modeOf(target), 0640);
}

TEST_F(CopyFile, FillsInTheMissingEndOfALink) {
    std::filesystem::create_symlink("later.qrv", folder.file("link"));
    EXPECT_FALSE(copyFile(put("work", "new"), folder.file("link"), Permissions::OfTarget));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
    EXPECT_EQ(content(folder.file("later.qrv")), "new");
}

TEST_F(CopyFile, RefusesLinksThatRunInACircle) {
    std::filesystem::create_symlink("b", folder.file("a"));
    std::filesystem::create_symlink("a", folder.file("b"));
    EXPECT_TRUE(copyFile(put("work", "new"), folder.file("a"), Permissions::OfTarget));
    EXPECT_TRUE(copyFile(folder.file("a"), folder.file("c"), Permissions::OfTarget));
    EXPECT_EQ(folder.names(), (Names{"a", "b", "work"}));
}

TEST_F(CopyFile, OntoItselfKeepsTheFile) {
    const std::string path = put("a", "same", 0640);
    EXPECT_FALSE(copyFile(path, path, Permissions::OfTarget));
    EXPECT_EQ(content(path), "same");
    EXPECT_EQ(modeOf(path), 0640);
}

TEST_F(CopyFile, RefusesWhatIsNoPlainFileWithoutWaiting) {
    const std::string fifo = folder.file("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string& from : {fifo, folder.path(), std::string("/dev/zero"), std::string("/dev/tty")}) {
        const FileResult fault = copyFile(from, folder.file("to"), Permissions::OfSource);
        ASSERT_TRUE(fault) << from;
        EXPECT_NE(fault->text.find(from), std::string::npos);
        EXPECT_FALSE(exists(folder.file("to")));
        EXPECT_TRUE(readWhole(from, kLimit).fault) << from;
    }
    const std::string from = put("from", "x");
    for (const std::string& to : {fifo, folder.path(), std::string("/dev/null")}) {
        EXPECT_TRUE(copyFile(from, to, Permissions::OfSource)) << to;
    }
    EXPECT_TRUE(std::filesystem::is_fifo(fifo));
    EXPECT_EQ(folder.names(), (Names{"fifo", "from"}));
}

TEST_F(CopyFile, TellsOfWhatIsNotThere) {
    const FileResult noSource = copyFile(folder.file("none"), folder.file("to"), Permissions::OfSource);
    ASSERT_TRUE(noSource);
    EXPECT_EQ(noSource->code, ENOENT);
    EXPECT_EQ(noSource->text, "cannot open " + folder.file("none") + ": No such file or directory");
    const FileResult noFolder = copyFile(put("a", "x"), folder.file("no/to"), Permissions::OfSource);
    ASSERT_TRUE(noFolder);
    EXPECT_EQ(noFolder->code, ENOENT);
    EXPECT_TRUE(copyFile("", folder.file("to"), Permissions::OfSource));
    EXPECT_TRUE(copyFile(folder.file("a"), "", Permissions::OfSource));
    EXPECT_EQ(folder.names(), (Names{"a"}));
}

TEST_F(CopyFile, KeepsTheOldContentWhereTheNewOneCannotBeWrittenWhole) {
    const std::string from = put("big", std::string(3'000'000, 'n'));
    const std::string to = put("user.qrv", "old", 0640);
    FileResult fault;
    {
        const FileSizeLimit limit(1'000'001);
        fault = copyFile(from, to, Permissions::OfTarget);
    }
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->code, EFBIG);
    EXPECT_EQ(content(to), "old");
    EXPECT_EQ(modeOf(to), 0640);
    EXPECT_EQ(folder.names(), (Names{"big", "user.qrv"}));
}

TEST_F(CopyFile, KeepsTheOldContentWhereNoFileMayBeOpened) {
    const std::string from = put("a", "new");
    const std::string to = put("b", "old");
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const int next = ::dup(0);
    ::close(next);
    // First not even the source can be opened, then the temporary can't, then all but the folder.
    for (int more = 0; more <= 2; ++more) {
        rlimit limit = before;
        limit.rlim_cur = static_cast<rlim_t>(next + more);
        ::setrlimit(RLIMIT_NOFILE, &limit);
        const FileResult fault = copyFile(from, to, Permissions::OfTarget);
        ::setrlimit(RLIMIT_NOFILE, &before);
        const bool isWritten = more == 2;
        EXPECT_EQ(fault ? fault->code : 0, isWritten ? 0 : EMFILE);
        EXPECT_EQ(content(to), isWritten ? "new" : "old");
        EXPECT_EQ(folder.names(), (Names{"a", "b"}));
    }
}

TEST_F(CopyFile, CarriesAnyBytesOfAnyLength) {
    const auto seed = seedOfRun();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    for (const std::size_t size :
         std::initializer_list<std::size_t>{0, 1, 4095, 4096, 262'143, 262'144, 262'145, 1'000'000}) {
        std::string bytes(size, '\0');
        for (char& c : bytes) c = static_cast<char>(random());
        const std::string from = put("from", bytes);
        EXPECT_FALSE(copyFile(from, folder.file("to"), Permissions::OfSource, Durability::Unflushed));
        EXPECT_EQ(content(folder.file("to")), bytes);
        const FileContent read = readWhole(from, size);
        EXPECT_FALSE(read.fault);
        EXPECT_EQ(read.bytes, bytes);
    }
}

TEST_F(CopyFile, TakesNamesAsTheyAre) {
    const std::string from = put("a\\b.qrv", "x");
    EXPECT_FALSE(copyFile(from, folder.file("c\\d \xC3\xA4.qrv"), Permissions::OfSource));
    EXPECT_EQ(content(folder.file("c\\d \xC3\xA4.qrv")), "x");
}

TEST_F(WriteWhole, ReplacesAndKeepsTheMode) {
    const std::string path = put("a", "old", 0644);
    EXPECT_FALSE(writeWholeAtOnce(path, std::string_view("n\0w", 3)));
    EXPECT_EQ(content(path), std::string("n\0w", 3));
    EXPECT_EQ(modeOf(path), 0644);
    EXPECT_FALSE(writeWholeAtOnce(folder.file("new"), ""));
    EXPECT_EQ(modeOf(folder.file("new")), 0600);
    EXPECT_TRUE(writeWholeAtOnce(put("locked", "old", 0400), "new"));
    EXPECT_EQ(content(folder.file("locked")), "old");
}

TEST_F(WriteWhole, ToANewFileOverwritesNothing) {
    EXPECT_FALSE(writeNewFile(folder.file("new"), "n"));
    EXPECT_EQ(content(folder.file("new")), "n");
    EXPECT_EQ(modeOf(folder.file("new")), 0600);
    const std::string there = put("there", "old");
    EXPECT_EQ(writeNewFile(there, "new")->code, EEXIST);
    EXPECT_EQ(content(there), "old");
    EXPECT_EQ(folder.names(), (Names{"new", "there"}));
}

TEST_F(WriteWhole, FailsWholeOnAFullDisk) {
    const std::string path = put("a", "old");
    FileResult fault;
    {
        const FileSizeLimit limit(10);
        fault = writeWholeAtOnce(path, "eleven bytes and more");
    }
    EXPECT_TRUE(fault);
    EXPECT_EQ(content(path), "old");
    EXPECT_EQ(folder.names(), (Names{"a"}));
}

TEST_F(ReadWhole, RefusesAFileBeyondItsLimit) {
    const std::string path = put("a", "12345");
    EXPECT_EQ(readWhole(path, 5).bytes, "12345");
    const FileContent read = readWhole(path, 4);
    ASSERT_TRUE(read.fault);
    EXPECT_EQ(read.fault->code, EFBIG);
    EXPECT_EQ(read.bytes, "");
    EXPECT_EQ(readWhole(folder.file("none"), 5).fault->code, ENOENT);
}

TEST_F(FileBits, ReadOnlyIsTheOwnersBitAlone) {
    EXPECT_TRUE(isReadOnly(put("a", "", 0466)));
    EXPECT_FALSE(isReadOnly(put("b", "", 0644)));
    EXPECT_FALSE(isReadOnly(put("c", "", 0200)));
    EXPECT_FALSE(isReadOnly(folder.file("none")));
}

TEST_F(FileBits, SetsAndClearsReadOnly) {
    const std::string path = put("a", "", 0664);
    EXPECT_FALSE(setReadOnly(path, true));
    EXPECT_EQ(modeOf(path), 0444);
    EXPECT_FALSE(setReadOnly(path, false));
    EXPECT_EQ(modeOf(path), 0644);
    EXPECT_TRUE(setReadOnly(folder.file("none"), true));
}

TEST_F(FileBits, KnowsWhatExists) {
    EXPECT_TRUE(exists(put("a", "")));
    EXPECT_TRUE(exists(folder.path()));
    EXPECT_FALSE(exists(folder.file("none")));
    EXPECT_FALSE(exists(""));
    std::filesystem::create_symlink("none", folder.file("dangling"));
    EXPECT_FALSE(exists(folder.file("dangling")));
}

TEST_F(CopyFile, ToANewFileOverwritesNothing) {
    const std::string from = put("from", "new");
    EXPECT_FALSE(copyToNewFile(from, folder.file("to")));
    EXPECT_EQ(content(folder.file("to")), "new");
    const std::string there = put("there", "old");
    EXPECT_EQ(copyToNewFile(from, there)->code, EEXIST);
    EXPECT_EQ(content(there), "old");
    ASSERT_EQ(::symlink("target", folder.file("link").c_str()), 0);
    EXPECT_FALSE(copyToNewFile(from, folder.file("link")));
    EXPECT_EQ(content(folder.file("target")), "new");
    EXPECT_EQ(folder.names(), (Names{"from", "link", "target", "there", "to"}));
}

TEST_F(FileBits, AFileWithAnotherContentIsAnotherFile) {
    const std::string path = put("a", "one");
    const auto before = identityOf(path);
    ASSERT_TRUE(before);
    EXPECT_EQ(identityOf(path), before);
    put("a", "more");
    EXPECT_NE(identityOf(path), before);
    put("b", "more");
    EXPECT_NE(identityOf(folder.file("b")), identityOf(path));
    EXPECT_EQ(identityOf(folder.file("none")), std::nullopt);
}

TEST_F(WriteWhole, AnEmptyFileIsMadeOnlyWhereNoTrapIsLaid) {
    const std::string own = put("own", "content");
    EXPECT_FALSE(makeEmptyOwnFile(own));
    EXPECT_EQ(content(own), "");
    EXPECT_FALSE(makeEmptyOwnFile(folder.file("new")));
    EXPECT_TRUE(exists(folder.file("new")));
    const std::string theirs = put("theirs", "content");
    ASSERT_EQ(::symlink("theirs", folder.file("link").c_str()), 0);
    EXPECT_TRUE(makeEmptyOwnFile(folder.file("link")));
    ASSERT_EQ(::link(theirs.c_str(), folder.file("name").c_str()), 0);
    EXPECT_TRUE(makeEmptyOwnFile(folder.file("name")));
    EXPECT_EQ(content(theirs), "content");
    EXPECT_TRUE(makeEmptyOwnFile(folder.path()));
    // Opening a pipe that nobody reads would wait for ever.
    ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
    EXPECT_TRUE(makeEmptyOwnFile(folder.file("pipe")));
}

TEST_F(FileBits, RemovesAFileAndReadOnlyOnes) {
    EXPECT_FALSE(removeFile(put("a", "", 0400)));
    EXPECT_FALSE(exists(folder.file("a")));
    EXPECT_EQ(removeFile(folder.file("a"))->code, ENOENT);
    EXPECT_TRUE(removeFile(folder.path()));
}

TEST_F(FileBits, TellsAndSetsTimes) {
    const std::string path = put("a", "");
    const FileTime time = FileTime(std::chrono::seconds(1'000'000'000)) + std::chrono::milliseconds(250);
    EXPECT_FALSE(setFileTimes(path, time));
    EXPECT_EQ(lastWriteTime(path), time);
    const FileTime early = FileTime(std::chrono::milliseconds(-1500));
    EXPECT_FALSE(setFileTimes(path, early));
    EXPECT_EQ(lastWriteTime(path), early);
    EXPECT_EQ(lastWriteTime(folder.file("none")), std::nullopt);
    EXPECT_TRUE(setFileTimes(folder.file("none"), time));
}

TEST_F(TemporaryNames, HaveTheirFormAndAreMadeEmptyAndPrivate) {
    const std::string path = makeTemporaryName(folder.path(), "QRM", "");
    const std::string name = path.substr(folder.path().size() + 1);
    EXPECT_EQ(folder.names(), (Names{name}));
    ASSERT_EQ(name.size(), 11U);
    EXPECT_EQ(name.substr(0, 3), "QRM");
    EXPECT_EQ(name.find_first_not_of("0123456789ABCDEF", 3), 7U);
    EXPECT_EQ(name.substr(7), ".TMP");
    EXPECT_EQ(modeOf(path), 0600);
    EXPECT_EQ(content(path), "");
}

TEST_F(TemporaryNames, AreNeverTheLastOneAgain) {
    // All names but two are taken; one of the two was the last.
    const auto nameOf = [](int number) {
        char name[12];
        std::snprintf(name, sizeof name, "QRM%04X.TMP", static_cast<unsigned>(number) & 0xFFFFU);
        return std::string(name);
    };
    for (int i = 0; i < 0x10000; ++i) {
        const bool isFree = i == 0x1234 || i == 0xFFFF;
        ASSERT_TRUE(isFree || ::symlink("x", folder.file(nameOf(i)).c_str()) == 0);
    }
    EXPECT_EQ(makeTemporaryName(folder.path(), "QRM", folder.file("QRMFFFF.TMP")), folder.file("QRM1234.TMP"));
    EXPECT_THROW(static_cast<void>(makeTemporaryName(folder.path(), "QRM", "QRMFFFF.TMP")), RunTimeError);
    EXPECT_FALSE(exists(folder.file("x")));  // no planted link was followed
}

TEST_F(TemporaryNames, RaiseWhereNoneCanBeMade) {
    try {
        static_cast<void>(makeTemporaryName(folder.file("none"), "QRM", ""));
        FAIL() << "a name in a folder that isn't there";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.code(), 75);
        EXPECT_EQ(error.description(), "Path/File access error");
    }
}

}  // namespace
}  // namespace qrv
