// Which window belongs to which form: told to the desktop's host once, at the start of the program or of a test.
#pragma once

#include "shell/Form3View.h"

namespace qrv {

class DesktopHost;
struct Workbench;

void addAllViews(DesktopHost& host, Workbench& bench, Extras extras);

}  // namespace qrv
