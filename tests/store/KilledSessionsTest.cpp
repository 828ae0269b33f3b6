// A thousand sessions of random edits and saves, each killed at a random moment: the user's file is always the last
// save that was told done, or the one under way, whole; and the next session goes on from it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <thread>

#include "platform/Files.h"
#include "platform/RunTimeError.h"
#include "store/LifeCycle.h"
#include "twins/Seed.h"
#include "twins/TemporaryFolder.h"
#include "twins/UnattendedBench.h"

namespace qrv {
namespace {

namespace fs = std::filesystem;

constexpr int kKills = 1000;
constexpr std::size_t kMostBytes = 64 * 1024 * 1024;
constexpr int kMostEdits = 40;

/// What a session tells the test through its pipe.
struct Message {
    enum class Kind : char { Opened, Saving, Saved, Failed } kind;
    std::uint64_t hash;  ///< of the work that is, or was, saved
};

/// When a session is killed: so long at most after it has told this, or after it was begun.
struct Moment {
    std::optional<Message::Kind> awaited;
    int mostMicroseconds;
};
constexpr std::array kMoments{
    Moment{std::nullopt, 20'000},         Moment{std::nullopt, 60'000},          Moment{Message::Kind::Opened, 20'000},
    Moment{Message::Kind::Saving, 5'000}, Moment{Message::Kind::Saving, 20'000}, Moment{Message::Kind::Saved, 20'000},
};

std::uint64_t hashOf(const std::string& path) {
    const FileContent content = readWhole(path, kMostBytes);
    return content.fault ? 0 : std::hash<std::string>{}(content.bytes);
}

/// One random change, as an editor makes them.
void edit(db1& db, std::mt19937& random) {
    const auto block = static_cast<std::int16_t>(1 + random() % 500);
    const std::string text = "text " + std::to_string(random());
    switch (random() % 5) {
        case 0:
            db.ConstantSeek(block, 0);
            if (db.ConstantNoMatch()) {
                db.ConstantAddNew();
                db.ConstantBlockNumber(block);
                db.ConstantOffset(0);
            } else {
                db.ConstantEdit();
            }
            db.ConstantValue(static_cast<std::int32_t>(random() % 30'000));
            db.ConstantUpdate();
            break;
        case 1:
            db.ConstantSeek(block, 0);
            if (!db.ConstantNoMatch()) db.ConstantDelete();
            break;
        case 2:
            db.BlockSeek(block);
            db.BlockEdit();
            db.BlockComment(std::string(random() % 300, 'c') + text);
            db.BlockUpdate();
            break;
        case 3:
            db.CommentEdit();
            db.CommentTitle(text);
            db.CommentUpdate();
            break;
        default:
            db.PollSeek(static_cast<std::int16_t>(1 + random() % 256));
            db.PollEdit();
            db.PollComments(text);
            db.PollUpdate();
    }
}

class Session {
 public:
    Session(const std::string& folder, std::string file, int report)
        : rig_(folder), file_(std::move(file)), report_(report) {}

    /// Edits and saves until it is killed.
    [[noreturn]] void run(std::uint32_t seed) {
        std::mt19937 random(seed);
        try {
            while (true) editAndSave(random);
        } catch (const RunTimeError& error) {
            static_cast<void>(std::fprintf(stderr, "%s\n", error.what()));
            tell(Message::Kind::Failed, 0);
        }
        ::_exit(1);
    }

 private:
    void tell(Message::Kind kind, std::uint64_t hash) const {
        const Message message{kind, hash};
        if (::write(report_, &message, sizeof message) != sizeof message) ::_exit(2);
    }

    void editAndSave(std::mt19937& random) {
        OpenConfiguration(rig_.bench, file_);
        tell(Message::Kind::Opened, hashOf(file_));
        for (auto edits = random() % kMostEdits; edits > 0; --edits) edit(rig_.bench.db, random);
        // From here on closing changes nothing in the work file: what is saved is what it holds now.
        rig_.bench.settle();
        const std::uint64_t work = hashOf(rig_.bench.WorkFileName);
        tell(Message::Kind::Saving, work);
        CloseConfiguration(rig_.bench, Answer::Yes);
        tell(Message::Kind::Saved, work);
    }

    UnattendedBench rig_;
    std::string file_;
    int report_;
};

/// What the user's file may be after a kill.
struct Known {
    std::uint64_t saved = 0;     ///< the last save that was told done
    std::uint64_t underWay = 0;  ///< one that had begun; 0 for none
    bool hasFailed = false;
    int saves = 0;
};

class KilledSessions : public testing::Test {
 protected:
    KilledSessions() {
        fs::create_directories(user_);
        UnattendedBench(folder_.path()).bench.db.create_new_database(file_);
        known_.saved = hashOf(file_);
    }

    /// Runs a session and kills it once it has told `awaited`, if anything, and the delay is over.
    void runAndKill(std::uint32_t seed, std::optional<Message::Kind> awaited, std::chrono::microseconds delay) {
        std::array<int, 2> ends{};
        ASSERT_EQ(::pipe(ends.data()), 0);
        const pid_t session = ::fork();
        ASSERT_GE(session, 0);
        if (session == 0) {
            ::close(ends[0]);
            Session(folder_.path(), file_, ends[1]).run(seed);
        }
        ::close(ends[1]);
        known_.underWay = 0;
        if (awaited) readUntil(ends[0], awaited);
        std::this_thread::sleep_for(delay);
        ::kill(session, SIGKILL);
        ::waitpid(session, nullptr, 0);
        readUntil(ends[0], std::nullopt);
        ::close(ends[0]);
    }

    /// Absent: the session is gone.
    std::optional<Message::Kind> readMessage(int end) {
        Message message{};
        if (::read(end, &message, sizeof message) != sizeof message) return std::nullopt;
        switch (message.kind) {
            case Message::Kind::Opened: EXPECT_EQ(message.hash, known_.saved); break;
            case Message::Kind::Saving: known_.underWay = message.hash; break;
            case Message::Kind::Saved:
                known_.saved = message.hash;
                known_.underWay = 0;
                ++known_.saves;
                break;
            case Message::Kind::Failed: known_.hasFailed = true; break;
        }
        return message.kind;
    }

    /// Reads on to the first message of this kind, or to the end.
    void readUntil(int end, std::optional<Message::Kind> awaited) {
        for (auto kind = readMessage(end); kind && kind != awaited;) kind = readMessage(end);
    }

    /// The user's file is one of the two; which of them is then known.
    void checkUsersFile() {
        const std::uint64_t now = hashOf(file_);
        ASSERT_TRUE(now != 0 && (now == known_.saved || now == known_.underWay)) << "a half-saved or lost file";
        known_.saved = now;
    }

    /// A kill may leave a work file, and a temporary beside the file that was being written; and nothing else.
    void clearLeftOvers() {
        for (const auto& entry : fs::recursive_directory_iterator(folder_.path())) {
            const std::string name = entry.path().filename();
            if (entry.is_directory() || entry.path() == file_) continue;
            const bool isWork = name.starts_with("QRM") && name.ends_with(".TMP");
            EXPECT_TRUE(isWork || (name.starts_with(".qrv") && name.ends_with(".tmp"))) << name << " is left";
            fs::remove(entry.path());
        }
    }

    TemporaryFolder folder_;
    std::string user_ = folder_.file("user");
    std::string file_ = user_ + "/plant.qrv";
    Known known_;
};

TEST_F(KilledSessions, LeaveTheLastSaveWholeAThousandTimes) {
    const std::uint32_t seed = seedOfRun();
    std::mt19937 random(seed);
    for (int i = 0; i < kKills && !HasFatalFailure() && !known_.hasFailed; ++i) {
        SCOPED_TRACE("kill " + std::to_string(i) + " of seed " + std::to_string(seed));
        const auto sessionSeed = static_cast<std::uint32_t>(random());
        const Moment& moment = kMoments[random() % kMoments.size()];
        const auto microseconds = static_cast<int>(random() % static_cast<unsigned>(moment.mostMicroseconds));
        runAndKill(sessionSeed, moment.awaited, std::chrono::microseconds(microseconds));
        checkUsersFile();
        clearLeftOvers();
    }
    EXPECT_FALSE(known_.hasFailed) << "a session could not open or save the file that a kill had left";
    EXPECT_GT(known_.saves, 0);
    std::printf("%d kills, %d saves told done\n", kKills, known_.saves);
    UnattendedBench last(folder_.path());
    OpenConfiguration(last.bench, file_);
}

}  // namespace
}  // namespace qrv
