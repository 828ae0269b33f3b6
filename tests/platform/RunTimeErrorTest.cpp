#include "platform/RunTimeError.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

TEST(RunTimeError, CarriesItsNumberAndWords) {
    const RunTimeError error(ErrorNumber::Overflow);
    EXPECT_EQ(error.code(), 6);
    EXPECT_EQ(error.description(), "Overflow");
    EXPECT_EQ(RunTimeError(ErrorNumber::NoCurrentRecord).code(), 3021);
    EXPECT_EQ(RunTimeError(ErrorNumber::NoCurrentRecord).description(), "No current record.");
    EXPECT_EQ(RunTimeError(ErrorNumber::CouldNotOpenFile, "why").description(), "why");
}

TEST(RunTimeError, HasWordsForANumberItDoesNotKnow) {
    EXPECT_EQ(descriptionOf(static_cast<ErrorNumber>(4711)), "Application-defined or object-defined error");
}

TEST(RunTimeError, IsTheOnlyOneThatIsIgnored) {
    bool isReached = false;
    EXPECT_TRUE(ignoringErrors([&] { isReached = true; }));
    EXPECT_TRUE(isReached);
    EXPECT_FALSE(ignoringErrors([] { throw RunTimeError(ErrorNumber::TypeMismatch); }));
    EXPECT_THROW(ignoringErrors([] { throw std::logic_error("ours"); }), std::logic_error);
}

}  // namespace
}  // namespace qrv
