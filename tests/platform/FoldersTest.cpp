#include "platform/Folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "twins/TemporaryFolder.h"

namespace qrv {
namespace {

Environment environmentOf(std::map<std::string, std::string> values) {
    return [values = std::move(values)](const std::string& name) {
        const auto found = values.find(name);
        return found == values.end() ? std::string{} : found->second;
    };
}

TEST(Folders, StandWhereTheUsersVariablesSay) {
    const Environment moved =
        environmentOf({{"HOME", "/home/eve"}, {"XDG_STATE_HOME", "/state/"}, {"XDG_CONFIG_HOME", "/config"}});
    EXPECT_EQ(stateFolder(moved), "/state/QRV_Edit");
    EXPECT_EQ(backupsFolder(moved), "/state/QRV_Edit/backups");
    EXPECT_EQ(settingsFile(moved), "/config/QRV_Edit/settings.ini");
}

TEST(Folders, StandBelowHomeOtherwise) {
    for (const char* unusable : {"", "relative/path"}) {
        const Environment environment =
            environmentOf({{"HOME", "/home/eve/"}, {"XDG_STATE_HOME", unusable}, {"XDG_CONFIG_HOME", unusable}});
        EXPECT_EQ(stateFolder(environment), "/home/eve/.local/state/QRV_Edit");
        EXPECT_EQ(settingsFile(environment), "/home/eve/.config/QRV_Edit/settings.ini");
    }
}

TEST(Folders, FindAHomeWithoutItsVariable) { EXPECT_TRUE(homeFolder(environmentOf({})).starts_with('/')); }

TEST(Folders, SettingsMoveByTheirOwnVariable) {
    EXPECT_EQ(settingsFile(environmentOf({{"QRV_SETTINGS", "/x/my.ini"}, {"XDG_CONFIG_HOME", "/config"}})),
              "/x/my.ini");
    EXPECT_EQ(settingsFile(environmentOf({{"QRV_SETTINGS", "my.ini"}})),
              (std::filesystem::current_path() / "my.ini").string());
}

TEST(Folders, WorkStandsBesideTheProgramWhereThatCanBeWritten) {
    const TemporaryFolder folder;
    const Environment environment = environmentOf({{"XDG_STATE_HOME", "/state"}});
    EXPECT_EQ(workFolder(folder.path(), environment), folder.path());
    EXPECT_EQ(workFolder(folder.file("none"), environment), "/state/QRV_Edit");
    EXPECT_EQ(workFolder("/proc/self", environment), "/state/QRV_Edit");
}

TEST(Folders, SharedFilesStandBesideTheProgramFirst) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.file("bin"));
    std::filesystem::create_directories(folder.file("share/qrv_edit"));
    const std::string program = folder.file("bin");
    EXPECT_EQ(sharedFolder(program, "QRVDATA.DAT"), program);  // nowhere
    std::ofstream(folder.file("share/qrv_edit/QRVDATA.DAT")) << "x";
    EXPECT_EQ(sharedFolder(program, "QRVDATA.DAT"), folder.file("share/qrv_edit"));
    std::ofstream(folder.file("bin/QRVDATA.DAT")) << "x";
    EXPECT_EQ(sharedFolder(program, "QRVDATA.DAT"), program);
}

TEST(Folders, TempComesFromTheFirstVariableThatIsSet) {
    EXPECT_EQ(temporaryFolder(environmentOf({{"TEMP", "/t/"}, {"TMPDIR", "/u"}})), "/t");
    EXPECT_EQ(temporaryFolder(environmentOf({{"TMPDIR", "/u"}})), "/u");
    EXPECT_EQ(temporaryFolder(environmentOf({})), "/tmp");
}

TEST(Folders, AnUploadsLogGoesToTempAndElseToTheUsersOwn) {
    EXPECT_EQ(logFolders(environmentOf({{"TEMP", "/t"}, {"HOME", "/home/ann"}})),
              (std::vector<std::string>{"/t", "/home/ann/.local/state/QRV_Edit"}));
}

/// Gives a variable of this process back as it was.
class KeptVariable {
 public:
    explicit KeptVariable(const char* name) : name_(name), value_(systemEnvironment(name)) {}
    ~KeptVariable() { value_.empty() ? ::unsetenv(name_) : ::setenv(name_, value_.c_str(), 1); }
    KeptVariable(const KeptVariable&) = delete;
    KeptVariable& operator=(const KeptVariable&) = delete;

 private:
    const char* name_;
    std::string value_;
};

TEST(Folders, TempIsProvidedOnlyWhereItLacks) {
    const KeptVariable temp("TEMP");
    const KeptVariable tmpdir("TMPDIR");
    ::setenv("TEMP", "/somewhere", 1);
    provideTemp();
    EXPECT_EQ(systemEnvironment("TEMP"), "/somewhere");
    ::setenv("TMPDIR", "/elsewhere", 1);
    ::setenv("TEMP", "", 1);
    provideTemp();
    EXPECT_EQ(systemEnvironment("TEMP"), "/elsewhere");
}

TEST(Folders, KnowTheProgramsOwn) { EXPECT_TRUE(std::filesystem::exists(executableFolder() + "/test_platform")); }

TEST(Folders, AreMadeForTheUserAlone) {
    const TemporaryFolder folder;
    EXPECT_TRUE(makeFolder(folder.file("a/b/c")));
    EXPECT_TRUE(makeFolder(folder.file("a/b/c")));
    struct stat state {};
    for (const char* name : {"a", "a/b", "a/b/c"}) {
        ASSERT_EQ(::stat(folder.file(name).c_str(), &state), 0);
        EXPECT_EQ(state.st_mode & 07777U, 0700U) << name;
    }
    std::ofstream(folder.file("plain")) << "x";
    EXPECT_FALSE(makeFolder(folder.file("plain")));
    EXPECT_FALSE(makeFolder(folder.file("plain/below")));
    EXPECT_FALSE(makeFolder(""));
}

}  // namespace
}  // namespace qrv
