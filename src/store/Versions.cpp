#include "store/Versions.h"

#include <sqlite3.h>

namespace qrv {

std::string programVersion() { return QRV_VERSION; }

std::string catalogueLine(const std::string& catalogueVersion) { return "Function catalogue " + catalogueVersion; }

std::string engineLine() { return std::string("SQLite ") + sqlite3_libversion(); }

std::string versionLines(const std::string& program, const std::string& catalogueVersion) {
    return program + " " + programVersion() + "\n" + catalogueLine(catalogueVersion) + "\n" + engineLine();
}

}  // namespace qrv
