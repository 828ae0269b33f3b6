#include "shell/CommandLine.h"

namespace qrv {

std::string commandTail(std::span<const std::string> arguments) {
    std::string tail;
    for (const std::string& argument : arguments) {
        if (!tail.empty()) tail += ' ';
        const bool needsQuotes = argument.find(' ') != std::string::npos;
        tail += needsQuotes ? '"' + argument + '"' : argument;
    }
    return tail;
}

std::string FirstToken(std::string_view tail) {
    const auto start = tail.find_first_not_of(' ');
    if (start == std::string_view::npos) return {};
    tail.remove_prefix(start);
    if (!tail.starts_with('"')) return std::string(tail.substr(0, tail.find(' ')));
    tail.remove_prefix(1);
    return std::string(tail.substr(0, tail.find('"')));
}

}  // namespace qrv
