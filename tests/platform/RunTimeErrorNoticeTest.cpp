#include "platform/RunTimeErrorNotice.h"

#include <gtest/gtest.h>

#include "twins/ScriptedBox.h"

namespace qrv {
namespace {

TEST(RunTimeErrorNotice, NamesNumberAndDescription) {
    const Notice told{.text = "Run-time error '3027':\n\nThe file is read-only.",
                      .title = "QRV_Edit",
                      .buttons = Buttons::Ok,
                      .icon = Icon::Critical};
    EXPECT_EQ(noticeOf(RunTimeError(ErrorNumber::ReadOnlyDatabase, "The file is read-only.")), told);
}

}  // namespace
}  // namespace qrv
