#include "shell/FunctionGuide.h"

#include "platform/Files.h"
#include "platform/Paths.h"
#include "store/FunctionPage.h"

namespace qrv {

namespace {

constexpr std::size_t kMostBytes = 16U << 20U;

}  // namespace

void FunctionGuide::read() {
    if (isRead_) return;
    isRead_ = true;
    pages_ = readWhole(joinedPath(folder_, kFunctionPagesFile), kMostBytes).bytes;
    for (const std::string& heading : functionHeadings(pages_)) {
        // "10 ADD  Sum of two"
        const std::size_t nameAt = heading.find(' ');
        const std::size_t titleAt = heading.find("  ");
        if (nameAt == std::string::npos || titleAt == std::string::npos || titleAt <= nameAt) continue;
        sentences_[heading.substr(nameAt + 1, titleAt - nameAt - 1)] = heading.substr(titleAt + 2);
    }
}

std::string FunctionGuide::sentenceOf(const std::string& name) {
    read();
    const auto found = sentences_.find(name);
    return found == sentences_.end() ? std::string{} : found->second;
}

std::string FunctionGuide::pageOf(const std::string& name) {
    read();
    return functionPage(pages_, name).value_or(std::string{});
}

}  // namespace qrv
