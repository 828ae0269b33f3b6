#include "link/sim/SimMemoryFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "link/sim/SimRig.h"

namespace qrv::test {

namespace {

class Folder {
 public:
    Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "qrv_memory_XXXXXX").string();
        if (::mkdtemp(name.data()) != nullptr) path_ = name;
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    [[nodiscard]] std::string file() const { return (path_ / "memory").string(); }

 private:
    std::filesystem::path path_;
};

}  // namespace

TEST(SimMemoryFile, ComesBackAsItWasSaved) {
    const Folder folder;
    SimMemory memory;
    memory.write(14, 60, Bytes{1, 2, 3});
    ASSERT_EQ(saveSimMemory(folder.file(), memory), "");
    const auto loaded = loadSimMemory(folder.file());
    ASSERT_TRUE(loaded.memory.has_value()) << loaded.fault;
    EXPECT_EQ(*loaded.memory, memory);
}

TEST(SimMemoryFile, AFileThatIsNotThereIsNoFault) {
    const Folder folder;
    const auto loaded = loadSimMemory(folder.file());
    EXPECT_FALSE(loaded.memory.has_value());
    EXPECT_EQ(loaded.fault, "");
}

TEST(SimMemoryFile, AFileThatIsNoMemoryIsAFault) {
    const Folder folder;
    std::ofstream(folder.file()) << "a letter to a friend";
    const auto loaded = loadSimMemory(folder.file());
    EXPECT_FALSE(loaded.memory.has_value());
    EXPECT_EQ(loaded.fault, folder.file() + " is no memory of a controller, or is damaged");
}

TEST(SimMemoryFile, AFolderThatIsNotThereTakesNoFile) {
    const Folder folder;
    EXPECT_NE(saveSimMemory(folder.file() + "/deeper/memory", SimMemory()), "");
}

}  // namespace qrv::test
