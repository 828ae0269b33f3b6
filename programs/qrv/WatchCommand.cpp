// Block outputs of a running controller, row upon row, until enough of them have come or the user presses Ctrl+C.
#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "Commands.h"
#include "LinkSession.h"
#include "Session.h"
#include "Terminal.h"
#include "link/LiveOutputs.h"
#include "platform/CodePage.h"
#include "platform/EventPump.h"
#include "platform/SerialPort.h"
#include "platform/UtcText.h"
#include "platform/posix/HeldSignals.h"

namespace qrv {

namespace {

/// A column of the table.
struct Watched {
    std::int16_t block = 0;
    OutputKind kind = OutputKind::Analog;
    std::string name;  ///< its function's, code page 1252
};

std::string withoutBlanksBehind(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

/// What the file says of the blocks. Ends the command for a block that has no output.
std::vector<Watched> watchedOf(Terminal& terminal, const WatchOptions& options) {
    // The session has a work file, and goes before this does.
    const HeldSignals held;
    Session session(terminal);
    session.file().open(options.file);
    std::vector<Watched> found;
    for (const std::int16_t block : options.blocks) {
        const bool isUsed = session.bench().FnOfBlock.at(static_cast<std::size_t>(block)) != kNop;
        const auto kind = isUsed ? outputKindOf(session.bench(), block) : std::nullopt;
        if (!kind) {
            throw CommandFailure(ExitCode::Findings, "Block " + std::to_string(block) + " is empty and has no output.");
        }
        found.push_back({.block = block, .kind = *kind, .name = withoutBlanksBehind(session.bench().db.FuncName())});
    }
    session.file().close();
    return found;
}

/// Where the rows go: each is handed over whole as soon as it is there.
class RowSink {
 public:
    RowSink(Terminal& terminal, const WatchOptions& options) : terminal_(terminal), path_(options.csv) {
        if (path_.empty()) return;
        checkOutput(path_, options.force ? Overwrite::Allow : Overwrite::Refuse);
        file_.open(path_, std::ios::binary | std::ios::trunc);
        failUnlessGood();
    }

    /// False where nobody reads the rows any more.
    [[nodiscard]] bool put(const std::string& row) {
        if (path_.empty()) {
            terminal_.write(row + "\n");
            return terminal_.flush();
        }
        file_ << row << '\n' << std::flush;
        failUnlessGood();
        return true;
    }

 private:
    void failUnlessGood() const {
        if (!file_) throw CommandFailure(ExitCode::File, path_ + " can't be written.");
    }

    Terminal& terminal_;
    std::string path_;
    std::ofstream file_;
};

/// A field of a row; in quotes where it must be.
std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char character : text) quoted += character == '"' ? "\"\"" : std::string(1, character);
    return quoted + "\"";
}

std::string headerOf(const std::vector<Watched>& columns) {
    std::string row = "time";
    for (const Watched& column : columns) {
        const char* kind = column.kind == OutputKind::Analog ? "analog" : "discrete";
        row += "," + csvField("block " + std::to_string(column.block) + " " + toUtf8(column.name) + " " + kind);
    }
    return row;
}

class Watch {
 public:
    Watch(Terminal& terminal, const WatchOptions& options, std::vector<Watched> columns)
        : terminal_(terminal),
          options_(options),
          columns_(std::move(columns)),
          session_(terminal, options.line),
          outputs_(session_.bench(), session_.comm()),
          isSilent_(columns_.size()) {}

    void run() {
        if (!connected()) return;
        RowSink sink(terminal_, options_);
        if (!sink.put(headerOf(columns_))) return;
        const Clock& clock = session_.bench().platform.clock;
        auto due = clock.now();
        for (int rows = 0; options_.count == 0 || rows < options_.count; ++rows) {
            waitUntil(due);
            const std::string row = nextRow();
            // A row that Ctrl+C cut short is none.
            if (isCancelled() || !sink.put(row)) return;
            // A row that took longer than the interval is followed by the next at once, and none is made up for.
            due = std::max(due + std::chrono::milliseconds(options_.interval), clock.now());
        }
    }

 private:
    [[nodiscard]] bool isCancelled() const { return session_.isCancelled(); }

    /// False after Ctrl+C, which ends a watch as it should be ended, wherever it comes.
    bool connected() {
        try {
            session_.connect();
        } catch (const CommandFailure& failure) {
            if (failure.code() != ExitCode::Cancelled) throw;
        }
        return !isCancelled();
    }

    void waitUntil(Clock::TimePoint due) {
        const Platform& platform = session_.bench().platform;
        while (!isCancelled() && platform.clock.now() < due) platform.eventPump.pumpUntil(due, nullptr);
    }

    std::string nextRow() {
        std::string row = utcText(session_.bench().platform.clock.wallTime());
        for (std::size_t i = 0; i < columns_.size() && !isCancelled(); ++i) row += "," + fieldOf(i);
        return row;
    }

    /// Empty where no answer came.
    std::string fieldOf(std::size_t column) {
        const Watched& watched = columns_[column];
        const auto text = outputs_.text(watched.block, watched.kind);
        const SerialPort& port = session_.bench().platform.serialPort;
        if (!text && port.fault() == SerialFault::Unplugged) {
            throw CommandFailure(ExitCode::Link, port.faultText());
        }
        if (!text && !isSilent_[column] && !isCancelled()) {
            terminal_.say("Block " + std::to_string(watched.block) + ": no answer.");
        }
        isSilent_[column] = !text;
        return text.value_or("");
    }

    Terminal& terminal_;
    const WatchOptions& options_;
    std::vector<Watched> columns_;
    LinkSession session_;
    LiveOutputs outputs_;
    std::vector<bool> isSilent_;
};

}  // namespace

void watch(Terminal& terminal, const WatchOptions& options) {
    Watch(terminal, options, watchedOf(terminal, options)).run();
}

}  // namespace qrv
