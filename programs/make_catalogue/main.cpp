// Makes what the build wants of the function catalogue's text: the tool's data file, the pages that a terminal shows
// and the document. A text that breaks a rule is refused, with file, row and rule of each fault.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>

#include "platform/Files.h"
#include "store/CatalogueRules.h"
#include "store/CatalogueText.h"
#include "store/CatalogueWriter.h"
#include "store/FunctionPage.h"

namespace {

constexpr int kBroken = 1;
constexpr int kNotWritten = 3;

struct Wanted {
    std::string folder;
    std::string data;
    std::string pages;
    std::string document;
};

/// Writes the file where one is wanted. False: it could not be written.
bool write(const std::string& path, const std::string& content) {
    if (path.empty()) return true;
    const qrv::FileResult fault = qrv::writeWholeAtOnce(path, content);
    if (fault) std::cerr << "make_catalogue: " << fault->text << "\n";
    return !fault;
}

int make(const Wanted& wanted) {
    const qrv::CheckedCatalogue catalogue = qrv::checkedCatalogue(wanted.folder);
    for (const qrv::CatalogueFault& fault : catalogue.faults) {
        std::cerr << qrv::faultLine(wanted.folder, fault) << "\n";
    }
    if (!catalogue.faults.empty()) return kBroken;
    const bool written = write(wanted.data, catalogueFile(catalogue.text)) &&
                         write(wanted.pages, renderedPages(catalogue.text)) &&
                         write(wanted.document, functionsDocument(catalogue.text));
    return written ? 0 : kNotWritten;
}

int start(int argc, char** argv) {
    CLI::App app{"Makes the function catalogue's files from its text.", "make_catalogue"};
    Wanted wanted;
    app.add_option("FOLDER", wanted.folder, "The folder of the catalogue's text")->required();
    app.add_option("--data", wanted.data, "Write the tool's data file");
    app.add_option("--pages", wanted.pages, "Write the pages for the terminal");
    app.add_option("--document", wanted.document, "Write the document");
    CLI11_PARSE(app, argc, argv);
    return make(wanted);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return start(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_catalogue: %s\n", error.what());
        return kNotWritten;
    }
}
