// Any bytes as a configuration: it opens and can be read to its last row, or is refused with a RunTimeError.
#include <cstddef>

#include "fuzz/Specimen.h"
#include "platform/Files.h"
#include "platform/RunTimeError.h"
#include "platform/Unattended.h"
#include "store/ConfigurationContent.h"
#include "store/db1.h"
#include "twins/TemporaryFolder.h"

namespace {

constexpr std::size_t kMostBytes = 16 * 1024 * 1024;

std::string bytesOfNewFile(const std::string& path) {
    makeConfigurationFile(path, qrv::contentOfNewFile());
    return qrv::readWhole(path, kMostBytes).bytes;
}

void openAndRead(const std::string& path) {
    qrv::NoAnswerBox box;
    qrv::db1 db(box);
    static_cast<void>(db.TestVisioComments(path));
    db.open_existing_database(path);
    qrv::readAround(db);
    db.close_work_dbs();
    static_cast<void>(qrv::contentOfWorkFile(path));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const qrv::TemporaryFolder folder;
    static const std::string sound = bytesOfNewFile(folder.file("sound"));
    const std::string path = folder.file("work");
    qrv::putFile(path, qrv::specimenOf({data, size}, sound));
    qrv::ignoringErrors([&path] { openAndRead(path); });
    return 0;
}
