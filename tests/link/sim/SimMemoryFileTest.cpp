#include "link/sim/SimMemoryFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "link/sim/SimRig.h"
#include "twins/TemporaryFolder.h"

namespace qrv::test {

TEST(SimMemoryFile, ComesBackAsItWasSaved) {
    const TemporaryFolder folder;
    const std::string file = folder.file("memory");
    SimMemory memory;
    memory.write(14, 60, Bytes{1, 2, 3});
    ASSERT_EQ(saveSimMemory(file, memory), "");
    const auto loaded = loadSimMemory(file);
    ASSERT_TRUE(loaded.memory.has_value()) << loaded.fault;
    EXPECT_EQ(*loaded.memory, memory);
}

TEST(SimMemoryFile, AFileThatIsNotThereIsNoFault) {
    const TemporaryFolder folder;
    const std::string file = folder.file("memory");
    const auto loaded = loadSimMemory(file);
    EXPECT_FALSE(loaded.memory.has_value());
    EXPECT_EQ(loaded.fault, "");
}

TEST(SimMemoryFile, AFileThatIsNoMemoryIsAFault) {
    const TemporaryFolder folder;
    const std::string file = folder.file("memory");
    std::ofstream(file) << "a letter to a friend";
    const auto loaded = loadSimMemory(file);
    EXPECT_FALSE(loaded.memory.has_value());
    EXPECT_EQ(loaded.fault, file + " is no memory of a controller, or is damaged");
}

TEST(SimMemoryFile, AFolderThatIsNotThereTakesNoFile) {
    const TemporaryFolder folder;
    const std::string file = folder.file("memory");
    EXPECT_NE(saveSimMemory(file + "/deeper/memory", SimMemory()), "");
}

}  // namespace qrv::test
