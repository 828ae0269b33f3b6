// A simulated controller behind a pseudo-terminal, for demonstrations, scripts and tests without the real thing.
#include <CLI/CLI.hpp>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ControllerServer.h"
#include "PortMapping.h"
#include "json/Json.h"
#include "link/sim/SimMemoryFile.h"
#include "link/sim/SimulatedController.h"
#include "platform/Clock.h"
#include "platform/FileSettings.h"
#include "platform/Folders.h"
#include "platform/HelpTexts.h"
#include "platform/posix/PseudoTerminal.h"
#include "store/Versions.h"

namespace qrv {
namespace {

constexpr int kEndedAsAsked = 0;
constexpr int kCouldNotStart = 1;
constexpr int kBadOptions = 2;
constexpr int kHungUp = 3;

struct Options {
    SimSetup setup;
    std::string memoryPath;
    std::string map;
    std::optional<unsigned> baud;
    bool hasParity = true;
    std::vector<std::string> faults;
    bool isQuiet = false;
    bool isJson = false;
};

std::string faultsText() {
    std::string text = "Faults, as NAME for ever, NAME:once, NAME:7, NAME:7+ or NAME:2%:\n";
    for (const auto& fault : kFaults) text += "  " + std::string(fault.name) + ": " + std::string(fault.what) + "\n";
    return text;
}

std::string footer() {
    std::string text = faultsText();
    text +=
        "\nExit codes:\n"
        "  0  ended by Ctrl+C or a request to end\n"
        "  1  could not start\n"
        "  2  the command line can't be understood\n"
        "  3  the simulated line hung up\n";
    text.append("\nEnvironment:\n").append(help::kSettingsEnvironment);
    return text.append("\nFiles:\n").append(help::kSettingsFiles);
}

void declare(CLI::App& app, Options& options, int& turnaround, int& lateBy) {
    auto& setup = options.setup;
    app.add_option("--version-text", setup.versionText, "Firmware text, 24 characters at most")
        ->type_name("TEXT")
        ->check([](const std::string& text) {
            return text.size() <= SimulatedController::kVersionLength ? std::string{} : std::string("too long");
        });
    app.add_option("--memory", options.memoryPath, "File that keeps what was committed")->type_name("FILE");
    app.add_option("--seed", setup.seed, "Seed of all that is left to chance")->type_name("NUMBER");
    app.add_flag("--moving", setup.isMoving, "Outputs move as those of a plant");
    app.add_option("--pace", options.baud, "Bytes need the time that they need at this baud rate")
        ->check(CLI::PositiveNumber)
        ->type_name("BAUD");
    app.add_flag_callback(
        "--no-parity", [&options] { options.hasParity = false; }, "With --pace: 10 bits a byte, not 11");
    app.add_option("--turnaround", turnaround, "Milliseconds from request to answer")
        ->check(CLI::Range(0, 60000))
        ->type_name("MS");
    app.add_option("--fault", options.faults, "A fault to play (see below); may be given again")
        ->type_name("NAME[:WHEN]")
        ->check([](const std::string& text) {
            return SimFaultPlan::parsed(text) ? std::string{} : "there is no fault \"" + text + "\"";
        });
    app.add_option("--late-by", lateBy, "Milliseconds that the fault \"late\" adds")
        ->check(CLI::Range(0, 600000))
        ->type_name("MS");
    app.add_option("--map", options.map, "Port name, COM1 to COM99, that stands for the device while this runs")
        ->type_name("COMn")
        ->check([](const std::string& name) {
            return PortMapping::numberOf(name) ? std::string{} : "there is no port \"" + name + "\"";
        });
    app.add_flag_callback(
        "--any-size", [&setup] { setup.strictness = SimStrictness::Sections; },
        "Any size and offset within a section is taken");
    app.add_flag("--quiet", options.isQuiet, "No word about refused requests");
    app.add_flag("--json", options.isJson, "Tell the device in one line of JSON");
    app.set_version_flag("--version", "qrv_controller " + programVersion(), "Print the version of the program");
    app.footer(footer());
}

/// Puts the committed memory in place. False: there is a file, and it is none of ours.
bool attachMemory(SimulatedController& controller, const std::string& path) {
    if (path.empty()) return true;
    const auto file = loadSimMemory(path);
    if (!file.fault.empty()) {
        std::cerr << "qrv_controller: " << file.fault << '\n';
        return false;
    }
    if (file.memory) controller.load(*file.memory);
    controller.onCommit = [path](const SimMemory& memory) {
        const auto fault = saveSimMemory(path, memory);
        if (!fault.empty()) std::cerr << "qrv_controller: the memory was not kept: " << fault << std::endl;
    };
    return true;
}

void announce(const Options& options, const PseudoTerminal& terminal, const SimulatedController& controller) {
    if (options.isJson) {
        Json line = Json::object({{"device", terminal.path()}});
        if (!options.map.empty()) line.add("port", "COM" + std::to_string(*PortMapping::numberOf(options.map)));
        line.add("version", controller.setup().versionText);
        std::cout << line.line() << std::endl;
        return;
    }
    std::cout << "Device " << terminal.path() << '\n';
    if (!options.map.empty()) std::cout << "Port COM" << *PortMapping::numberOf(options.map) << '\n';
    std::cout << std::flush;
}

int run(const Options& options) {
    SystemClock clock;
    SimulatedController controller(options.setup);
    if (options.baud) controller.setPace(SimPace{.baud = *options.baud, .bitsPerByte = options.hasParity ? 11U : 10U});
    for (const auto& text : options.faults) controller.play(*SimFaultPlan::parsed(text));
    if (!options.isQuiet) {
        controller.onRemark = [](std::string_view line) { std::cerr << line << std::endl; };
    }
    if (!attachMemory(controller, options.memoryPath)) return kCouldNotStart;

    PseudoTerminal terminal;
    ControllerServer server(controller, terminal, clock);
    FileSettings settings(settingsFile(systemEnvironment));
    std::optional<PortMapping> mapping;
    if (!options.map.empty()) {
        mapping.emplace(settings, *PortMapping::numberOf(options.map), terminal.path());
        if (settings.fault()) {
            std::cerr << "qrv_controller: " << settings.fault()->text << '\n';
            return kCouldNotStart;
        }
    }
    announce(options, terminal, controller);
    if (server.serve() == ControllerServer::End::Signal) return kEndedAsAsked;
    if (!options.isQuiet) std::cerr << "hung up" << std::endl;
    return kHungUp;
}

int start(int argc, char** argv) {
    CLI::App app{"A simulated controller behind a pseudo-terminal", "qrv_controller"};
    Options options;
    int turnaround = 0;
    int lateBy = static_cast<int>(options.setup.lateBy.count());
    declare(app, options, turnaround, lateBy);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kEndedAsAsked : kBadOptions;
    }
    options.setup.turnaround = std::chrono::milliseconds(turnaround);
    options.setup.lateBy = std::chrono::milliseconds(lateBy);
    return run(options);
}

}  // namespace
}  // namespace qrv

int main(int argc, char** argv) {
    try {
        return qrv::start(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "qrv_controller: %s\n", error.what());
        return qrv::kCouldNotStart;
    }
}
