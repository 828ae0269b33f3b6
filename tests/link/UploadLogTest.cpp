// The log of an upload, whole and byte for byte: of a controller with three functions, one string and constants that
// need a second read.
#include <gtest/gtest.h>

#include "ProgramText.h"
#include "TransferRig.h"

namespace qrv::test {

namespace {

constexpr const char* kRule =
    "-----------------------------------------------------------------------------------------\r\n";

/// What the controller holds, as it lies in its memory.
SimMemory smallProgram() {
    SimMemory memory;
    memory.write(1, 40, Bytes{0, 3, 0, 0, 0, 0, 0, 0, 1, 0});
    memory.write(1, 100, Bytes{0, 114, 0, 0, 0, 1, 0, 0, 2, 0, 0, 114, 0, 0, 0, 21, 0, 0, 2, 0});
    memory.write(3, 0, Bytes{0, 19, 18, 208, 0, 4, 0, 0});
    memory.write(3, 128, Bytes{255, 255, 255, 254});
    memory.write(3, 22528, Bytes{0, 10, 1, 'D', 'A', 'Y'});
    memory.write(3, 22548, Bytes{255, 255});
    return memory;
}

/// The bytes of a reply to a read: every block of the table is an empty one but three.
Bytes tableAt(int offset) {
    Bytes data(150, 0);
    for (std::size_t i = 1; i < data.size(); i += 10) data[i] = 127;
    if (offset == 0) {
        const Bytes known{0, 3, 0, 0, 0, 0, 0, 0, 1, 0};
        std::ranges::copy(known, data.begin() + 40);
        const Bytes both{0, 114, 0, 0, 0, 1, 0, 0, 2, 0, 0, 114, 0, 0, 0, 21, 0, 0, 2, 0};
        std::ranges::copy(both, data.begin() + 100);
    }
    return data;
}
Bytes firstConstants() {
    Bytes data{0, 19, 18, 208, 0, 4, 0, 0};
    data.resize(128, 0);
    return data;
}
Bytes secondConstants() {
    Bytes data{255, 255, 255, 254};
    data.resize(128, 0);
    return data;
}
Bytes stringsAt(int offset) {
    Bytes data;
    if (offset == 22528) data = {0, 10, 1, 68, 65, 89};
    if (offset == 22548) data = {255, 255};
    data.resize(20, 0);
    return data;
}

std::string decimals(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) text += std::to_string(byte) + " ";
    return text + "\r\n";
}

/// Writes the log as it is to be. The five bytes before a reply's data mean nothing: they are what the line brought.
class ExpectedLog {
 public:
    explicit ExpectedLog(std::vector<Bytes> heads) : heads_(std::move(heads)) {}

    void line(const std::string& text) { text_ += text + "\r\n"; }
    void heading(const std::string& text) { text_ += kRule + text + "\r\n" + kRule; }
    void exchange(const Bytes& request, const Bytes& data, int retries) {
        Bytes reply = heads_.at(next_++);
        reply.insert(reply.end(), data.begin(), data.end());
        const std::string length = std::to_string(data.size() + 7);
        text_ += "Sent:" + decimals(sealed(request));
        line("Expecting: " + length + " Bytes. Received " + length + " ");
        text_ += "Received:" + decimals(sealed(reply));
        line("Retries: " + std::to_string(retries) + " ");
    }
    [[nodiscard]] const std::string& text() const { return text_; }

 private:
    std::vector<Bytes> heads_;
    std::size_t next_ = 0;
    std::string text_;
};

std::uint8_t high(int word) { return static_cast<std::uint8_t>(word / 256); }
std::uint8_t low(int word) { return static_cast<std::uint8_t>(word % 256); }

}  // namespace

TEST(UploadLog, OfASmallProgramByteForByte) {
    TransferRig rig;
    rig.controller.load(smallProgram());
    std::vector<Bytes> heads;
    rig.controller.onTrace = [&](const SimTrace& trace) {
        if (trace.answer.size() > 30 || trace.answer.size() == 27)
            heads.emplace_back(trace.answer.begin(), trace.answer.begin() + 5);
    };
    // Poll, version, poll, the first read; the second one is lost once.
    rig.controller.play(SimFaultPlan::at("silence", 5));
    rig.runUpload();
    ASSERT_TRUE(rig.upload.outcome().complete);
    heads.erase(heads.begin());  // the version's

    ExpectedLog expected(heads);
    expected.heading("--------------------------------------BLOCKS---------------------------------------------");
    for (int offset = 0; offset <= 6900; offset += 150) {
        expected.line("Offset: " + std::to_string(offset) + " ");
        expected.exchange({4, 4, 150, high(offset), low(offset)}, tableAt(offset), offset == 150 ? 1 : 0);
        expected.line(" ");
    }
    expected.heading("--------------------------------------CONSTANTS------------------------------------------");
    expected.exchange({4, 3, 128, 0, 0}, firstConstants(), 0);
    for (int block = 0; block <= 704; ++block) {
        expected.line("Block:  " + std::to_string(block) + " ");
        // One constant of block 4 and twenty of block 10: the 32nd is in block 11.
        if (block != 11) continue;
        expected.line("C_offset:  128 ");
        expected.exchange({4, 3, 128, 0, 128}, secondConstants(), 0);
    }
    expected.heading("--------------------------------------STRING PARAMS--------------------------------------");
    for (int offset = 22528; offset <= 24568; offset += 20) {
        expected.line("Offset:  " + std::to_string(offset) + " ");
        expected.exchange({4, 3, 20, high(offset), low(offset)}, stringsAt(offset), 0);
        expected.line(" ");
    }
    EXPECT_EQ(bytesOfFile(rig.folder.file("QRVUploadLog.txt")), expected.text());

    db1& db = rig.bench.db;
    db.ConstantSeek(4, 0);
    EXPECT_EQ(db.ConstantValue(), 1250000);
    db.ConstantSeek(10, 0);
    EXPECT_EQ(db.ConstantValue(), 4);
    db.ConstantSeek(11, 11);  // the 33rd
    EXPECT_EQ(db.ConstantValue(), -2);
    db.ParmstrSeek(10, 2);
    EXPECT_EQ(db.ParmstrStr(), "DAY");
}

}  // namespace qrv::test
