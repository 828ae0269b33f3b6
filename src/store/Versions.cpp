#include "store/Versions.h"

#include <sqlite3.h>

#include "platform/CodePage.h"
#include "platform/RunTimeError.h"
#include "platform/Unattended.h"
#include "store/ProgramPlaces.h"
#include "store/db1.h"

namespace qrv {

namespace {

std::string foundCatalogueVersion() {
    NoAnswerBox nobody;
    db1 db(nobody);
    try {
        db.open_database(findProgramPlaces().catalogue);
        return toUtf8(db.Version());
    } catch (const RunTimeError&) {
        return "none that can be used";
    }
}

}  // namespace

std::string programVersion() { return QRV_VERSION; }

std::string catalogueLine(const std::string& catalogueVersion) { return "Function catalogue " + catalogueVersion; }

std::string engineLine() { return std::string("SQLite ") + sqlite3_libversion(); }

std::string versionLines(const std::string& program, const std::string& catalogueVersion) {
    return program + " " + programVersion() + "\n" + catalogueLine(catalogueVersion) + "\n" + engineLine();
}

std::string foundVersions(const std::string& program) { return versionLines(program, foundCatalogueVersion()); }

}  // namespace qrv
