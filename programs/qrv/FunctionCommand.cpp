// The functions of the controller, as the catalogue defines them.
#include <optional>
#include <string>

#include "Commands.h"
#include "Terminal.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "store/FunctionPage.h"
#include "store/ProgramPlaces.h"

namespace qrv {

namespace {

constexpr std::size_t kMostPagesBytes = std::size_t{16} * 1024 * 1024;

std::string pagesBeside(const std::string& catalogueFolder) {
    const FileContent content = readWhole(joinedPath(catalogueFolder, kFunctionPagesFile), kMostPagesBytes);
    if (content.fault) throw CommandFailure(ExitCode::File, content.fault->text);
    return content.bytes;
}

}  // namespace

void showFunction(Terminal& terminal, const std::string& numberOrName) {
    const std::string pages = pagesBeside(findProgramPlaces().catalogue);
    if (numberOrName.empty()) {
        for (const std::string& heading : functionHeadings(pages)) terminal.write(heading + "\n");
        return;
    }
    const std::optional<std::string> page = functionPage(pages, numberOrName);
    if (!page) throw CommandFailure(ExitCode::Usage, "There is no function " + numberOrName + ".");
    terminal.write(*page);
}

}  // namespace qrv
