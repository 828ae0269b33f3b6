#include "shell/FunctionWords.h"

#include <algorithm>

namespace qrv {

namespace {

// Sorted as the function list is. Where both sides of the ocean spell a word in their own way, each finds it.
constexpr FunctionWords kWords[] = {
    {.function = "NOP", .words = "none delete"},
    {.function = "ZERO", .words = "0 %"},
    {.function = "FULL", .words = "100 %"},
    {.function = "OFF", .words = "false 0"},
    {.function = "ON", .words = "true 1"},
    {.function = "ACONST", .words = "fixed value number"},
    {.function = "OPSP", .words = "setpoint"},
    {.function = "OPTIME", .words = "timer"},
    {.function = "OPSW", .words = "manual"},
    {.function = "HOASW", .words = "manual"},
    {.function = "ADD", .words = "addition plus"},
    {.function = "SUB", .words = "subtraction minus"},
    {.function = "SUM4", .words = "add addition plus"},
    {.function = "MUL", .words = "multiply multiplication times"},
    {.function = "DIV", .words = "divide division ratio"},
    {.function = "SCALE", .words = "convert linear"},
    {.function = "SQRT", .words = "flow"},
    {.function = "ABS", .words = "absolute value"},
    {.function = "INVERT", .words = "inversion reverse"},
    {.function = "MAX2", .words = "maximum greater select"},
    {.function = "MIN2", .words = "minimum smaller select"},
    {.function = "MAX8", .words = "maximum greatest select"},
    {.function = "MIN8", .words = "minimum smallest select"},
    {.function = "MEDIAN3", .words = "select"},
    {.function = "ASW", .words = "select transfer"},
    {.function = "MUX8", .words = "multiplexer switch"},
    {.function = "LIMIT", .words = "clamp minimum maximum"},
    {.function = "FILTER", .words = "lag smoothing damping low pass"},
    {.function = "DEADTIME", .words = "delay transport"},
    {.function = "RATE", .words = "derivative slope"},
    {.function = "RATELIM", .words = "ramp slew"},
    {.function = "RAMP", .words = "setpoint soak"},
    {.function = "SAMPHOLD", .words = "memory track"},
    {.function = "AVGTIME", .words = "minimum maximum"},
    {.function = "PEAK", .words = "minimum maximum"},
    {.function = "TOTAL", .words = "totalizer integral integrator"},
    {.function = "PULSETOT", .words = "totalizer counter meter"},
    {.function = "RUNHOURS", .words = "timer meter totaliser totalizer"},
    {.function = "BATCH", .words = "totaliser totalizer dosing"},
    {.function = "PID", .words = "proportional integral derivative loop"},
    {.function = "PIDX", .words = "proportional integral derivative loop feedforward"},
    {.function = "CASCADE", .words = "setpoint"},
    {.function = "TPROP", .words = "pulse width PWM"},
    {.function = "ONOFF", .words = "thermostat hysteresis"},
    {.function = "F(X)", .words = "characterizer lookup table polyline interpolation"},
    {.function = "LININT", .words = "curve"},
    {.function = "OARESET", .words = "setpoint outside compensation"},
    {.function = "SCHEDSP", .words = "setpoint schedule"},
    {.function = "HEATFLOW", .words = "energy power"},
    {.function = "HICMP", .words = "compare comparator hysteresis"},
    {.function = "LOCMP", .words = "compare comparator hysteresis"},
    {.function = "COMPARE", .words = "comparator greater less equal"},
    {.function = "WINDOW", .words = "compare comparator limit"},
    {.function = "AND2", .words = "logic gate"},
    {.function = "AND8", .words = "logic gate"},
    {.function = "OR2", .words = "logic gate"},
    {.function = "OR8", .words = "logic gate"},
    {.function = "NOT", .words = "logic gate invert"},
    {.function = "XOR", .words = "logic gate"},
    {.function = "VOTE", .words = "logic majority"},
    {.function = "DSW", .words = "select"},
    {.function = "LATCH", .words = "logic flip-flop flipflop memory"},
    {.function = "ONESHOT", .words = "timer one-shot monostable"},
    {.function = "ONDELAY", .words = "timer"},
    {.function = "OFFDELAY", .words = "timer"},
    {.function = "FLASHER", .words = "timer blinker oscillator"},
    {.function = "MINONOFF", .words = "timer minimum"},
    {.function = "PUMPALT", .words = "lead lag duty standby"},
    {.function = "SCHEDULE", .words = "timer"},
    {.function = "HOLIDAY", .words = "calendar schedule"},
    {.function = "OPTSTART", .words = "schedule"},
    {.function = "ECON", .words = "economizer"},
    {.function = "LIMIT10", .words = "alarm"},
};

}  // namespace

std::span<const FunctionWords> allFunctionWords() { return kWords; }

std::string_view wordsOfFunction(std::string_view name) {
    const auto found = std::ranges::find(kWords, name, &FunctionWords::function);
    return found == std::end(kWords) ? std::string_view{} : found->words;
}

}  // namespace qrv
