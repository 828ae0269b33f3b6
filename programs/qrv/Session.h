// What most commands begin with: a workbench on the terminal's services, with the function catalogue open.
#pragma once

#include "OpenFile.h"
#include "TerminalPlatform.h"
#include "store/Workbench.h"

namespace qrv {

class Session {
 public:
    explicit Session(Terminal& terminal)
        : platform_(terminal), bench_(platform_.services(), findProgramPlaces()), file_(bench_) {}

    [[nodiscard]] Workbench& bench() { return bench_; }
    [[nodiscard]] OpenFile& file() { return file_; }

 private:
    TerminalPlatform platform_;
    Workbench bench_;
    OpenFile file_;
};

}  // namespace qrv
