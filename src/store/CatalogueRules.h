// What must be true of the function catalogue for the tool and the controller to work with it: one table of rules, each
// with a name and a sentence. The build refuses a text that breaks one.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "store/CatalogueText.h"

namespace qrv {

/// Where a rule about the whole is broken, and what is the matter there.
struct CataloguePlace {
    std::string_view file;
    int row = 0;  ///< 0 where a row is missing
    std::string detail;
};

/// A test of every row of one kind gives true for a sound row. A test of the whole gives the places that are not sound.
using FunctionTest = bool (*)(const CatalogueText&, const FunctionRow&);
using InputTest = bool (*)(const CatalogueText&, const InputRow&);
using ParamTest = bool (*)(const CatalogueText&, const ParamRow&);
using AuxOutputTest = bool (*)(const CatalogueText&, const AuxOutputRow&);
using DefinitionTest = bool (*)(const CatalogueText&, const Definition&);
using WholeTest = std::vector<CataloguePlace> (*)(const CatalogueText&);

struct CatalogueRule {
    std::string_view name;
    std::string_view sentence;
    std::variant<FunctionTest, InputTest, ParamTest, AuxOutputTest, DefinitionTest, WholeTest> test;
};

[[nodiscard]] std::span<const CatalogueRule> catalogueRules();

/// Everything in which the text breaks a rule.
[[nodiscard]] std::vector<CatalogueFault> faultsOf(const CatalogueText& text);

struct CheckedCatalogue {
    CatalogueText text;
    std::vector<CatalogueFault> faults;  ///< of the reading; if there are none, of the rules
};
[[nodiscard]] CheckedCatalogue checkedCatalogue(const std::string& folder);

/// "catalogue/params.csv:57: nopTakesNothing: ...", with the rule's sentence and what is the matter.
[[nodiscard]] std::string faultLine(const std::string& folder, const CatalogueFault& fault);

}  // namespace qrv
