// The program qrv_controller as its user meets it: started, spoken to over its pseudo-terminal, ended.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "link/sim/SimRig.h"
#include "platform/posix/PosixSerialPort.h"
#include "twins/TemporaryFolder.h"

namespace qrv::test {

namespace {

constexpr int kLongMilliseconds = 20000;

struct Pipe {
    Pipe() { EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0); }
    ~Pipe() {
        for (const int end : ends) ::close(end);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    /// The next line that is written into it, without its end.
    [[nodiscard]] std::string line() const {
        std::string text;
        pollfd end{.fd = ends[0], .events = POLLIN, .revents = 0};
        for (char c = 0; ::poll(&end, 1, kLongMilliseconds) == 1 && ::read(ends[0], &c, 1) == 1 && c != '\n';)
            text += c;
        return text;
    }
    std::array<int, 2> ends{-1, -1};
};

class Running {
 public:
    explicit Running(const std::vector<std::string>& options) {
        std::vector<std::string> words{QRV_CONTROLLER_PROGRAM};
        words.insert(words.end(), options.begin(), options.end());
        std::vector<char*> pointers;
        for (auto& word : words) pointers.push_back(word.data());
        pointers.push_back(nullptr);
        process_ = ::fork();
        if (process_ == 0) {
            ::dup2(output_.ends[1], STDOUT_FILENO);
            ::dup2(errors_.ends[1], STDERR_FILENO);
            ::execv(pointers[0], pointers.data());
            ::_exit(127);
        }
    }
    ~Running() {
        if (process_ > 0) (void)end(SIGKILL);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    /// The device, from the first line that it prints.
    [[nodiscard]] std::string device() {
        if (device_.empty()) device_ = output_.line().substr(std::string("Device ").size());
        return device_;
    }
    [[nodiscard]] std::string line() const { return output_.line(); }
    [[nodiscard]] std::string remark() const { return errors_.line(); }
    /// How it ended: its exit code, or minus the signal.
    int end(int signal) {
        ::kill(process_, signal);
        return ended();
    }
    int ended() {
        int status = 0;
        ::waitpid(process_, &status, 0);
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

 private:
    Pipe output_;
    Pipe errors_;
    pid_t process_ = -1;
    std::string device_;
};

class Tool {
 public:
    explicit Tool(std::string device) : port_([device](std::int16_t) { return device; }) {}
    [[nodiscard]] bool open() { return port_.open(1, "38400,O,8, 1"); }
    /// The controller learns of a tool's end a moment after it, as the next tool may.
    [[nodiscard]] bool openSoon() {
        for (int i = 0; i < kLongMilliseconds / 10 && !open(); ++i) ::poll(nullptr, 0, 10);
        return port_.isOpen();
    }
    void close() { port_.close(); }
    [[nodiscard]] SerialFault fault() const { return port_.fault(); }
    /// The reply as soon as it is `length` bytes long, or what there is when the line says no more.
    [[nodiscard]] Bytes ask(const Bytes& request, std::size_t length, int milliseconds = kLongMilliseconds) {
        port_.write(request);
        while (port_.waitingCount() < length && port_.descriptor() >= 0) {
            pollfd end{.fd = port_.descriptor(), .events = POLLIN, .revents = 0};
            if (::poll(&end, 1, milliseconds) != 1) break;
        }
        return port_.readAll();
    }
    [[nodiscard]] bool isAnswered() {
        const auto reply = ask(kPoll, 5);
        return reply.size() == 5 && hasGoodSum(reply) && reply[0] == 16;
    }

 private:
    PosixSerialPort port_;
};

class ControllerProgram : public testing::Test {
 protected:
    ControllerProgram() { ::setenv("QRV_SETTINGS", file("settings.ini").c_str(), 1); }
    ~ControllerProgram() override { ::unsetenv("QRV_SETTINGS"); }

    [[nodiscard]] std::string file(const char* name) const { return folder_.file(name); }
    [[nodiscard]] std::string settings() const {
        std::ostringstream text;
        text << std::ifstream(file("settings.ini")).rdbuf();
        return text.str();
    }

    TemporaryFolder folder_;
};

}  // namespace

TEST_F(ControllerProgram, AnswersOverItsDevice) {
    Running controller({"--version-text", "V4.40 TEST"});
    Tool tool(controller.device());
    ASSERT_TRUE(tool.open());
    EXPECT_TRUE(tool.isAnswered());
    const auto version = tool.ask({0x04, 0x00, 0x18, 0x00, 0x00, 0xFF, 0xE3}, 31);
    ASSERT_EQ(version.size(), 31U);
    EXPECT_EQ(std::string(version.begin() + 5, version.end() - 2), "V4.40 TEST              ");
    EXPECT_EQ(controller.end(SIGTERM), 0);
}

TEST_F(ControllerProgram, TellsItsDeviceInOneLineOfJson) {
    Running controller({"--json", "--map", "com7"});
    const auto line = controller.line();
    EXPECT_TRUE(line.starts_with(R"({"device":"/dev/)")) << line;
    EXPECT_TRUE(line.ends_with(R"(","port":"COM7","version":"V6.73 SIMULATED QRV     "})")) << line;
}

TEST_F(ControllerProgram, OutlivesFiftyToolsInARow) {
    Running controller({});
    for (int i = 0; i < 50; ++i) {
        Tool tool(controller.device());
        ASSERT_TRUE(tool.open()) << "tool " << i;
        ASSERT_TRUE(tool.isAnswered()) << "tool " << i;
    }
    Tool tool(controller.device());
    for (int i = 0; i < 50; ++i) {
        ASSERT_TRUE(tool.open());
        ASSERT_TRUE(tool.isAnswered()) << "opening " << i;
        tool.close();
    }
}

TEST_F(ControllerProgram, OutlivesAToolThatIsKilled) {
    Running controller({});
    const auto device = controller.device();
    for (int i = 0; i < 5; ++i) {
        const pid_t victim = ::fork();
        if (victim == 0) {
            Tool tool(device);
            ::_exit(tool.open() && tool.isAnswered() && ::raise(SIGKILL) == 0 ? 0 : 1);
        }
        int status = 0;
        ::waitpid(victim, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
        Tool tool(device);
        ASSERT_TRUE(tool.openSoon());
        ASSERT_TRUE(tool.isAnswered());
    }
}

TEST_F(ControllerProgram, KeepsWhatWasCommittedAndOnlyThat) {
    const Bytes kept(60, 0x41);
    const Bytes lost(60, 0x42);
    {
        Running controller({"--memory", file("memory")});
        Tool tool(controller.device());
        ASSERT_TRUE(tool.open());
        EXPECT_EQ(tool.ask(writeFrame(14, 0, kept), 5).size(), 5U);
        EXPECT_EQ(tool.ask({0x08, 0xFF, 0xF7}, 5).size(), 5U);
        EXPECT_EQ(tool.ask(writeFrame(14, 0, lost), 5).size(), 5U);
        EXPECT_EQ(controller.end(SIGINT), 0);
    }
    Running controller({"--memory", file("memory")});
    Tool tool(controller.device());
    ASSERT_TRUE(tool.open());
    const auto reply = tool.ask(readFrame(14, 0, 60), 67);
    ASSERT_EQ(reply.size(), 67U);
    EXPECT_EQ(Bytes(reply.begin() + 5, reply.end() - 2), kept);
}

TEST_F(ControllerProgram, LeavesAFileAloneThatIsNoMemory) {
    std::ofstream(file("letter")) << "Dear friend";
    Running controller({"--memory", file("letter")});
    EXPECT_EQ(controller.remark(),
              "qrv_controller: " + file("letter") + " is no memory of a controller, or is damaged");
    EXPECT_EQ(controller.ended(), 1);
    std::string text;
    std::getline(std::ifstream(file("letter")) >> std::ws, text);
    EXPECT_EQ(text, "Dear friend");
}

TEST_F(ControllerProgram, MapsItsDeviceWhileItRuns) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        Running controller({"--map", "COM7"});
        const auto device = controller.device();
        EXPECT_EQ(controller.line(), "Port COM7");
        EXPECT_NE(settings().find("COM7=" + device + "\n"), std::string::npos) << settings();
        EXPECT_EQ(controller.end(signal), 0);
        EXPECT_EQ(settings().find("COM7"), std::string::npos) << settings();
    }
}

TEST_F(ControllerProgram, GivesTheNumberBackToTheDeviceThatHadIt) {
    std::ofstream(file("settings.ini")) << "[Serial Ports]\nCOM7=/dev/null\n";
    Running controller({"--map", "COM7"});
    const auto device = controller.device();
    EXPECT_EQ(controller.line(), "Port COM7");
    EXPECT_NE(settings().find("COM7=" + device + "\n"), std::string::npos);
    EXPECT_EQ(controller.end(SIGTERM), 0);
    EXPECT_NE(settings().find("COM7=/dev/null\n"), std::string::npos);
}

TEST_F(ControllerProgram, SaysWhatItRefuses) {
    Running controller({});
    Tool tool(controller.device());
    ASSERT_TRUE(tool.open());
    (void)tool.ask(readFrame(1, 0, 50), 57, 0);
    EXPECT_EQ(controller.remark(), "refused read: section 1, offset 0, 50 bytes: the section is never read");
}

TEST_F(ControllerProgram, PlaysAFaultAtTheRequestItIsTold) {
    Running controller({"--fault", "wrong-status:2"});
    Tool tool(controller.device());
    ASSERT_TRUE(tool.open());
    EXPECT_TRUE(tool.isAnswered());
    EXPECT_FALSE(tool.isAnswered());
    EXPECT_TRUE(tool.isAnswered());
}

TEST_F(ControllerProgram, AHangUpTakesTheDeviceAwayAndTheMappingWithIt) {
    Running controller({"--fault", "hang-up:2", "--map", "COM7", "--quiet"});
    Tool tool(controller.device());
    ASSERT_TRUE(tool.open());
    EXPECT_TRUE(tool.isAnswered());
    EXPECT_TRUE(tool.ask(kPoll, 5).empty());
    EXPECT_EQ(tool.fault(), SerialFault::Unplugged);
    EXPECT_EQ(controller.ended(), 3);
    EXPECT_EQ(settings().find("COM7"), std::string::npos);
}

TEST_F(ControllerProgram, APacedAnswerComesWhole) {
    Running controller({"--pace", "38400", "--turnaround", "3"});
    Tool tool(controller.device());
    ASSERT_TRUE(tool.open());
    EXPECT_TRUE(hasGoodSum(tool.ask(readFrame(4, 0, 150), 157)));
}

TEST_F(ControllerProgram, RefusesOptionsThatMeanNothing) {
    for (const auto& options : std::vector<std::vector<std::string>>{{"--fault", "noise"},
                                                                     {"--map", "LPT1"},
                                                                     {"--map", "COM100"},
                                                                     {"--pace", "0"},
                                                                     {"--version-text", std::string(25, 'V')},
                                                                     {"--nothing"}}) {
        EXPECT_EQ(Running(options).ended(), 2) << options.front();
    }
}

}  // namespace qrv::test
