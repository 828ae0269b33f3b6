// The examples of docs/protocol.md, sent to the simulated controller: a page that others write a controller from must
// not be wrong by a byte.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "link/sim/SimRig.h"

namespace qrv::test {

namespace {

struct Line {
    int number;
    bool isRequest;
    Bytes bytes;
};

/// "01 20*3" gives 01 20 20 20.
Bytes bytesOf(const std::string& text) {
    Bytes bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const auto star = word.find('*');
        const auto count = star == std::string::npos ? 1UL : std::stoul(word.substr(star + 1));
        bytes.insert(bytes.end(), count, static_cast<std::uint8_t>(std::stoul(word.substr(0, star), nullptr, 16)));
    }
    return bytes;
}

std::vector<Line> examplesOfThePage() {
    std::ifstream page(QRV_PROTOCOL_PAGE);
    std::vector<Line> lines;
    int number = 0;
    bool isExample = false;
    for (std::string text; std::getline(page, text);) {
        ++number;
        if (text == "```") isExample = !isExample;
        const bool isRequest = text.starts_with("> ");
        if (!isExample || !(isRequest || text.starts_with("< "))) continue;
        lines.push_back({.number = number, .isRequest = isRequest, .bytes = bytesOf(text.substr(2))});
    }
    return lines;
}

}  // namespace

TEST(ProtocolPage, EveryExampleHasAGoodChecksum) {
    const auto examples = examplesOfThePage();
    ASSERT_GT(examples.size(), 50U);
    for (const auto& line : examples) EXPECT_TRUE(hasGoodSum(line.bytes)) << "line " << line.number;
}

TEST(ProtocolPage, TheControllerTakesEveryRequestAndFindsEverySectionSound) {
    SimRig rig;
    Bytes answer;
    for (const auto& line : examplesOfThePage()) {
        SCOPED_TRACE("line " + std::to_string(line.number));
        if (line.isRequest) {
            answer = rig.send(line.bytes);
            EXPECT_FALSE(answer.empty());
            rig.pass(std::chrono::seconds{1});
        } else if (answer.size() == 5) {
            ASSERT_EQ(line.bytes.size(), 5U);
            EXPECT_EQ(line.bytes[0], answer[0]);
        } else {
            // The first five bytes mean nothing, and the checksum follows from them.
            ASSERT_EQ(line.bytes.size(), answer.size());
            EXPECT_EQ(Bytes(line.bytes.begin() + 5, line.bytes.end() - 2), Bytes(answer.begin() + 5, answer.end() - 2));
        }
    }
    EXPECT_EQ(rig.controller.counters().refused, 0U);
    EXPECT_EQ(rig.controller.counters().badSeals, 0U);
    EXPECT_TRUE(rig.remarks.empty()) << rig.remarks.front();
}

TEST(ProtocolPage, ShowsEveryCommandAndEverySection) {
    std::set<int> commands;
    std::set<int> sections;
    for (const auto& line : examplesOfThePage()) {
        if (!line.isRequest) continue;
        commands.insert(line.bytes[0]);
        if (line.bytes[0] == 2 || line.bytes[0] == 4) sections.insert(line.bytes[1]);
    }
    EXPECT_EQ(commands, (std::set<int>{1, 2, 4, 8, 31, 32, 33, 37, 39, 40, 48}));
    EXPECT_EQ(sections, (std::set<int>{0, 1, 3, 4, 6, 9, 10, 11, 12, 13, 14}));
}

}  // namespace qrv::test
