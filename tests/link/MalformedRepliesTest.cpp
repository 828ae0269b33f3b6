// A hundred thousand replies that no controller should give: each is taken exactly when its last two bytes are the
// complement of the sum of those before, and nothing else counts.
#include <gtest/gtest.h>

#include <random>

#include "LinkRig.h"

namespace qrv::test {
namespace {

using namespace std::chrono_literals;

enum class Verdicts { Taken, Refused, Overflow };

/// What is to become of a reply, worked out apart from the code under test: sum and checksum together are 65535.
Verdicts wanted(const Bytes& reply) {
    if (reply.size() < 3) return Verdicts::Refused;
    unsigned long sum = 0;
    for (std::size_t i = 0; i + 2 < reply.size(); ++i) sum += reply[i];
    if (sum > 32767) return Verdicts::Overflow;
    const unsigned long checksum = reply[reply.size() - 2] * 256UL + reply[reply.size() - 1];
    return sum + checksum == 65535 ? Verdicts::Taken : Verdicts::Refused;
}

struct Request {
    const char* name;
    Bytes frame;
    std::size_t replyLength;
};

void PrintTo(const Request& request, std::ostream* out) { *out << request.name; }

const std::vector<Request> kRequests{
    {"poll", {0x01, 0xFF, 0xFE}, 5},
    {"write", {0x02, 0x0D, 0x02, 0x03, 0x08, 0x12, 0x34, 0xFF, 0x9D}, 5},
    {"version", {0x04, 0x00, 0x18, 0x00, 0x00, 0xFF, 0xE3}, 31},
    {"string", {0x04, 0x03, 0x14, 0x58, 0x00, 0xFF, 0x8C}, 27},
    {"constants", {0x04, 0x03, 0x80, 0x00, 0x80, 0xFE, 0xF8}, 135},
    {"blockTable", {0x04, 0x04, 0x96, 0x00, 0x00, 0xFF, 0x61}, 157},
    {"registers", {0x04, 0x0D, 0xC0, 0x00, 0x08, 0xFF, 0x26}, 199},
    {"commit", {0x08, 0xFF, 0xF7}, 5},
    {"output", {0x20, 0x00, 0x04, 0xFF, 0xDB}, 5},
    {"key", {0x21, 0x41, 0xFF, 0x9D}, 5},
    {"activateMenus", {0x1F, 0xFF, 0xE0}, 5},
    {"activateCharts", {0x25, 0xFF, 0xDA}, 5},
    {"activateUnits", {0x27, 0xFF, 0xD8}, 5},
    {"activateModbus", {0x28, 0xFF, 0xD7}, 5},
    {"announce", {0x30, 0xFF, 0xCF}, 5},
};

class Trial {
 public:
    explicit Trial(const Request& request) : request_(request) {
        rig_.opened();
        // One attempt: what a bad reply draws is another test's matter.
        rig_.bench.xfer_abort = true;
    }

    /// Answers the request with `reply`, its bytes `apart` from one another, and checks what becomes of it.
    void run(const Bytes& reply, milliseconds apart = 0ms) {
        ++replies;
        rig_.line.onWrite = [&](const Bytes&) {
            if (apart == 0ms) return rig_.line.send(reply);
            for (std::size_t i = 0; i < reply.size(); ++i) {
                rig_.line.send({reply[i]}, static_cast<int>(i + 1) * apart);
            }
        };
        rig_.bench.xmit_bfr = request_.frame;
        Verdicts came = Verdicts::Overflow;
        try {
            rig_.comm.send_and_get(static_cast<std::int16_t>(request_.frame.size()),
                                   static_cast<std::int16_t>(request_.replyLength));
            came = rig_.bench.xfer_ok ? Verdicts::Taken : Verdicts::Refused;
        } catch (const RunTimeError& error) {
            ASSERT_EQ(error.number(), ErrorNumber::Overflow);
        }
        const Bytes arrived = apart == 0ms ? reply : arrivedInTime(reply, apart);
        ASSERT_EQ(came, wanted(arrived)) << request_.name << ", reply " << testing::PrintToString(arrived);
        ASSERT_EQ(rig_.bench.rcv_bfr, arrived) << request_.name;
        ASSERT_EQ(rig_.bench.xfer_ok, came == Verdicts::Taken);
        drainLine();
    }

    std::size_t replies = 0;

 private:
    /// A wait ends with the byte that completes the reply, or after 1.8 s.
    [[nodiscard]] Bytes arrivedInTime(const Bytes& reply, milliseconds apart) const {
        const auto inTime = static_cast<std::size_t>(1800ms / apart);
        const std::size_t count = std::min({reply.size(), inTime, request_.replyLength});
        return {reply.begin(), reply.begin() + static_cast<std::ptrdiff_t>(count)};
    }
    void drainLine() {
        while (const auto next = rig_.line.nextArrival()) rig_.clock.advanceTo(*next);
        rig_.line.discardInput();
    }

    const Request& request_;
    LineRig rig_;
};

class MalformedRepliesTest : public testing::TestWithParam<Request> {
 protected:
    MalformedRepliesTest() : trial(GetParam()) {
        good = Bytes(GetParam().replyLength - 2);
        for (std::size_t i = 0; i < good.size(); ++i) good[i] = static_cast<std::uint8_t>(i * 7 % 160);
        good[0] = 16;
        good = sealed(good);
    }

    Trial trial;
    Bytes good;
};

TEST_P(MalformedRepliesTest, OfEveryLength) {
    for (std::size_t length = 0; length <= GetParam().replyLength + 300; ++length) {
        Bytes reply(length);
        for (std::size_t i = 0; i < length; ++i) reply[i] = i < good.size() ? good[i] : static_cast<std::uint8_t>(i);
        trial.run(reply);
        trial.run(Bytes(length, 0));
        // The same body with its own checksum is taken, whatever its length.
        if (length >= 3) trial.run(sealed(Bytes(reply.begin(), reply.end() - 2)));
    }
}

TEST_P(MalformedRepliesTest, WithEverySingleBitFlipped) {
    for (std::size_t byte = 0; byte < good.size(); ++byte) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            Bytes reply = good;
            reply[byte] = static_cast<std::uint8_t>(reply[byte] ^ (1U << bit));
            ASSERT_EQ(wanted(reply), Verdicts::Refused);
            trial.run(reply);
        }
    }
}

TEST_P(MalformedRepliesTest, WithChecksumsOfZerosAndOnes) {
    for (const std::uint8_t fill : {std::uint8_t{0x00}, std::uint8_t{0xFF}}) {
        Bytes reply = good;
        reply[reply.size() - 2] = reply[reply.size() - 1] = fill;
        trial.run(reply);
        trial.run(Bytes(good.size(), fill));
    }
}

TEST_P(MalformedRepliesTest, WithEveryStatusByte) {
    for (int status = 0; status < 256; ++status) {
        Bytes reply(good.begin(), good.end() - 2);
        reply[0] = static_cast<std::uint8_t>(status);
        trial.run(sealed(reply));
    }
}

TEST_P(MalformedRepliesTest, ThatAreTheRequestItself) { trial.run(GetParam().frame); }

TEST_P(MalformedRepliesTest, WithNoiseBefore) {
    for (std::size_t count = 1; count <= 40; ++count) {
        Bytes reply(count, static_cast<std::uint8_t>(count * 11));
        reply.insert(reply.end(), good.begin(), good.end());
        trial.run(reply);
    }
}

TEST_P(MalformedRepliesTest, ThatComeTwice) {
    Bytes reply = good;
    reply.insert(reply.end(), good.begin(), good.end());
    trial.run(reply);
}

TEST_P(MalformedRepliesTest, ThatAreAnotherCommands) {
    for (const Request& other : kRequests) trial.run(sealed(Bytes(other.replyLength - 2, 3)));
}

TEST_P(MalformedRepliesTest, OfAByteEveryTenthOfASecond) {
    trial.run(good, 100ms);
    Bytes longer = good;
    longer.push_back(0);
    trial.run(longer, 100ms);
}

TEST_P(MalformedRepliesTest, WithEveryValueInEveryPlace) {
    const std::size_t places = std::min<std::size_t>(good.size() - 2, 24);
    for (std::size_t place = 0; place < places; ++place) {
        for (int value = 0; value < 256; ++value) {
            Bytes reply = good;
            reply[place] = static_cast<std::uint8_t>(value);
            trial.run(reply);
        }
    }
}

TEST_P(MalformedRepliesTest, OfNoise) {
    std::mt19937 noise(20240731);
    RecordProperty("seed", 20240731);
    while (trial.replies < 3500) {
        Bytes reply(noise() % (GetParam().replyLength + 20));
        for (std::uint8_t& byte : reply) byte = static_cast<std::uint8_t>(noise());
        trial.run(reply);
        trial.run(sealed(reply));
    }
}

INSTANTIATE_TEST_SUITE_P(Requests, MalformedRepliesTest, testing::ValuesIn(kRequests),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace qrv::test
