#include "store/EngineVersion.h"

#include <sqlite3.h>

namespace qrv {

std::string engineVersion() { return sqlite3_libversion(); }

}  // namespace qrv
