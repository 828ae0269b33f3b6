#include "store/Workbench.h"

#include <utility>

namespace qrv {

Workbench::Workbench(const Platform& services, ProgramPlaces programPlaces)
    : platform(services), places(std::move(programPlaces)), db(services.messageBox) {
    FnOfBlock.fill(kNop);
}

}  // namespace qrv
