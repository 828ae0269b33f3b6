// How a field crosses the face of db1: the type that a caller sees, what a null gives, what a store rounds or refuses.
// db1's table of accessors names one of these for each field. kTakesNull: its getter gives something for a null.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Numerals.h"
#include "platform/RunTimeError.h"
#include "store/Recordset.h"

namespace qrv::field {

/// The stored value as T; a null is RunTimeError 94.
template <typename T>
const T& required(const Recordset& rows, std::size_t column) {
    if (const T* stored = std::get_if<T>(&rows.value(column))) return *stored;
    throw RunTimeError(ErrorNumber::InvalidUseOfNull);
}

template <typename T>
T orElse(const Recordset& rows, std::size_t column, T fallback) {
    const T* stored = std::get_if<T>(&rows.value(column));
    return stored == nullptr ? fallback : *stored;
}

/// 16 bits, signed. Setters take a wider number, and the column refuses what doesn't fit.
struct Int16 {
    static constexpr bool kTakesNull = false;
    using Got = std::int16_t;
    using Given = std::int32_t;
    static Got get(const Recordset& rows, std::size_t column) {
        return static_cast<std::int16_t>(required<std::int32_t>(rows, column));
    }
    static Value stored(Given value) { return value; }
};

struct Int16OrZero : Int16 {
    static constexpr bool kTakesNull = true;
    static Got get(const Recordset& rows, std::size_t column) {
        return static_cast<std::int16_t>(orElse<std::int32_t>(rows, column, 0));
    }
};

struct Int32 {
    static constexpr bool kTakesNull = false;
    using Got = std::int32_t;
    using Given = std::int64_t;
    static Got get(const Recordset& rows, std::size_t column) { return required<std::int32_t>(rows, column); }
    static Value stored(Given value) { return toInt32(value); }
};

/// 8 bits, without sign.
struct Byte {
    static constexpr bool kTakesNull = false;
    using Got = std::uint8_t;
    using Given = std::int32_t;
    static Got get(const Recordset& rows, std::size_t column) {
        return static_cast<std::uint8_t>(required<std::int32_t>(rows, column));
    }
    static Value stored(Given value) { return value; }
};

struct ByteOrZero : Byte {
    static constexpr bool kTakesNull = true;
    static Got get(const Recordset& rows, std::size_t column) {
        return static_cast<std::uint8_t>(orElse<std::int32_t>(rows, column, 0));
    }
};

/// True is -1 in the file; any number but 0 reads as true.
struct Flag {
    static constexpr bool kTakesNull = false;
    using Got = bool;
    using Given = bool;
    static Got get(const Recordset& rows, std::size_t column) { return required<std::int32_t>(rows, column) != 0; }
    static Value stored(Given value) { return value ? -1 : 0; }
};

/// 32 bits. Setters take a wider number, and raise where it doesn't fit.
struct Float {
    static constexpr bool kTakesNull = false;
    using Got = float;
    using Given = double;
    static Got get(const Recordset& rows, std::size_t column) { return required<float>(rows, column); }
    static Value stored(Given value) { return toSingle(value); }
};

/// A float at the face over a column of whole numbers, which rounds halves to even.
struct FloatOverInteger {
    static constexpr bool kTakesNull = false;
    using Got = float;
    using Given = double;
    static Got get(const Recordset& rows, std::size_t column) {
        return static_cast<float>(required<std::int32_t>(rows, column));
    }
    static Value stored(Given value) { return std::int32_t{toInt16(double{toSingle(value)})}; }
};

/// A number or null, in both directions.
struct Variant {
    static constexpr bool kTakesNull = true;
    using Got = std::optional<std::int32_t>;
    using Given = std::optional<std::int32_t>;
    static Got get(const Recordset& rows, std::size_t column) {
        const auto* stored = std::get_if<std::int32_t>(&rows.value(column));
        return stored == nullptr ? Got{} : Got{*stored};
    }
    static Value stored(Given value) { return value ? Value{*value} : Value{}; }
};

/// Code page 1252, one byte a character.
struct Text {
    static constexpr bool kTakesNull = false;
    using Got = std::string;
    using Given = std::string;
    static Got get(const Recordset& rows, std::size_t column) { return required<std::string>(rows, column); }
    static Value stored(Given value) { return value; }
};

struct TextOrEmpty : Text {
    static constexpr bool kTakesNull = true;
    static Got get(const Recordset& rows, std::size_t column) { return orElse<std::string>(rows, column, {}); }
};

/// A read that fails, whatever the reason, gives "": a title is shown, never relied on.
struct TextIgnoringErrors : Text {
    static constexpr bool kTakesNull = true;
    static Got get(const Recordset& rows, std::size_t column) {
        std::string text;
        ignoringErrors([&] { text = required<std::string>(rows, column); });
        return text;
    }
};

}  // namespace qrv::field
