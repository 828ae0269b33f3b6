#include "store/CatalogueRules.h"

#include <algorithm>
#include <array>

#include "store/CatalogueChecks.h"
#include "store/CatalogueCodes.h"
#include "store/ControllerLimits.h"

namespace qrv {

namespace {

using Whole = CatalogueText;
using Places = std::vector<CataloguePlace>;

// The rules. The names stand in the build's messages and in the tests.
const CatalogueRule kRules[] = {
    // --- the whole ---
    {"versionIsOneRow", "The version is exactly one row.",
     +[](const Whole& text) {
         return text.versions.size() == 1 ? Places{} : Places{{kVersionFile, 0, std::to_string(text.versions.size())}};
     }},
    {"numberIsUnique", "No two functions have one number.",
     +[](const Whole& text, const FunctionRow& row) { return text.function(row.fn) == &row; }},
    {"numberFitsOneByte", "A function's number is from 0 to 255.",
     +[](const Whole&, const FunctionRow& row) { return isWithin(row.fn, 0, 255); }},
    {"outputKindFitsOneByte", "The kind of a main output is from 0 to 255.",
     +[](const Whole&, const FunctionRow& row) { return isWithin(row.ftype, 0, 255); }},
    {"textsArePrintable", "Names and descriptions are printable ASCII without blanks at their ends.",
     textsNotPrintable},
    {"purposeIsKnown", "A function's group is one of the purpose groups.",
     +[](const Whole& text, const FunctionRow& row) { return hasGroup(text, row.group); }},

    // --- names ---
    {"nameIsOneWord", "A name is one word of 1 to 8 characters, in upper case.",
     +[](const Whole&, const FunctionRow& row) { return isUpperCaseWord(row.name, kLongestName); }},
    {"nameIsNotTheToolsOwn", "No function is named as the tool marks its own cells: \".\", BUNK, MAIN, ????.",
     +[](const Whole&, const FunctionRow& row) { return !isOneOf(row.name, kToolsWords); }},
    {"nameIsUnique", "No two functions have one name, whatever the case.", namesTwice},
    {"namedFunctionExists", "The functions that the tool seeks by name are there.", namedFunctionsMissing},

    // --- rows against counts ---
    {"rowHasAFunction", "Every row of an input, parameter or auxiliary output belongs to a function.",
     rowsOfNoFunction},
    {"inputsAreNumberedThrough", "Inputs are numbered from 1 to INPUTS, each once, in this order.", inputsMisnumbered},
    {"paramsAreNumberedThrough",
     "Parameters and hidden constants are numbered from 1 to params + Hidden, in this order.", paramsMisnumbered},
    {"auxOutputsAreNumberedThrough",
     "Auxiliary outputs are numbered from 1 to their count, A and D apart, in this order.", auxOutputsMisnumbered},
    {"countsAreNotNegative", "No count of a function is negative.",
     +[](const Whole&, const FunctionRow& row) {
         return std::min({row.inputs, row.params, row.hidden, row.auxAnalogs, row.auxDiscretes}) >= 0;
     }},
    {"inputsFitTheGrid", "A function has at most 74 inputs.",
     +[](const Whole&, const FunctionRow& row) { return row.inputs <= kMostInputs; }},
    {"paramsFitOneByte", "A function has at most 255 parameters.",
     +[](const Whole&, const FunctionRow& row) { return row.params <= kMostParams; }},
    {"auxOutputsFitFiveBits", "A function has at most 31 auxiliary outputs of a kind.",
     +[](const Whole&, const FunctionRow& row) {
         return row.auxAnalogs <= kMostAuxOutputs && row.auxDiscretes <= kMostAuxOutputs;
     }},
    {"temporaryRamFitsAWord", "705 blocks of one function stay within a 16-bit sum: Icycle is from 0 to 46.",
     +[](const Whole&, const FunctionRow& row) { return isWithin(row.icycle, 0, kMostIcycle); }},
    {"retentiveBytesFit", "VolRam is from 0 to the 634 bytes that a program has.",
     +[](const Whole&, const FunctionRow& row) { return isWithin(row.volRam, 0, kMostRetentiveBytes); }},
    {"singleIsAFlag", "Single is 0 or 1.",
     +[](const Whole&, const FunctionRow& row) { return isWithin(row.single, 0, 1); }},

    // --- functions known by number ---
    {"nopTakesNothing", "Function 127 is NOP and has no slot, no auxiliary output, no memory and no output.",
     nopFaults},
    {"firstBlocksTakeNothing", "Functions 0, 1, 90 and 91 have no slot, no auxiliary output and no retentive byte.",
     firstBlockFaults},
    {"defaultSourcesAreOfTheirKind", "Functions 0 and 1 are analog, 90 and 91 discrete.", defaultSourceFaults},
    {"boardFunctionHasItsNumber", "AIN is 2, AOUT 81, TOUT 84, DIN 92 and ROUT 125.", boardNumberFaults},
    {"boardFunctionHasASlot", "AIN or ROUT has a constant slot.", boardSlotFaults},
    {"knownNumberExists", "The functions that the tool knows by number are there.", knownNumbersMissing},
    {"knownNumberCanBePlaced", "Functions 9, 12, 13, 94 and 114 are none of those that only boards have.",
     knownNumbersNotPlaced},
    {"curveHasElevenPoints",
     "Function 42 has 6 slots, then 22 visible curve parameters: thousandths of a percent from 0 to 100, X and Y in "
     "turn.",
     curveFaults},
    {"limitGroupsAreTenOfFour",
     "Function 96 has a plain parameter, then ten groups: decimals, two values with them, the decimals once more.",
     limitGroupFaults},
    {"auxReaderTakesOneOrdinal", "AABO and DABO have one input and one parameter, the ordinal from 0 to 31.",
     auxReaderFaults},

    // --- parameters ---
    {"paramTypeIsKnown", "A parameter's type is from 1 to 4.",
     +[](const Whole&, const ParamRow& row) { return isWithin(row.type, kPlainParameter, kCountedParameter); }},
    {"paramOffsetIsItsSlot", "A parameter's offset is the number of its slot, the inputs counted.",
     +[](const Whole& text, const ParamRow& row) {
         const FunctionRow* function = text.function(row.fn);
         return function == nullptr || row.offset == function->inputs + row.number - 1;
     }},
    {"hiddenConstantIsPlain", "A hidden constant is of type 1 and its default is 0.",
     +[](const Whole& text, const ParamRow& row) {
         return !isHidden(text, row) || (row.type == kPlainParameter && row.initial == 0);
     }},
    {"defaultIsWithinLimits", "A default lies between its limits.",
     +[](const Whole&, const ParamRow& row) {
         return row.type == kStringParameter || isWithin(row.initial, row.min, row.max);
     }},
    {"decimalsAreZeroToThree", "The decimals of a parameter are from 0 to 3.",
     +[](const Whole&, const ParamRow& row) { return isWithin(row.decimal, 0, 3); }},
    {"oneAndTwoDecimalsAreRare", "At most two parameters have 1 or 2 decimals, for reports show them on another scale.",
     oddDecimals},
    {"highHalfHoldsTheValue", "The limits of a parameter of type 2 or 4 fit 16 bits.",
     +[](const Whole&, const ParamRow& row) {
         const bool isShort = row.type == kDecimalCountParameter || row.type == kCountedParameter;
         return !isShort || (row.min >= -32768 && row.max <= 32767);
     }},
    {"decimalCountIsZeroToFour", "A parameter of type 2 has the limits 0 and 4 and no decimals.",
     +[](const Whole&, const ParamRow& row) {
         return row.type != kDecimalCountParameter || (row.decimal == 0 && row.min == 0 && row.max == 4);
     }},
    {"ownDecimalsFollowTheirCount",
     "A parameter of type 4 stands one or two places behind one of type 2 at an even place.",
     +[](const Whole& text, const ParamRow& row) {
         return row.type != kCountedParameter || countStandsBefore(text, row);
     }},
    {"ownDecimalsAreNotInTheRow", "A parameter of type 4 has 0 as its decimals.",
     +[](const Whole&, const ParamRow& row) { return row.type != kCountedParameter || row.decimal == 0; }},
    {"stringIsSixteenLong", "A string parameter takes 16 characters and has no decimals and 0 as its default.",
     +[](const Whole&, const ParamRow& row) {
         return row.type != kStringParameter || (row.max == 16 && row.decimal == 0 && row.initial == 0);
     }},
    {"stringIsInCapitals", "The description of a string parameter, its first text, is in capitals.",
     +[](const Whole&, const ParamRow& row) { return row.type != kStringParameter || isInCapitals(row.description); }},
    {"stringsStandWhereTheyMay", "Only functions 12, 13 and 114 have string parameters.",
     +[](const Whole&, const ParamRow& row) { return row.type != kStringParameter || isStringFunction(row.fn); }},
    {"someFunctionHasAString", "One of the functions 12, 13 and 114 has a string parameter.",
     +[](const Whole& text) {
         return anyParam(text, [](const ParamRow& row) { return row.type == kStringParameter; });
     }},

    // --- inputs ---
    {"inputKindIsKnown", "An input is of type 1 or 2.",
     +[](const Whole&, const InputRow& row) { return isWithin(row.type, kAnalog, kDiscrete); }},
    {"inputIsDescribed", "Something is left of an input's description when it is cut at \" INPUT\".",
     +[](const Whole&, const InputRow& row) { return !shownDescription(row.description).empty(); }},
    {"someInputIsCut", "Some input's description ends with \" INPUT\".",
     +[](const Whole& text) {
         return anyInput(text, [](const InputRow& row) { return row.description.ends_with(" INPUT"); });
     }},
    {"someInputIsLong", "Some input's description, cut as it is shown, is longer than 28 characters.",
     +[](const Whole& text) {
         return anyInput(
             text, [](const InputRow& row) { return shownDescription(row.description).size() > kOneLineDescription; });
     }},

    // --- auxiliary outputs ---
    {"auxKindIsKnown", "An auxiliary output is of kind A or D.",
     +[](const Whole&, const AuxOutputRow& row) { return row.kind == "A" || row.kind == "D"; }},
    {"auxShortIsAWord", "A short text has at most 8 characters, is no number and not MAIN or BUNK.",
     +[](const Whole&, const AuxOutputRow& row) { return isAuxShort(row.shortText); }},
    {"auxTextsAreUnique", "Short texts and descriptions differ within a function and kind.", auxTextsTwice},
    {"everyMixOfAuxOutputsExists",
     "There is a function with aux analogs alone, one with both kinds, and analog ones with aux discretes alone and "
     "with "
     "none.",
     auxMixesMissing},
    {"everyMixOfSlotsExists",
     "There is a function with hidden constants, one with parameters alone and one with inputs alone.",
     slotMixesMissing},
    {"everyScaleExists", "There is a parameter with 1 decimal, one with 2, and a value with decimals of its own.",
     scalesMissing},

    // --- limits of a program ---
    {"retentiveLimitCanBeMet", "Blocks of 1 and of 2 retentive bytes let a program reach 634 and 635.", retentiveGaps},
    {"slotLimitCanBeMet", "Blocks of 1 slot and of 10 or more let a program reach 5632 and 5633.", slotGaps},

    // --- definitions ---
    {"functionIsDefinedOnce", "Every function has one definition, under its number and name, in its group's file.",
     definitionsMissing},
    {"definitionIsComplete", "A definition has the paragraphs Output, Limits, Start-up and Bad source, in this order.",
     +[](const Whole&, const Definition& definition) { return isComplete(definition); }},
    {"definitionNamesEverySlot", "A definition tells of every input, parameter and auxiliary output.",
     +[](const Whole& text, const Definition& definition) { return namesEverySlot(text, definition); }},
    {"definitionNamesNothingElse", "A definition tells of no input, parameter or auxiliary output that is not there.",
     +[](const Whole& text, const Definition& definition) { return namesNothingElse(text, definition); }},
};

/// Runs one rule over what it is about.
class Inspection {
 public:
    Inspection(const CatalogueText& text, const CatalogueRule& rule, std::vector<CatalogueFault>& faults)
        : text_(text), rule_(rule), faults_(faults) {}

    void operator()(FunctionTest test) const { inspect(text_.functions, test, kFunctionsFile); }
    void operator()(InputTest test) const { inspect(text_.inputs, test, kInputsFile); }
    void operator()(ParamTest test) const { inspect(text_.params, test, kParamsFile); }
    void operator()(AuxOutputTest test) const { inspect(text_.auxOutputs, test, kAuxOutputsFile); }
    void operator()(DefinitionTest test) const {
        for (const Definition& definition : text_.definitions) {
            if (!test(text_, definition)) add(definition.file, definition.line, definition.name);
        }
    }
    void operator()(WholeTest test) const {
        for (const CataloguePlace& place : test(text_)) add(place.file, place.row, place.detail);
    }

 private:
    template <typename Row, typename Test>
    void inspect(const std::vector<Row>& rows, Test test, std::string_view file) const {
        for (const Row& row : rows) {
            if (!test(text_, row)) add(file, row.line, functionLabel(text_, row.fn));
        }
    }
    void add(std::string_view file, int row, const std::string& detail) const {
        faults_.push_back({std::string(file), row, std::string(rule_.name), detail});
    }

    const CatalogueText& text_;
    const CatalogueRule& rule_;
    std::vector<CatalogueFault>& faults_;
};

}  // namespace

std::span<const CatalogueRule> catalogueRules() { return kRules; }

std::vector<CatalogueFault> faultsOf(const CatalogueText& text) {
    std::vector<CatalogueFault> faults;
    for (const CatalogueRule& rule : kRules) std::visit(Inspection(text, rule, faults), rule.test);
    return faults;
}

CheckedCatalogue checkedCatalogue(const std::string& folder) {
    CatalogueReading reading = readCatalogueText(folder);
    if (reading.faults.empty()) reading.faults = faultsOf(reading.text);
    return {std::move(reading.text), std::move(reading.faults)};
}

std::string faultLine(const std::string& folder, const CatalogueFault& fault) {
    std::string line = folder + "/" + fault.file + ":" + std::to_string(fault.row) + ": " + fault.rule + ": ";
    const auto rule = std::find_if(std::begin(kRules), std::end(kRules),
                                   [&fault](const CatalogueRule& candidate) { return candidate.name == fault.rule; });
    if (rule != std::end(kRules)) line += std::string(rule->sentence) + " ";
    return line + "(" + fault.detail + ")";
}

}  // namespace qrv
