// `qrv function` as a shell sees it.
#include <gtest/gtest.h>

#include "programs/ProgramRun.h"

namespace qrv {
namespace {

TEST(qrvFunction, ShowsAnEntryByNumberAndByNameInAnyCase) {
    const QrvProgram qrv;
    const ProgramRun byNumber = qrv.run("function 3");
    EXPECT_EQ(byNumber.exitCode, 0);
    EXPECT_EQ(byNumber.err, "");
    EXPECT_EQ(byNumber.out,
              "3 ACONST  Analog constant\n"
              "Constants and operator settings\n"
              "\n"
              "Main output  analog\n"
              "Slots        1 (0 inputs, 1 parameter)\n"
              "Memory       1 word temporary, 0 bytes retentive\n"
              "\n"
              "PARAMETERS\n"
              "  P1   VALUE, %  -327.680 to 327.670, default 0.000\n"
              "\n"
              "Output\n"
              "  Y = P1.\n"
              "\n"
              "Limits\n"
              "  P1 is a percentage, -327.68 to 327.67; its third decimal is rounded away.\n"
              "\n"
              "Start-up\n"
              "  Y is P1 from the first scan on.\n"
              "\n"
              "Bad source\n"
              "  Has no source; Y is always good.\n");
    EXPECT_EQ(qrv.run("function ACONST").out, byNumber.out);
    EXPECT_EQ(qrv.run("function aconst").out, byNumber.out);
    EXPECT_TRUE(qrv.run("function 'F(X)'").out.starts_with("42 F(X)  Curve of eleven points\n"));
}

TEST(qrvFunction, WithoutANameListsAll) {
    const QrvProgram qrv;
    const ProgramRun list = qrv.run("function");
    EXPECT_EQ(list.exitCode, 0);
    EXPECT_TRUE(list.out.starts_with("127 NOP  Empty block\n0 ZERO  Constant zero per cent\n"));
    EXPECT_NE(list.out.find("\n43 PID  PID controller\n"), std::string::npos);
}

TEST(qrvFunction, RefusesOneThatIsNotThere) {
    const QrvProgram qrv;
    const ProgramRun unknown = qrv.run("function 200");
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_EQ(unknown.out, "");
    EXPECT_EQ(unknown.err, "qrv: There is no function 200.\n");
}

}  // namespace
}  // namespace qrv
