// How a parameter's number is kept and shown: the value times a power of ten in the block's slot, with its own count of
// decimals on the screen.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qrv {

struct ParameterScale {
    int storedDigits = 0;   ///< the slot holds the value times 10 to this power
    int shownDecimals = 0;  ///< 0..4

    friend bool operator==(const ParameterScale&, const ParameterScale&) = default;

    /// Of a parameter with its own decimal count: thousandths for 1, 2 and 3. None for 4 and more.
    [[nodiscard]] static std::optional<ParameterScale> ofDecimal(std::int32_t decimal);
    /// Of a parameter whose decimal count is the value of another one: none outside 0..4.
    [[nodiscard]] static std::optional<ParameterScale> ofCount(std::int32_t count);

    [[nodiscard]] double factor() const;
    /// A slot's content as the value that the user reads.
    [[nodiscard]] std::string shown(std::int32_t stored) const;
};

}  // namespace qrv
