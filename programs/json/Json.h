// JSON as the programs write it: a value, put together member by member, and its text. Members stay in the order in
// which they came. Texts are UTF-8; where a file's name is none, what is amiss in it is written as U+FFFD.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

namespace qrv {

class Json {
 public:
    struct Member;

    /// null
    Json();
    Json(bool flag);
    Json(int number);
    Json(std::size_t number);
    Json(double number);
    Json(std::string_view text);
    Json(const char* text) : Json(std::string_view(text)) {}
    Json(const std::string& text) : Json(std::string_view(text)) {}

    Json(const Json& other);
    Json(Json&& other) noexcept;
    Json& operator=(Json other) noexcept;
    ~Json();

    [[nodiscard]] static Json object(std::initializer_list<Member> members = {});
    /// What `each` makes of every element of a range.
    template <typename Range, typename Each>
    [[nodiscard]] static Json array(const Range& range, Each each) {
        Json list = emptyArray();
        for (const auto& element : range) list.append(each(element));
        return list;
    }
    /// A number, or true or false, with the digits that its text has.
    [[nodiscard]] static Json fromDigits(std::string_view text);

    /// A member of an object, behind those that are there.
    void add(std::string_view name, Json value);
    /// The members of another object, behind those that are there.
    void add(const Json& object);

    /// Over lines, with a line break behind.
    [[nodiscard]] std::string text() const;
    /// In one line, without a line break.
    [[nodiscard]] std::string line() const;

 private:
    struct Content;

    [[nodiscard]] static Json emptyArray();
    void append(Json element);

    std::unique_ptr<Content> content_;
};

struct Json::Member {
    std::string_view name;
    Json value;
};

}  // namespace qrv
