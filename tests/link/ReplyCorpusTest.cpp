// The fuzzer's corpus of replies, replayed: each file is one input of tests/fuzz/fuzz_reply.cpp.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace qrv::test {
namespace {

TEST(ReplyCorpus, BreaksNothing) {
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(QRV_REPLY_CORPUS)) {
        SCOPED_TRACE(entry.path());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
        EXPECT_EQ(LLVMFuzzerTestOneInput(input.data(), input.size()), 0);
        ++files;
    }
    EXPECT_GE(files, 20U);
}

}  // namespace
}  // namespace qrv::test
