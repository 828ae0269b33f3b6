// Runs the built `qrv` as a user's shell would and keeps what it wrote. Its input is never a terminal.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "twins/TemporaryFolder.h"

namespace qrv {

inline std::string bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

inline void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

struct ProgramRun {
    int exitCode = -1;
    std::string out;
    std::string err;
};

/// Whoever runs the tests with hang-ups ignored would pass that on to the program, which keeps to it.
class HangUpsTaken {
 public:
    HangUpsTaken() = default;
    ~HangUpsTaken() { static_cast<void>(std::signal(SIGHUP, former_)); }
    HangUpsTaken(const HangUpsTaken&) = delete;
    HangUpsTaken& operator=(const HangUpsTaken&) = delete;

 private:
    void (*former_)(int) = std::signal(SIGHUP, SIG_DFL);
};

/// A pipe whose reader has gone away, as the output of a program. It is to be a test's first: a shell redirects to
/// descriptors of one digit only.
class PipeNobodyReads {
 public:
    PipeNobodyReads() {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        ::close(ends[0]);
        output_ = ends[1];
        EXPECT_LE(output_, 9);
    }
    ~PipeNobodyReads() { ::close(output_); }
    PipeNobodyReads(const PipeNobodyReads&) = delete;
    PipeNobodyReads& operator=(const PipeNobodyReads&) = delete;

    [[nodiscard]] std::string redirection() const { return " >&" + std::to_string(output_); }

 private:
    int output_ = -1;
};

class QrvProgram {
 public:
    /// Settings, logs and copies are the test's own, whatever the user of this machine has.
    /// @param arguments  as a shell takes them, redirections included; the current folder is the test's own
    /// @param before  assignments, or words, before the program's name
    [[nodiscard]] ProgramRun run(const std::string& arguments, const std::string& before = "") const {
        std::string command = "cd " + quotedForShell(folder.path()) + " && unset QRV_SETTINGS && export";
        for (const char* place : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "TEMP"}) {
            command += std::string(" ") + place + "=" + quotedForShell(folder.path());
        }
        // The arguments come last, so that a redirection of theirs counts.
        command += " && " + before + " " + quotedForShell(program) + " </dev/null >.out 2>.err " + arguments;
        const int status = std::system(("sh -c " + quotedForShell(command)).c_str());
        return {.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
                .out = bytesOf(folder.file(".out")),
                .err = bytesOf(folder.file(".err"))};
    }
    /// With a command of the shell's, the program being $pid in it, as soon as a test of the shell's holds. Both stand
    /// in the test's folder.
    [[nodiscard]] ProgramRun runMeanwhile(const std::string& arguments, const std::string& when,
                                          const std::string& command) const {
        // In the background the program has the shell's place, so that a signal reaches it.
        return run(arguments + " & pid=$!; cd " + quotedForShell(folder.path()) + "; for i in $(seq 600); do { " +
                       when + "; } 2>/dev/null && break; sleep 0.05; done; " + command + "; wait $pid 2>/dev/null",
                   "exec");
    }
    [[nodiscard]] std::string path(const std::string& name) const { return folder.file(name); }

    /// From now on a copy in a folder of its own is run, so that its work files are nobody else's.
    void moveToOwnFolder() {
        const std::filesystem::path built = program;
        std::filesystem::create_directory(folder.file("bin"));
        for (const std::filesystem::path& file : {built, built.parent_path() / "QRVDATA.DAT"}) {
            std::filesystem::copy_file(file, folder.file("bin") / file.filename());
        }
        program = folder.file("bin/qrv");
    }
    /// After moveToOwnFolder: what lies beside the program and its catalogue.
    [[nodiscard]] std::vector<std::string> workFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.file("bin"))) {
            const std::string name = entry.path().filename().string();
            if (name != "qrv" && name != "QRVDATA.DAT") names.push_back(name);
        }
        return names;
    }

    TemporaryFolder folder;
    std::string program = QRV_PROGRAM;

 private:
    static std::string quotedForShell(const std::string& text) {
        std::string quoted = "'";
        for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
        return quoted + "'";
    }
};

}  // namespace qrv
