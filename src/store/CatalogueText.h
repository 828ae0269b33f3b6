// The function catalogue as it is written and reviewed: comma-separated rows, one file a table, and the definitions,
// one text file a purpose group. The build makes the data file, the pages and the document from it. Texts are ASCII.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qrv {

inline constexpr std::string_view kFunctionsFile = "functions.csv";
inline constexpr std::string_view kInputsFile = "inputs.csv";
inline constexpr std::string_view kParamsFile = "params.csv";
inline constexpr std::string_view kAuxOutputsFile = "aux_outputs.csv";
inline constexpr std::string_view kGroupsFile = "groups.csv";
inline constexpr std::string_view kVersionFile = "version.csv";
inline constexpr std::string_view kCommonFile = "common.txt";

/// One function. `line` of this and the other rows is the row's line in its file, from 1, the heading included.
struct FunctionRow {
    std::int32_t fn = 0;
    std::string name{};
    std::int32_t icycle = 0;  ///< words of temporary memory
    std::int32_t volRam = 0;  ///< retentive bytes
    std::int32_t inputs = 0;
    std::int32_t params = 0;
    std::int32_t hidden = 0;
    std::int32_t single = 0;  ///< 1: one block of it is enough for a program
    std::int32_t auxAnalogs = 0;
    std::int32_t auxDiscretes = 0;
    std::int32_t ftype = 0;  ///< as an input's and a parameter's `type` a code of `CatalogueCodes.h`
    std::string group{};     ///< key of its purpose group
    std::string title{};
    int line = 0;

    [[nodiscard]] std::int32_t slots() const { return inputs + params + hidden; }
};

struct InputRow {
    std::int32_t fn = 0;
    std::int32_t number = 0;  ///< from 1
    std::string description{};
    std::string shortName{};
    std::int32_t security = 0;
    std::int32_t type = 0;
    int line = 0;
};

/// A parameter, or behind the last of them a hidden constant.
struct ParamRow {
    std::int32_t fn = 0;
    std::int32_t number = 0;  ///< from 1
    std::string description{};
    std::int32_t offset = 0;  ///< its constant slot, from 0
    std::int32_t min = 0;
    std::int32_t max = 0;
    std::int32_t initial = 0;  ///< `Default`
    std::int32_t decimal = 0;
    std::int32_t security = 0;
    std::int32_t type = 0;
    int line = 0;
};

struct AuxOutputRow {
    std::int32_t fn = 0;
    std::string kind{};        ///< "A" or "D"
    std::int32_t ordinal = 0;  ///< from 1
    std::string description{};
    std::string shortText{};
    int line = 0;
};

struct GroupRow {
    std::string key{};
    std::string title{};
    int line = 0;
};

struct Paragraph {
    std::string label{};
    std::string text{};
};

/// What a function computes, exactly enough to execute.
struct Definition {
    std::int32_t fn = 0;
    std::string name{};
    std::vector<Paragraph> paragraphs;
    std::string file{};  ///< "definitions/loops.txt"
    int line = 0;
};

/// What is wrong with the text, and where. `row` is 0 where a row is missing.
struct CatalogueFault {
    std::string file;
    int row = 0;
    std::string rule;
    std::string detail;
};

struct CatalogueText {
    std::vector<GroupRow> groups;
    std::vector<FunctionRow> functions;  ///< in stored order
    std::vector<InputRow> inputs;
    std::vector<ParamRow> params;
    std::vector<AuxOutputRow> auxOutputs;
    std::vector<std::string> versions;  ///< one row in a sound catalogue
    std::vector<Definition> definitions;
    std::vector<Paragraph> common;  ///< what holds for every definition

    /// Null where there is none.
    [[nodiscard]] const FunctionRow* function(std::int32_t fn) const;
    [[nodiscard]] const FunctionRow* function(std::string_view name) const;
    [[nodiscard]] const Definition* definition(std::int32_t fn) const;
    /// In the order of the file.
    [[nodiscard]] std::vector<const InputRow*> inputsOf(std::int32_t fn) const;
    [[nodiscard]] std::vector<const ParamRow*> paramsOf(std::int32_t fn) const;
    [[nodiscard]] std::vector<const AuxOutputRow*> auxOutputsOf(std::int32_t fn, std::string_view kind) const;
    [[nodiscard]] const ParamRow* param(std::int32_t fn, std::int32_t number) const;
};

struct CatalogueReading {
    CatalogueText text;
    /// Rows that could not be understood, each with the rule "rowsCanBeRead"; they are left out of the text.
    std::vector<CatalogueFault> faults;
};

/// The rule that the reading itself keeps.
inline constexpr std::string_view kRowsCanBeRead = "rowsCanBeRead";

/// Reads the text from its folder. A file that can't be read is a fault of its row 0.
[[nodiscard]] CatalogueReading readCatalogueText(const std::string& folder);

}  // namespace qrv
