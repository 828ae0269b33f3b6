#include "json/Json.h"

#include <gtest/gtest.h>

#include <vector>

namespace qrv {
namespace {

TEST(Json, MembersStayInTheirOrder) {
    Json json = Json::object({{"b", 1}, {"a", "text"}, {"none", {}}});
    json.add("flag", true);
    json.add(Json::object({{"0", 2.5}, {"size", std::size_t{7}}}));
    EXPECT_EQ(json.line(), R"({"b":1,"a":"text","none":null,"flag":true,"0":2.5,"size":7})");
}

TEST(Json, TextGoesOverLinesAndEndsWithABreak) {
    const auto square = [](int number) { return Json(number * number); };
    const Json json = Json::object(
        {{"list", Json::array(std::vector{2, 3}, square)}, {"empty", Json::array(std::vector<int>{}, square)}});
    EXPECT_EQ(json.text(), "{\n  \"list\": [\n    4,\n    9\n  ],\n  \"empty\": []\n}\n");
}

TEST(Json, DigitsStayAsTheyAre) {
    EXPECT_EQ(Json::fromDigits("5.01").line(), "5.01");
    EXPECT_EQ(Json::fromDigits("-32768").line(), "-32768");
    EXPECT_EQ(Json::fromDigits("true").line(), "true");
}

TEST(Json, WhatIsNoTextInAFileNameIsWrittenAsTheReplacementCharacter) {
    EXPECT_EQ(Json("a\xFF\"\n").line(), "\"a\xEF\xBF\xBD\\\"\\n\"");
}

TEST(Json, ACopyIsOfItsOwn) {
    const Json json = Json::object({{"a", 1}});
    Json copy = json;
    copy.add("b", 2);
    EXPECT_EQ(json.line(), R"({"a":1})");
    EXPECT_EQ(copy.line(), R"({"a":1,"b":2})");
}

}  // namespace
}  // namespace qrv
