#include "store/CatalogueText.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <span>
#include <sstream>

#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/TextFields.h"

namespace qrv {

namespace {

constexpr std::size_t kMostFileBytes = std::size_t{4} * 1024 * 1024;

std::optional<std::int32_t> numberIn(std::string_view cell) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), number);
    if (error != std::errc() || end != cell.data() + cell.size()) return std::nullopt;
    return number;
}

/// Takes the cells of one row in turn, and notes the first that is not what was asked for.
class Cells {
 public:
    Cells(std::vector<std::string> cells, std::span<const std::string_view> headings)
        : cells_(std::move(cells)), headings_(headings) {
        if (cells_.size() != headings_.size()) {
            fault_ = std::to_string(cells_.size()) + " cells where the heading has " + std::to_string(headings_.size());
        }
    }

    void take(std::string& text) {
        const std::size_t cell = next_++;
        if (!fault_.empty()) return;
        if (cells_[cell].empty()) fault_ = std::string(headings_[cell]) + " is empty";
        text = cells_[cell];
    }
    void take(std::int32_t& number) {
        const std::size_t cell = next_++;
        if (!fault_.empty()) return;
        const auto read = numberIn(cells_[cell]);
        if (!read) fault_ = std::string(headings_[cell]) + " is no whole number: " + cells_[cell];
        number = read.value_or(0);
    }
    [[nodiscard]] const std::string& fault() const { return fault_; }

 private:
    std::vector<std::string> cells_;
    std::span<const std::string_view> headings_;
    std::size_t next_ = 0;
    std::string fault_;
};

// The columns of each file, and the members that they fill, in the same order.
constexpr std::string_view kFunctionHeadings[] = {"fn",     "Fname",  "Icycle", "VolRam",     "INPUTS",
                                                  "params", "Hidden", "Single", "AuxAnalogs", "AuxDiscretes",
                                                  "ftype",  "Group",  "Title"};
constexpr std::string_view kInputHeadings[] = {"fn", "In", "Description", "ShortName", "Security", "type"};
constexpr std::string_view kParamHeadings[] = {"fn",  "pn",      "Description", "offset",   "Min",
                                               "Max", "Default", "decimal",     "Security", "type"};
constexpr std::string_view kAuxOutputHeadings[] = {"fn", "Kind", "Ordinal", "Description", "Short"};
constexpr std::string_view kGroupHeadings[] = {"Group", "Title"};
constexpr std::string_view kVersionHeadings[] = {"VersionString"};

template <typename... Members>
void takeAll(Cells& cells, Members&... members) {
    (cells.take(members), ...);
}

void fill(Cells& cells, FunctionRow& row) {
    takeAll(cells, row.fn, row.name, row.icycle, row.volRam, row.inputs, row.params, row.hidden, row.single,
            row.auxAnalogs, row.auxDiscretes, row.ftype, row.group, row.title);
}
void fill(Cells& cells, InputRow& row) {
    takeAll(cells, row.fn, row.number, row.description, row.shortName, row.security, row.type);
}
void fill(Cells& cells, ParamRow& row) {
    takeAll(cells, row.fn, row.number, row.description, row.offset, row.min, row.max, row.initial, row.decimal,
            row.security, row.type);
}
void fill(Cells& cells, AuxOutputRow& row) {
    takeAll(cells, row.fn, row.kind, row.ordinal, row.description, row.shortText);
}
void fill(Cells& cells, GroupRow& row) { takeAll(cells, row.key, row.title); }

struct VersionRow {
    std::string text;
    int line = 0;
};
void fill(Cells& cells, VersionRow& row) { takeAll(cells, row.text); }

std::string joinedHeadings(std::span<const std::string_view> headings) {
    std::string joined;
    for (const std::string_view heading : headings) {
        if (!joined.empty()) joined += ',';
        joined += heading;
    }
    return joined;
}

class Reader {
 public:
    explicit Reader(std::string folder) : folder_(std::move(folder)) {}

    template <typename Row>
    void readTable(std::string_view file, std::span<const std::string_view> headings, std::vector<Row>& rows) {
        const std::vector<std::string> lines = linesOf(file);
        if (lines.empty()) return;
        if (lines.front() != joinedHeadings(headings))
            refuse(file, 1, "the heading is not " + joinedHeadings(headings));
        for (std::size_t i = 1; i < lines.size(); ++i) {
            const int line = static_cast<int>(i) + 1;
            Cells cells(fieldsOf(lines[i]), headings);
            Row row;
            fill(cells, row);
            row.line = line;
            if (cells.fault().empty()) {
                rows.push_back(std::move(row));
            } else {
                refuse(file, line, cells.fault());
            }
        }
    }

    void readDefinitions(const std::string& file, std::vector<Definition>& definitions) {
        const std::vector<std::string> lines = linesOf(file);
        bool begins = true;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const int line = static_cast<int>(i) + 1;
            if (lines[i].empty()) {
                begins = true;
            } else if (begins) {
                begins = false;
                beginDefinition(file, line, lines[i], definitions);
            } else if (definitions.empty() || !addTo(definitions.back().paragraphs, lines[i])) {
                refuse(file, line, "neither a paragraph nor the rest of one");
            }
        }
    }

    void readCommon(std::vector<Paragraph>& paragraphs) {
        const std::vector<std::string> lines = linesOf(kCommonFile);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (!addTo(paragraphs, lines[i])) {
                refuse(kCommonFile, static_cast<int>(i) + 1, "neither a paragraph nor the rest of one");
            }
        }
    }

    [[nodiscard]] std::vector<CatalogueFault> takeFaults() { return std::move(faults_); }

 private:
    std::vector<std::string> linesOf(std::string_view file) {
        const FileContent content = readWhole(joinedPath(folder_, file), kMostFileBytes);
        if (content.fault) {
            refuse(file, 0, content.fault->text);
            return {};
        }
        std::vector<std::string> lines;
        std::istringstream bytes(content.bytes);
        for (std::string line; std::getline(bytes, line);) lines.push_back(line);
        if (lines.empty()) refuse(file, 0, "the file is empty");
        return lines;
    }

    void beginDefinition(const std::string& file, int line, const std::string& heading,
                         std::vector<Definition>& definitions) {
        const std::size_t blank = heading.find(' ');
        const auto number = numberIn(std::string_view(heading).substr(0, blank));
        if (!number || blank == std::string::npos) {
            refuse(file, line, "a definition begins with its function's number and name");
        }
        Definition definition;
        definition.fn = number.value_or(-1);
        definition.name = blank == std::string::npos ? "" : heading.substr(blank + 1);
        definition.file = file;
        definition.line = line;
        definitions.push_back(std::move(definition));
    }

    /// "Label: text" begins a paragraph, two blanks go on with the last one.
    static bool addTo(std::vector<Paragraph>& paragraphs, const std::string& line) {
        if (line.starts_with("  ")) {
            if (paragraphs.empty()) return false;
            paragraphs.back().text += line.substr(1);
            return true;
        }
        const std::size_t colon = line.find(": ");
        if (colon == std::string::npos) return false;
        paragraphs.push_back({line.substr(0, colon), line.substr(colon + 2)});
        return true;
    }

    void refuse(std::string_view file, int line, const std::string& detail) {
        faults_.push_back({std::string(file), line, std::string(kRowsCanBeRead), detail});
    }

    std::string folder_;
    std::vector<CatalogueFault> faults_;
};

template <typename Row>
std::vector<const Row*> rowsOf(const std::vector<Row>& rows, std::int32_t fn) {
    std::vector<const Row*> found;
    for (const Row& row : rows) {
        if (row.fn == fn) found.push_back(&row);
    }
    return found;
}

template <typename Rows, typename Test>
auto firstOf(const Rows& rows, Test test) -> decltype(rows.data()) {
    const auto found = std::find_if(rows.begin(), rows.end(), test);
    return found == rows.end() ? nullptr : &*found;
}

}  // namespace

CatalogueReading readCatalogueText(const std::string& folder) {
    CatalogueReading reading;
    CatalogueText& text = reading.text;
    Reader reader(folder);
    reader.readTable(kGroupsFile, kGroupHeadings, text.groups);
    reader.readTable(kFunctionsFile, kFunctionHeadings, text.functions);
    reader.readTable(kInputsFile, kInputHeadings, text.inputs);
    reader.readTable(kParamsFile, kParamHeadings, text.params);
    reader.readTable(kAuxOutputsFile, kAuxOutputHeadings, text.auxOutputs);
    std::vector<VersionRow> versions;
    reader.readTable(kVersionFile, kVersionHeadings, versions);
    for (VersionRow& version : versions) text.versions.push_back(std::move(version.text));
    reader.readCommon(text.common);
    for (const GroupRow& group : text.groups) {
        reader.readDefinitions("definitions/" + group.key + ".txt", text.definitions);
    }
    reading.faults = reader.takeFaults();
    return reading;
}

const FunctionRow* CatalogueText::function(std::int32_t fn) const {
    return firstOf(functions, [fn](const FunctionRow& row) { return row.fn == fn; });
}

const FunctionRow* CatalogueText::function(std::string_view name) const {
    return firstOf(functions, [name](const FunctionRow& row) { return row.name == name; });
}

const Definition* CatalogueText::definition(std::int32_t fn) const {
    return firstOf(definitions, [fn](const Definition& definition) { return definition.fn == fn; });
}

std::vector<const InputRow*> CatalogueText::inputsOf(std::int32_t fn) const { return rowsOf(inputs, fn); }

std::vector<const ParamRow*> CatalogueText::paramsOf(std::int32_t fn) const { return rowsOf(params, fn); }

std::vector<const AuxOutputRow*> CatalogueText::auxOutputsOf(std::int32_t fn, std::string_view kind) const {
    std::vector<const AuxOutputRow*> found = rowsOf(auxOutputs, fn);
    std::erase_if(found, [kind](const AuxOutputRow* row) { return row->kind != kind; });
    return found;
}

const ParamRow* CatalogueText::param(std::int32_t fn, std::int32_t number) const {
    return firstOf(params, [=](const ParamRow& row) { return row.fn == fn && row.number == number; });
}

}  // namespace qrv
