#include "platform/TextFields.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

using Fields = std::vector<std::string>;

TEST(TextFields, WritesTextsInQuotesAndNumbersBare) {
    EXPECT_EQ(writtenLine({"", "Default:", "Options:"}), "\"\",\"Default:\",\"Options:\"\r\n");
    EXPECT_EQ(writtenLine({"12 AUX1P3", 40012, "", "RW", "0.00"}), "\"12 AUX1P3\",40012,\"\",\"RW\",\"0.00\"\r\n");
    EXPECT_EQ(writtenLine({""}), "\"\"\r\n");
    EXPECT_EQ(writtenLine({-2.5, std::int16_t{-1}, std::string("a,b")}), "-2.5,-1,\"a,b\"\r\n");
    EXPECT_EQ(writtenLine({}), "\r\n");
}

TEST(TextFields, ReadsBackWhatItWrote) {
    EXPECT_EQ(fieldsOf("\"X%\",\"Y%\",\"Depth(in, feet)\",12.5"), (Fields{"X%", "Y%", "Depth(in, feet)", "12.5"}));
    EXPECT_EQ(fieldsOf("\" a \",\"\""), (Fields{" a ", ""}));
}

TEST(TextFields, ReadsFieldsThatAPersonTyped) {
    EXPECT_EQ(fieldsOf(" 1 , 2.5 ,abc def"), (Fields{"1", "2.5", "abc def"}));
    EXPECT_EQ(fieldsOf(""), (Fields{""}));
    EXPECT_EQ(fieldsOf("a,"), (Fields{"a", ""}));
    EXPECT_EQ(fieldsOf(",,"), (Fields{"", "", ""}));
    EXPECT_EQ(fieldsOf("\"open"), (Fields{"open"}));
    EXPECT_EQ(fieldsOf("\"a\" , 5"), (Fields{"a", "5"}));
}

}  // namespace
}  // namespace qrv
