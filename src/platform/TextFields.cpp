#include "platform/TextFields.h"

#include <algorithm>

#include "platform/CodePage.h"

namespace qrv {

namespace {

void dropLeadingBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
}

/// Takes what stands before `mark` and the mark itself off the text's front.
std::string_view takeUpTo(std::string_view& text, char mark) {
    const std::string_view taken = text.substr(0, text.find(mark));
    text.remove_prefix(std::min(taken.size() + 1, text.size()));
    return taken;
}

}  // namespace

std::string writtenLine(std::initializer_list<WrittenField> fields) {
    std::string line;
    for (const WrittenField& field : fields) {
        if (!line.empty()) line += ',';
        line += field.inFile();
    }
    return line + "\r\n";
}

std::vector<std::string> fieldsOf(std::string_view line) {
    std::vector<std::string> fields;
    bool goesOn = true;
    while (goesOn) {
        dropLeadingBlanks(line);
        std::string field;
        if (line.starts_with('"')) {
            line.remove_prefix(1);
            field = takeUpTo(line, '"');
            goesOn = line.find(',') != std::string_view::npos;
            takeUpTo(line, ',');
        } else {
            goesOn = line.find(',') != std::string_view::npos;
            field = trimmed(takeUpTo(line, ','));
        }
        fields.push_back(field);
    }
    return fields;
}

}  // namespace qrv
