// The functions that the tool and the controller know by number; all others are only what the catalogue says of them.
// On disk and on the wire: never renumber.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace qrv {

/// The function of an empty block.
inline constexpr std::int16_t kNop = 127;

/// A new file's blocks 0 to 3: the default sources of analog inputs (0) and of discrete inputs (90), and their
/// opposites.
inline constexpr std::array<std::int16_t, 2> kAnalogConstantFunctions{0, 1};
inline constexpr std::array<std::int16_t, 2> kDiscreteConstantFunctions{90, 91};

inline constexpr std::int16_t kCurveFunction = 42;  ///< F(X), of which five in a row hold a stick chart
inline constexpr std::int16_t kPagerFunction = 94;  ///< without a block of it no pager data is downloaded
inline constexpr std::int16_t kLimitMonitorFunction =
    96;  ///< whose groups of four parameters a report prints by themselves

// What a fixed function of the controller's menus works on.
inline constexpr std::int16_t kPagerScheduleFunction = 9;
inline constexpr std::int16_t kOutdoorResetFunction = 12;
inline constexpr std::int16_t kLinearInterpolationFunction = 13;
inline constexpr std::int16_t kTriacFunction = 84;
inline constexpr std::int16_t kScheduleFunction = 114;

/// The only ones with string parameters.
inline constexpr std::array kStringFunctions{kOutdoorResetFunction, kLinearInterpolationFunction, kScheduleFunction};

/// Their main outputs can be written over Modbus.
inline constexpr std::array<std::int16_t, 7> kModbusWritableFunctions{5, 38, 55, 93, 97, 98, 99};

/// The functions of boards, by which an upload tells the boards apart.
struct BoardFunction {
    std::int16_t number;
    std::string_view name;
};
inline constexpr std::array kNumberedBoardFunctions{BoardFunction{2, "AIN"}, BoardFunction{81, "AOUT"},
                                                    BoardFunction{kTriacFunction, "TOUT"}, BoardFunction{92, "DIN"},
                                                    BoardFunction{125, "ROUT"}};

template <std::size_t Count>
[[nodiscard]] constexpr bool isAmong(const std::array<std::int16_t, Count>& functions, std::int32_t function) {
    return std::find(functions.begin(), functions.end(), function) != functions.end();
}

}  // namespace qrv
