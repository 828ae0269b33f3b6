#include "store/CatalogueRules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "store/CatalogueText.h"

namespace qrv {
namespace {

const CatalogueText& shipped() {
    static const CatalogueText text = readCatalogueText(QRV_CATALOGUE_TEXT).text;
    return text;
}

struct Broken {
    std::string file;
    int row = 0;  ///< 0 where a row is missing
};

FunctionRow& function(CatalogueText& text, std::int32_t fn) { return const_cast<FunctionRow&>(*text.function(fn)); }
InputRow& input(CatalogueText& text, std::int32_t fn, std::int32_t number) {
    return *std::find_if(text.inputs.begin(), text.inputs.end(),
                         [=](const InputRow& row) { return row.fn == fn && row.number == number; });
}
ParamRow& param(CatalogueText& text, std::int32_t fn, std::int32_t number) {
    return const_cast<ParamRow&>(*text.param(fn, number));
}
AuxOutputRow& auxOutput(CatalogueText& text, std::int32_t fn, const std::string& kind, std::int32_t ordinal) {
    return *std::find_if(text.auxOutputs.begin(), text.auxOutputs.end(), [&](const AuxOutputRow& row) {
        return row.fn == fn && row.kind == kind && row.ordinal == ordinal;
    });
}
Definition& definition(CatalogueText& text, std::int32_t fn) { return const_cast<Definition&>(*text.definition(fn)); }

Broken at(const FunctionRow& row) { return {"functions.csv", row.line}; }
Broken at(const InputRow& row) { return {"inputs.csv", row.line}; }
Broken at(const ParamRow& row) { return {"params.csv", row.line}; }
Broken at(const AuxOutputRow& row) { return {"aux_outputs.csv", row.line}; }
Broken at(const Definition& row) { return {row.file, row.line}; }

/// One way to break one rule, in a copy of the shipped text. Gives the place that is to be named.
struct BreakRow {
    const char* name;
    const char* rule;
    Broken (*breakIt)(CatalogueText&);
};
std::ostream& operator<<(std::ostream& out, const BreakRow& row) { return out << row.name; }

template <typename Row, typename Value>
Broken set(Row& row, Value Row::*member, std::type_identity_t<Value> value) {
    row.*member = std::move(value);
    return at(row);
}

using T = CatalogueText;
const BreakRow kBreaks[] = {
    {"noVersion", "versionIsOneRow",
     [](T& t) {
         t.versions.clear();
         return Broken{"version.csv", 0};
     }},
    {"twoVersions", "versionIsOneRow",
     [](T& t) {
         t.versions.push_back("2.00");
         return Broken{"version.csv", 0};
     }},
    {"numberTwice", "numberIsUnique", [](T& t) { return set(function(t, 11), &FunctionRow::fn, 10); }},
    {"number256", "numberFitsOneByte", [](T& t) { return set(function(t, 11), &FunctionRow::fn, 256); }},
    {"numberBelowZero", "numberFitsOneByte", [](T& t) { return set(function(t, 11), &FunctionRow::fn, -1); }},
    {"kind256", "outputKindFitsOneByte", [](T& t) { return set(function(t, 11), &FunctionRow::ftype, 256); }},
    {"accentInTitle", "textsArePrintable",
     [](T& t) { return set(function(t, 11), &FunctionRow::title, "caf\xC3\xA9"); }},
    {"blankBeforeInput", "textsArePrintable",
     [](T& t) { return set(input(t, 10, 2), &InputRow::description, " B INPUT"); }},
    {"blankBehindParam", "textsArePrintable",
     [](T& t) { return set(param(t, 3, 1), &ParamRow::description, "VALUE "); }},
    {"noParamText", "textsArePrintable", [](T& t) { return set(param(t, 3, 1), &ParamRow::description, ""); }},
    {"noAuxText", "textsArePrintable",
     [](T& t) { return set(auxOutput(t, 2, "A", 1), &AuxOutputRow::description, ""); }},
    {"otherPurpose", "purposeIsKnown", [](T& t) { return set(function(t, 11), &FunctionRow::group, "fun"); }},
    {"nineLetters", "nameIsOneWord", [](T& t) { return set(function(t, 11), &FunctionRow::name, "SUBTRACTS"); }},
    {"lowerCase", "nameIsOneWord", [](T& t) { return set(function(t, 11), &FunctionRow::name, "Sub"); }},
    {"blankWithin", "nameIsOneWord", [](T& t) { return set(function(t, 11), &FunctionRow::name, "SUB 2"); }},
    {"noName", "nameIsOneWord", [](T& t) { return set(function(t, 11), &FunctionRow::name, ""); }},
    {"namedAsEmptyBoardCell", "nameIsNotTheToolsOwn",
     [](T& t) { return set(function(t, 11), &FunctionRow::name, "."); }},
    {"namedBunk", "nameIsNotTheToolsOwn", [](T& t) { return set(function(t, 11), &FunctionRow::name, "BUNK"); }},
    {"namedMain", "nameIsNotTheToolsOwn", [](T& t) { return set(function(t, 11), &FunctionRow::name, "MAIN"); }},
    {"namedAsNopSource", "nameIsNotTheToolsOwn", [](T& t) { return set(function(t, 11), &FunctionRow::name, "????"); }},
    {"nameTwiceInOtherCase", "nameIsUnique", [](T& t) { return set(function(t, 11), &FunctionRow::name, "add"); }},
    {"noDout", "namedFunctionExists",
     [](T& t) {
         function(t, 126).name = "SSOUT";
         return Broken{"functions.csv", 0};
     }},
    {"strayInput", "rowHasAFunction", [](T& t) { return set(input(t, 10, 2), &InputRow::fn, 200); }},
    {"strayParam", "rowHasAFunction", [](T& t) { return set(param(t, 10, 1), &ParamRow::fn, 200); }},
    {"strayAuxOutput", "rowHasAFunction", [](T& t) { return set(auxOutput(t, 2, "A", 1), &AuxOutputRow::fn, 200); }},
    {"inputGap", "inputsAreNumberedThrough", [](T& t) { return set(input(t, 14, 3), &InputRow::number, 5); }},
    {"inputTooMany", "inputsAreNumberedThrough",
     [](T& t) {
         function(t, 14).inputs = 3;
         return at(input(t, 14, 4));
     }},
    {"inputMissing", "inputsAreNumberedThrough",
     [](T& t) {
         function(t, 14).inputs = 5;
         return Broken{"inputs.csv", 0};
     }},
    {"paramZero", "paramsAreNumberedThrough", [](T& t) { return set(param(t, 10, 1), &ParamRow::number, 0); }},
    {"paramTwice", "paramsAreNumberedThrough", [](T& t) { return set(param(t, 43, 5), &ParamRow::number, 4); }},
    {"paramTooMany", "paramsAreNumberedThrough",
     [](T& t) {
         function(t, 43).hidden = 1;
         return at(param(t, 43, 10));
     }},
    {"auxGap", "auxOutputsAreNumberedThrough",
     [](T& t) { return set(auxOutput(t, 7, "D", 8), &AuxOutputRow::ordinal, 9); }},
    {"auxTooMany", "auxOutputsAreNumberedThrough",
     [](T& t) {
         function(t, 7).auxDiscretes = 7;
         return at(auxOutput(t, 7, "D", 8));
     }},
    {"auxMissing", "auxOutputsAreNumberedThrough",
     [](T& t) {
         function(t, 7).auxAnalogs = 1;
         return Broken{"aux_outputs.csv", 0};
     }},
    {"countBelowZero", "countsAreNotNegative", [](T& t) { return set(function(t, 10), &FunctionRow::hidden, -1); }},
    {"inputs75", "inputsFitTheGrid", [](T& t) { return set(function(t, 10), &FunctionRow::inputs, 75); }},
    {"params256", "paramsFitOneByte", [](T& t) { return set(function(t, 10), &FunctionRow::params, 256); }},
    {"auxAnalogs32", "auxOutputsFitFiveBits", [](T& t) { return set(function(t, 10), &FunctionRow::auxAnalogs, 32); }},
    {"auxDiscretes32", "auxOutputsFitFiveBits",
     [](T& t) { return set(function(t, 10), &FunctionRow::auxDiscretes, 32); }},
    {"icycle47", "temporaryRamFitsAWord", [](T& t) { return set(function(t, 10), &FunctionRow::icycle, 47); }},
    {"icycleBelowZero", "temporaryRamFitsAWord", [](T& t) { return set(function(t, 10), &FunctionRow::icycle, -1); }},
    {"volRam635", "retentiveBytesFit", [](T& t) { return set(function(t, 10), &FunctionRow::volRam, 635); }},
    {"single2", "singleIsAFlag", [](T& t) { return set(function(t, 10), &FunctionRow::single, 2); }},
    {"nopIsAnalog", "nopTakesNothing", [](T& t) { return set(function(t, 127), &FunctionRow::ftype, 1); }},
    {"nopTakesMemory", "nopTakesNothing", [](T& t) { return set(function(t, 127), &FunctionRow::icycle, 1); }},
    {"nopKeepsAByte", "nopTakesNothing", [](T& t) { return set(function(t, 127), &FunctionRow::volRam, 1); }},
    {"otherNop", "nopTakesNothing", [](T& t) { return set(function(t, 127), &FunctionRow::name, "EMPTY"); }},
    {"zeroHasASlot", "firstBlocksTakeNothing", [](T& t) { return set(function(t, 0), &FunctionRow::params, 1); }},
    {"onKeepsAByte", "firstBlocksTakeNothing", [](T& t) { return set(function(t, 91), &FunctionRow::volRam, 1); }},
    {"offIsGone", "firstBlocksTakeNothing",
     [](T& t) {
         function(t, 90).fn = 200;
         return Broken{"functions.csv", 0};
     }},
    {"zeroIsDiscrete", "defaultSourcesAreOfTheirKind",
     [](T& t) { return set(function(t, 0), &FunctionRow::ftype, 2); }},
    {"offIsAnalog", "defaultSourcesAreOfTheirKind", [](T& t) { return set(function(t, 90), &FunctionRow::ftype, 1); }},
    {"dinElsewhere", "boardFunctionHasItsNumber", [](T& t) { return set(function(t, 92), &FunctionRow::fn, 200); }},
    {"boardsWithoutSlots", "boardFunctionHasASlot",
     [](T& t) {
         for (const std::int32_t fn : {2, 125})
             function(t, fn).inputs = function(t, fn).params = function(t, fn).hidden = 0;
         return Broken{"functions.csv", 0};
     }},
    {"noSchedule", "knownNumberExists",
     [](T& t) {
         function(t, 114).fn = 200;
         return Broken{"functions.csv", 0};
     }},
    {"pagerOnBoards", "knownNumberCanBePlaced", [](T& t) { return set(function(t, 94), &FunctionRow::name, "DOUT"); }},
    {"curveOfSixBefore", "curveHasElevenPoints", [](T& t) { return set(function(t, 42), &FunctionRow::params, 25); }},
    {"curveInTenths", "curveHasElevenPoints", [](T& t) { return set(param(t, 42, 26), &ParamRow::decimal, 0); }},
    {"curveTo50", "curveHasElevenPoints", [](T& t) { return set(param(t, 42, 5), &ParamRow::max, 50000); }},
    {"limitsOf40", "limitGroupsAreTenOfFour", [](T& t) { return set(function(t, 96), &FunctionRow::params, 40); }},
    {"limitCountsDiffer", "limitGroupsAreTenOfFour",
     [](T& t) {
         param(t, 96, 41).initial = 1;
         return at(param(t, 96, 38));
     }},
    {"limitsOfPlainType", "limitGroupsAreTenOfFour",
     [](T& t) {
         param(t, 96, 3).type = 1;
         return at(param(t, 96, 2));
     }},
    {"ordinalTo32", "auxReaderTakesOneOrdinal", [](T& t) { return set(param(t, 4, 1), &ParamRow::max, 32); }},
    {"daboReadsAnalog", "auxReaderTakesOneOrdinal",
     [](T& t) {
         input(t, 95, 1).type = 1;
         return at(function(t, 95));
     }},
    {"aaboOfTwoInputs", "auxReaderTakesOneOrdinal", [](T& t) { return set(function(t, 4), &FunctionRow::inputs, 2); }},
    {"type5", "paramTypeIsKnown", [](T& t) { return set(param(t, 10, 1), &ParamRow::type, 5); }},
    {"type0", "paramTypeIsKnown", [](T& t) { return set(param(t, 10, 1), &ParamRow::type, 0); }},
    {"offsetOff", "paramOffsetIsItsSlot", [](T& t) { return set(param(t, 10, 1), &ParamRow::offset, 1); }},
    {"hiddenIsAString", "hiddenConstantIsPlain", [](T& t) { return set(param(t, 43, 9), &ParamRow::type, 3); }},
    {"hiddenIsNotZero", "hiddenConstantIsPlain", [](T& t) { return set(param(t, 43, 9), &ParamRow::initial, 1); }},
    {"defaultAboveMax", "defaultIsWithinLimits", [](T& t) { return set(param(t, 43, 2), &ParamRow::initial, 100001); }},
    {"defaultBelowMin", "defaultIsWithinLimits", [](T& t) { return set(param(t, 43, 2), &ParamRow::initial, -1); }},
    {"fourDecimals", "decimalsAreZeroToThree", [](T& t) { return set(param(t, 43, 2), &ParamRow::decimal, 4); }},
    {"thirdOddDecimals", "oneAndTwoDecimalsAreRare",
     [](T& t) {
         param(t, 43, 2).decimal = 2;
         return at(param(t, 86, 1));
     }},
    {"shortMax", "highHalfHoldsTheValue", [](T& t) { return set(param(t, 12, 3), &ParamRow::max, 32768); }},
    {"shortMin", "highHalfHoldsTheValue", [](T& t) { return set(param(t, 12, 3), &ParamRow::min, -32769); }},
    {"fiveDecimalsCounted", "decimalCountIsZeroToFour", [](T& t) { return set(param(t, 12, 2), &ParamRow::max, 5); }},
    {"decimalsOfACount", "decimalCountIsZeroToFour", [](T& t) { return set(param(t, 12, 2), &ParamRow::decimal, 3); }},
    {"ownDecimalsFirst", "ownDecimalsFollowTheirCount", [](T& t) { return set(param(t, 10, 1), &ParamRow::type, 4); }},
    {"ownDecimalsAlone", "ownDecimalsFollowTheirCount",
     [](T& t) {
         param(t, 12, 2).type = 1;
         return at(param(t, 12, 3));
     }},
    {"countAtOddPlace", "ownDecimalsFollowTheirCount",
     [](T& t) {
         param(t, 53, 1).type = 2;
         param(t, 53, 2).type = 4;
         return at(param(t, 53, 2));
     }},
    {"countJustBeforeEven", "ownDecimalsFollowTheirCount",
     [](T& t) {
         param(t, 12, 3).type = 2;
         return at(param(t, 12, 4));
     }},
    {"ownAndRowDecimals", "ownDecimalsAreNotInTheRow",
     [](T& t) { return set(param(t, 12, 3), &ParamRow::decimal, 3); }},
    {"stringOf17", "stringIsSixteenLong", [](T& t) { return set(param(t, 12, 1), &ParamRow::max, 17); }},
    {"stringWithDefault", "stringIsSixteenLong", [](T& t) { return set(param(t, 12, 1), &ParamRow::initial, 1); }},
    {"stringInSmallLetters", "stringIsInCapitals",
     [](T& t) { return set(param(t, 12, 1), &ParamRow::description, "Oa reset"); }},
    {"stringElsewhere", "stringsStandWhereTheyMay", [](T& t) { return set(param(t, 10, 1), &ParamRow::type, 3); }},
    {"noString", "someFunctionHasAString",
     [](T& t) {
         for (const std::int32_t fn : {12, 13, 114}) param(t, fn, 1).type = 1;
         return Broken{"params.csv", 0};
     }},
    {"input3", "inputKindIsKnown", [](T& t) { return set(input(t, 10, 1), &InputRow::type, 3); }},
    {"nothingLeftAtTheCut", "inputIsDescribed", [](T& t) { return set(input(t, 10, 1), &InputRow::description, ""); }},
    {"noInputIsCut", "someInputIsCut",
     [](T& t) {
         for (InputRow& row : t.inputs) row.description = "SIGNAL";
         return Broken{"inputs.csv", 0};
     }},
    {"noInputIsLong", "someInputIsLong",
     [](T& t) {
         for (InputRow& row : t.inputs) row.description.resize(std::min<std::size_t>(row.description.size(), 28));
         return Broken{"inputs.csv", 0};
     }},
    {"longBehindTheCutOnly", "someInputIsLong",
     [](T& t) {
         for (InputRow& row : t.inputs) row.description = "A TEXT OF TWENTY-EIGHT BYTES INPUT OF A BLOCK";
         return Broken{"inputs.csv", 0};
     }},
    {"auxKindX", "auxKindIsKnown", [](T& t) { return set(auxOutput(t, 2, "A", 1), &AuxOutputRow::kind, "X"); }},
    {"auxNumber", "auxShortIsAWord", [](T& t) { return set(auxOutput(t, 2, "A", 1), &AuxOutputRow::shortText, "12"); }},
    {"auxMain", "auxShortIsAWord", [](T& t) { return set(auxOutput(t, 2, "A", 1), &AuxOutputRow::shortText, "MAIN"); }},
    {"auxBunk", "auxShortIsAWord", [](T& t) { return set(auxOutput(t, 2, "A", 1), &AuxOutputRow::shortText, "BUNK"); }},
    {"auxOfNine", "auxShortIsAWord",
     [](T& t) { return set(auxOutput(t, 2, "A", 1), &AuxOutputRow::shortText, "UNFILTERD"); }},
    {"auxShortTwice", "auxTextsAreUnique",
     [](T& t) { return set(auxOutput(t, 7, "D", 2), &AuxOutputRow::shortText, "POS1"); }},
    {"auxDescriptionTwice", "auxTextsAreUnique",
     [](T& t) { return set(auxOutput(t, 7, "D", 2), &AuxOutputRow::description, "POSITION 1 SELECTED"); }},
    {"noBothKinds", "everyMixOfAuxOutputsExists",
     [](T& t) {
         for (FunctionRow& row : t.functions) row.auxAnalogs = 0;
         return Broken{"functions.csv", 0};
     }},
    {"noHidden", "everyMixOfSlotsExists",
     [](T& t) {
         for (FunctionRow& row : t.functions) row.hidden = 0;
         return Broken{"functions.csv", 0};
     }},
    {"noTenths", "everyScaleExists",
     [](T& t) {
         for (ParamRow& row : t.params) row.decimal = row.decimal == 1 ? 3 : row.decimal;
         return Broken{"params.csv", 0};
     }},
    {"noSingleByte", "retentiveLimitCanBeMet",
     [](T& t) {
         for (FunctionRow& row : t.functions) row.volRam = row.volRam == 1 ? 2 : row.volRam;
         return Broken{"functions.csv", 0};
     }},
    {"noSingleSlot", "slotLimitCanBeMet",
     [](T& t) {
         for (FunctionRow& row : t.functions) row.params += row.slots() == 1 ? 1 : 0;
         return Broken{"functions.csv", 0};
     }},
    {"definitionUnderOtherName", "functionIsDefinedOnce",
     [](T& t) {
         definition(t, 43).name = "PIDD";
         return at(function(t, 43));
     }},
    {"definitionInOtherGroup", "functionIsDefinedOnce",
     [](T& t) {
         definition(t, 43).file = "definitions/logic.txt";
         return at(function(t, 43));
     }},
    {"definitionTwice", "functionIsDefinedOnce",
     [](T& t) {
         t.definitions.push_back(definition(t, 43));
         t.definitions.back().line = 9999;
         return at(t.definitions.back());
     }},
    {"noStartUp", "definitionIsComplete",
     [](T& t) {
         Definition& row = definition(t, 43);
         row.paragraphs.erase(row.paragraphs.begin() + 2);
         return at(row);
     }},
    {"paragraphsExchanged", "definitionIsComplete",
     [](T& t) {
         Definition& row = definition(t, 43);
         std::swap(row.paragraphs[0], row.paragraphs[1]);
         return at(row);
     }},
    {"inputUntold", "definitionNamesEverySlot",
     [](T& t) {
         function(t, 10).inputs = 3;
         return at(definition(t, 10));
     }},
    {"outputUntold", "definitionNamesEverySlot",
     [](T& t) {
         function(t, 10).auxDiscretes = 1;
         return at(definition(t, 10));
     }},
    {"toldButNotThere", "definitionNamesNothingElse",
     [](T& t) {
         Definition& row = definition(t, 10);
         row.paragraphs[0].text += " D1 = 1.";
         return at(row);
     }},
    {"rangeBeyond", "definitionNamesNothingElse",
     [](T& t) {
         Definition& row = definition(t, 28);
         row.paragraphs[0].text += " I1..I9";
         return at(row);
     }},
};

class CatalogueBreakTest : public testing::TestWithParam<BreakRow> {};

TEST_P(CatalogueBreakTest, IsRefusedWithFileRowAndRule) {
    CatalogueText text = shipped();
    const Broken place = GetParam().breakIt(text);
    const std::vector<CatalogueFault> faults = faultsOf(text);
    const bool isNamed = std::any_of(faults.begin(), faults.end(), [&](const CatalogueFault& fault) {
        return fault.rule == GetParam().rule && fault.file == place.file && fault.row == place.row;
    });
    EXPECT_TRUE(isNamed) << "wanted " << place.file << ":" << place.row << ": " << GetParam().rule;
    if (!isNamed) {
        for (const CatalogueFault& fault : faults) ADD_FAILURE() << faultLine("", fault);
    }
}

INSTANTIATE_TEST_SUITE_P(EachRule, CatalogueBreakTest, testing::ValuesIn(kBreaks),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CatalogueRules, EveryRuleIsBrokenSomewhere) {
    std::set<std::string_view> broken;
    for (const BreakRow& row : kBreaks) broken.insert(row.rule);
    for (const CatalogueRule& rule : catalogueRules()) EXPECT_TRUE(broken.contains(rule.name)) << rule.name;
    EXPECT_EQ(broken.size(), catalogueRules().size());
}

TEST(CatalogueRules, NamesAreUniqueAndSentencesEnd) {
    std::set<std::string_view> names;
    for (const CatalogueRule& rule : catalogueRules()) {
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
        EXPECT_TRUE(rule.sentence.ends_with('.')) << rule.name;
    }
}

TEST(CatalogueRules, TheShippedCatalogueKeepsThemAll) {
    const CheckedCatalogue catalogue = checkedCatalogue(QRV_CATALOGUE_TEXT);
    for (const CatalogueFault& fault : catalogue.faults) ADD_FAILURE() << faultLine(QRV_CATALOGUE_TEXT, fault);
    EXPECT_GE(catalogue.text.functions.size(), 110U);
    EXPECT_LE(catalogue.text.functions.size(), 128U);
}

TEST(CatalogueRules, AFaultIsToldWithFileRowRuleAndSentence) {
    EXPECT_EQ(faultLine("catalogue", {"params.csv", 57, "paramTypeIsKnown", "10 ADD"}),
              "catalogue/params.csv:57: paramTypeIsKnown: A parameter's type is from 1 to 4. (10 ADD)");
}

}  // namespace
}  // namespace qrv
