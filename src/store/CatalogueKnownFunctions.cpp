// The rules about functions that the tool knows by name or number, and about what the catalogue as a whole must offer.
#include <algorithm>
#include <array>

#include "store/CatalogueChecks.h"
#include "store/CatalogueCodes.h"
#include "store/KnownFunctions.h"
#include "store/Workbench.h"

namespace qrv {

namespace {

constexpr std::array<std::string_view, 9> kNamesSought{"NOP",  "AIN",  "DIN",  "AOUT", "DOUT",
                                                       "ROUT", "TOUT", "AABO", "DABO"};
/// They come with a board; the list to place from leaves them out.
constexpr std::array<std::string_view, 6> kBoardNames{"AIN", "DIN", "AOUT", "DOUT", "ROUT", "TOUT"};

// Modbus, pagers, curves and a report know these, besides the functions of boards and of the controller's menus.
constexpr std::array<std::int16_t, 8> kOthersKnown{kCurveFunction,        kPagerFunction,
                                                   kLimitMonitorFunction, kPagerScheduleFunction,
                                                   kOutdoorResetFunction, kLinearInterpolationFunction,
                                                   kTriacFunction,        kScheduleFunction};
constexpr std::array kNumbersPlaced{kPagerScheduleFunction, kOutdoorResetFunction, kLinearInterpolationFunction,
                                    kPagerFunction, kScheduleFunction};

CataloguePlace missing(const std::string& what) { return {kFunctionsFile, 0, what}; }

CataloguePlace faultAt(const FunctionRow& row) {
    return {kFunctionsFile, row.line, std::to_string(row.fn) + " " + row.name};
}

CataloguePlace faultAt(const ParamRow& row) {
    return {kParamsFile, row.line, std::to_string(row.fn) + ", number " + std::to_string(row.number)};
}

/// Adds a place where no function passes the test.
template <typename Test>
void addUnlessAny(CataloguePlaces& places, const CatalogueText& text, std::string_view wanted, Test test) {
    const CataloguePlaces found = missingUnlessAny(text.functions, kFunctionsFile, wanted, test);
    places.insert(places.end(), found.begin(), found.end());
}

bool isCurveParam(const ParamRow* row) {
    return row != nullptr && row->type == kPlainParameter && row->min == 0 && row->max == 100000 && row->decimal >= 1;
}

/// One of the ten groups, which begins at parameter `place`.
bool isLimitGroup(const CatalogueText& text, std::int32_t place) {
    const ParamRow* rows[4];
    for (std::int32_t i = 0; i < 4; ++i) {
        rows[i] = text.param(kLimitMonitorFunction, place + i);
        if (rows[i] == nullptr) return false;
    }
    return rows[0]->type == kDecimalCountParameter && rows[1]->type == kCountedParameter &&
           rows[2]->type == kCountedParameter && rows[3]->type == kDecimalCountParameter &&
           rows[0]->initial == rows[3]->initial;
}

void addAuxReaderFaults(CataloguePlaces& places, const CatalogueText& text, std::string_view name, std::int32_t kind) {
    const FunctionRow* row = text.function(name);
    if (row == nullptr) return;
    const auto inputs = text.inputsOf(row->fn);
    const bool hasShape = row->ftype == kind && row->inputs == 1 && row->params == 1 && row->hidden == 0;
    if (!hasShape || inputs.size() != 1 || inputs.front()->type != kind) places.push_back(faultAt(*row));
    const ParamRow* ordinal = text.param(row->fn, 1);
    if (ordinal == nullptr) return;
    const bool isOrdinal = ordinal->type == kPlainParameter && ordinal->decimal == 0 && ordinal->min == 0 &&
                           ordinal->max == kMostAuxOutputs && ordinal->initial == 0;
    if (!isOrdinal) places.push_back(faultAt(*ordinal));
}

}  // namespace

CataloguePlaces namedFunctionsMissing(const CatalogueText& text) {
    CataloguePlaces places;
    for (const std::string_view name : kNamesSought) {
        if (text.function(name) == nullptr) places.push_back(missing(std::string(name)));
    }
    return places;
}

CataloguePlaces nopFaults(const CatalogueText& text) {
    const FunctionRow* nop = text.function(kNop);
    if (nop == nullptr) return {missing("127 NOP")};
    const bool takesNothing = nop->name == "NOP" && nop->slots() == 0 && nop->icycle == 0 && nop->volRam == 0 &&
                              nop->auxAnalogs == 0 && nop->auxDiscretes == 0 && nop->ftype == 0;
    return takesNothing ? CataloguePlaces{} : CataloguePlaces{faultAt(*nop)};
}

CataloguePlaces firstBlockFaults(const CatalogueText& text) {
    CataloguePlaces places;
    for (const std::int32_t fn : {0, 1, 90, 91}) {
        const FunctionRow* row = text.function(fn);
        if (row == nullptr) {
            places.push_back(missing(std::to_string(fn)));
        } else if (row->inputs != 0 || row->params != 0 || row->hidden != 0 || row->volRam != 0 ||
                   row->auxAnalogs != 0 || row->auxDiscretes != 0) {
            places.push_back(faultAt(*row));
        }
    }
    return places;
}

CataloguePlaces defaultSourceFaults(const CatalogueText& text) {
    CataloguePlaces places;
    for (const FunctionRow& row : text.functions) {
        const bool isAnalogDue = isAmong(kAnalogConstantFunctions, row.fn);
        const bool isDiscreteDue = isAmong(kDiscreteConstantFunctions, row.fn);
        if ((isAnalogDue && row.ftype != kAnalog) || (isDiscreteDue && row.ftype != kDiscrete)) {
            places.push_back(faultAt(row));
        }
    }
    return places;
}

CataloguePlaces boardNumberFaults(const CatalogueText& text) {
    CataloguePlaces places;
    for (const BoardFunction& board : kNumberedBoardFunctions) {
        const FunctionRow* row = text.function(board.name);
        if (row != nullptr && row->fn != board.number) places.push_back(faultAt(*row));
    }
    return places;
}

CataloguePlaces boardSlotFaults(const CatalogueText& text) {
    for (const char* name : {"AIN", "ROUT"}) {
        const FunctionRow* row = text.function(name);
        if (row != nullptr && row->slots() > 0) return {};
    }
    return {missing("neither has one")};
}

CataloguePlaces knownNumbersMissing(const CatalogueText& text) {
    CataloguePlaces places;
    const auto addUnlessThere = [&](std::int32_t fn) {
        if (text.function(fn) == nullptr) places.push_back(missing(std::to_string(fn)));
    };
    std::for_each(kOthersKnown.begin(), kOthersKnown.end(), addUnlessThere);
    std::for_each(kModbusWritableFunctions.begin(), kModbusWritableFunctions.end(), addUnlessThere);
    return places;
}

CataloguePlaces knownNumbersNotPlaced(const CatalogueText& text) {
    CataloguePlaces places;
    for (const std::int32_t fn : kNumbersPlaced) {
        const FunctionRow* row = text.function(fn);
        if (row != nullptr && isOneOf(row->name, kBoardNames)) places.push_back(faultAt(*row));
    }
    return places;
}

CataloguePlaces curveFaults(const CatalogueText& text) {
    constexpr std::int32_t kSlotsBefore = 6;
    constexpr std::int32_t kCurveParams = 22;
    const FunctionRow* curve = text.function(kCurveFunction);
    if (curve == nullptr) return {};
    if (curve->inputs + curve->params != kSlotsBefore + kCurveParams) return {faultAt(*curve)};
    for (std::int32_t i = 1; i <= kCurveParams; ++i) {
        const ParamRow* row = text.param(kCurveFunction, kSlotsBefore - curve->inputs + i);
        if (row == nullptr) return {faultAt(*curve)};
        if (!isCurveParam(row)) return {faultAt(*row)};
    }
    return {};
}

CataloguePlaces limitGroupFaults(const CatalogueText& text) {
    const FunctionRow* limits = text.function(kLimitMonitorFunction);
    if (limits == nullptr) return {};
    const ParamRow* first = text.param(kLimitMonitorFunction, 1);
    if (first == nullptr || first->type != kPlainParameter || limits->params < 41) return {faultAt(*limits)};
    for (std::int32_t place = 2; place <= 38; place += 4) {
        if (isLimitGroup(text, place)) continue;
        const ParamRow* row = text.param(kLimitMonitorFunction, place);
        return {row == nullptr ? faultAt(*limits) : faultAt(*row)};
    }
    return {};
}

CataloguePlaces auxReaderFaults(const CatalogueText& text) {
    CataloguePlaces places;
    addAuxReaderFaults(places, text, "AABO", kAnalog);
    addAuxReaderFaults(places, text, "DABO", kDiscrete);
    return places;
}

CataloguePlaces oddDecimals(const CatalogueText& text) {
    constexpr std::size_t kMostOdd = 2;
    CataloguePlaces places;
    for (const ParamRow& row : text.params) {
        if (row.decimal == 1 || row.decimal == 2) places.push_back(faultAt(row));
    }
    if (places.size() <= kMostOdd) return {};
    places.erase(places.begin(), places.begin() + kMostOdd);
    return places;
}

CataloguePlaces auxMixesMissing(const CatalogueText& text) {
    CataloguePlaces places;
    addUnlessAny(places, text, "aux analogs alone",
                 [](const FunctionRow& row) { return row.auxAnalogs > 0 && row.auxDiscretes == 0; });
    addUnlessAny(places, text, "analog with aux discretes alone", [](const FunctionRow& row) {
        return row.ftype == kAnalog && row.auxAnalogs == 0 && row.auxDiscretes > 0;
    });
    addUnlessAny(places, text, "both kinds of aux output",
                 [](const FunctionRow& row) { return row.auxAnalogs > 0 && row.auxDiscretes > 0; });
    addUnlessAny(places, text, "analog without aux outputs", [](const FunctionRow& row) {
        return row.ftype == kAnalog && row.auxAnalogs == 0 && row.auxDiscretes == 0 && row.slots() > 0;
    });
    return places;
}

CataloguePlaces slotMixesMissing(const CatalogueText& text) {
    CataloguePlaces places;
    addUnlessAny(places, text, "hidden constants", [](const FunctionRow& row) { return row.hidden > 0; });
    addUnlessAny(places, text, "parameters alone",
                 [](const FunctionRow& row) { return row.inputs == 0 && row.params > 0; });
    addUnlessAny(places, text, "inputs alone",
                 [](const FunctionRow& row) { return row.inputs > 0 && row.params == 0; });
    return places;
}

CataloguePlaces scalesMissing(const CatalogueText& text) {
    CataloguePlaces places;
    for (const std::int32_t decimal : {1, 2}) {
        const CataloguePlaces found =
            missingUnlessAny(text.params, kParamsFile, "decimals " + std::to_string(decimal),
                             [decimal](const ParamRow& row) { return row.decimal == decimal; });
        places.insert(places.end(), found.begin(), found.end());
    }
    const CataloguePlaces own = missingUnlessAny(text.params, kParamsFile, "decimals of its own",
                                                 [](const ParamRow& row) { return row.type == kCountedParameter; });
    places.insert(places.end(), own.begin(), own.end());
    return places;
}

CataloguePlaces retentiveGaps(const CatalogueText& text) {
    CataloguePlaces places;
    addUnlessAny(places, text, "1 retentive byte", [](const FunctionRow& row) { return row.volRam == 1; });
    addUnlessAny(places, text, "2 retentive bytes", [](const FunctionRow& row) { return row.volRam == 2; });
    return places;
}

CataloguePlaces slotGaps(const CatalogueText& text) {
    CataloguePlaces places;
    addUnlessAny(places, text, "1 slot", [](const FunctionRow& row) { return row.slots() == 1; });
    addUnlessAny(places, text, "10 slots or more", [](const FunctionRow& row) { return row.slots() >= 10; });
    return places;
}

}  // namespace qrv
