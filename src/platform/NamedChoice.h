// A check box with its control's name, for those that are chosen among in a fixed order: the form gives them, its
// window shows them.
#pragma once

#include "platform/Controls.h"

namespace qrv {

struct NamedChoice {
    const char* name;
    Choice* box;
};

}  // namespace qrv
