#include "json/Json.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace qrv {

namespace {

constexpr int kIndent = 2;
constexpr int kInOneLine = -1;

}  // namespace

struct Json::Content {
    nlohmann::ordered_json json;

    [[nodiscard]] std::string text(int indent) const {
        return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    }
};

Json::Json() : content_(std::make_unique<Content>()) {}
Json::Json(bool flag) : Json() { content_->json = flag; }
Json::Json(int number) : Json() { content_->json = number; }
Json::Json(std::size_t number) : Json() { content_->json = number; }
Json::Json(double number) : Json() { content_->json = number; }
Json::Json(std::string_view text) : Json() { content_->json = text; }

Json::Json(const Json& other) : content_(std::make_unique<Content>(*other.content_)) {}
Json::Json(Json&& other) noexcept = default;
Json& Json::operator=(Json other) noexcept {
    std::swap(content_, other.content_);
    return *this;
}
Json::~Json() = default;

Json Json::object(std::initializer_list<Member> members) {
    Json object;
    object.content_->json = nlohmann::ordered_json::object();
    for (const Member& member : members) object.add(member.name, member.value);
    return object;
}

Json Json::emptyArray() {
    Json list;
    list.content_->json = nlohmann::ordered_json::array();
    return list;
}

Json Json::fromDigits(std::string_view text) {
    Json number;
    number.content_->json = nlohmann::ordered_json::parse(text);
    return number;
}

void Json::add(std::string_view name, Json value) {
    content_->json[std::string(name)] = std::move(value.content_->json);
}

void Json::add(const Json& object) { content_->json.update(object.content_->json); }

void Json::append(Json element) { content_->json.push_back(std::move(element.content_->json)); }

std::string Json::text() const { return content_->text(kIndent) + '\n'; }

std::string Json::line() const { return content_->text(kInOneLine); }

}  // namespace qrv
