// Any bytes as the function catalogue: it opens and can be read, or is refused with a RunTimeError.
#include <cstddef>

#include "fuzz/Specimen.h"
#include "platform/RunTimeError.h"
#include "platform/Unattended.h"
#include "store/CatalogueText.h"
#include "store/CatalogueWriter.h"
#include "store/db1.h"
#include "twins/TemporaryFolder.h"

namespace {

constexpr std::int16_t kFunctionsSought = 200;

void openAndRead(const std::string& folder) {
    qrv::NoAnswerBox box;
    qrv::db1 db(box);
    db.open_database(folder);
    db.FuncSetIndex("FN");
    for (std::int16_t fn = 0; fn < kFunctionsSought; ++fn) {
        db.FuncSeekI(fn);
        db.InputSeek(fn, 1);
        db.ParamSeek(fn, 1);
        db.AuxSeek(fn, "A", 1);
        if (fn % 50 == 0) qrv::readAround(db);
    }
    db.FuncSetIndex("Name");
    db.FuncSeekS("PID");
    qrv::readAround(db);
    db.close_database();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const qrv::TemporaryFolder folder;
    static const std::string sound = qrv::catalogueFile(qrv::readCatalogueText(QRV_CATALOGUE_TEXT).text);
    qrv::putFile(folder.file("QRVDATA.DAT"), qrv::specimenOf({data, size}, sound));
    qrv::ignoringErrors([] { openAndRead(folder.path()); });
    return 0;
}
