// Any text as a configuration's text form: it is refused, or makes a file that opens and whose own text form gives the
// same content again. The file, which takes most of the time, is made of every eighth text.
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string_view>

#include "fuzz/Specimen.h"
#include "platform/Unattended.h"
#include "store/CatalogueText.h"
#include "store/CatalogueWriter.h"
#include "store/ConfigurationContent.h"
#include "store/db1.h"
#include "tools/ContentNotes.h"
#include "tools/TextForm.h"
#include "twins/TemporaryFolder.h"

namespace {

struct Catalogue {
    Catalogue() {
        qrv::putFile(folder.file("QRVDATA.DAT"), catalogueFile(qrv::readCatalogueText(QRV_CATALOGUE_TEXT).text));
        db.open_database(folder.path());
    }
    qrv::TemporaryFolder folder;
    qrv::NoAnswerBox box;
    qrv::db1 db{box};
};

std::string textOf(const qrv::ConfigurationContent& content, Catalogue& catalogue) {
    qrv::ContentNotes notes(content, catalogue.db);
    return textFormOf(content, notes);
}

void require(bool holds, std::string_view claim) {
    if (holds) return;
    std::cerr << "not so: " << claim << "\n";
    std::abort();
}

bool isOneInEight(std::string_view text) { return std::hash<std::string_view>{}(text) % 8 == 0; }

/// The content as it comes back from a file.
qrv::ConfigurationContent throughFile(const qrv::ConfigurationContent& content, Catalogue& catalogue) {
    const std::string path = catalogue.folder.file("made.qrv");
    makeConfigurationFile(path, content);
    catalogue.db.open_existing_database(path);
    catalogue.db.close_work_dbs();
    return qrv::contentOfWorkFile(path);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Catalogue catalogue;
    const std::string_view given(reinterpret_cast<const char*>(data), size);
    const qrv::TextFormResult first = qrv::readTextForm(given, "given");
    require(first.content.has_value() == first.refusal.empty(), "a text gives a content or a refusal");
    if (!first.content) return 0;
    const std::string text = textOf(*first.content, catalogue);
    if (isOneInEight(given)) {
        const qrv::ConfigurationContent read = throughFile(*first.content, catalogue);
        require(textOf(read, catalogue) == text, "a file gives the text it was made from");
    }
    const qrv::TextFormResult second = qrv::readTextForm(text, "written");
    require(second.content.has_value(), "a written text can be read");
    require(textOf(*second.content, catalogue) == text, "a text read and written again is the same");
    return 0;
}
