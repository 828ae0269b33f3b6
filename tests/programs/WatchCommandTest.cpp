// Live values in the terminal: one row after the other, each whole as soon as it is there.
#include <gtest/gtest.h>

#include "link/LiveController.h"
#include "programs/ProgramRun.h"
#include "programs/Reading.h"

namespace qrv {
namespace {

struct WatchRun {
    /// A new file has ZERO on block 0, FULL on block 1, OFF on block 2 and ON on block 3.
    WatchRun() {
        EXPECT_EQ(run("new plant.qrv").exitCode, 0);
        live.controller.fixAnalog(1, -5);
        live.controller.fixDiscrete(3, true);
    }
    [[nodiscard]] ProgramRun run(const std::string& arguments) const { return qrv.run(arguments); }
    [[nodiscard]] std::string onLine() const { return " --port " + live.path(); }

    QrvProgram qrv;
    test::LiveController live;
};

TEST(qrvWatch, ShowsARowForEachReading) {
    WatchRun watch;
    watch.live.start();
    const ProgramRun shown = watch.run("watch plant.qrv 1 3 --interval 1 --count 2" + watch.onLine());
    EXPECT_EQ(shown.exitCode, 0) << shown.err;
    const std::string row = R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z,-0\.05,1\n)";
    EXPECT_TRUE(matches(shown.out, "time,block 1 FULL analog,block 3 ON discrete\n" + row + row)) << shown.out;
    EXPECT_EQ(shown.err, "");
}

TEST(qrvWatch, WritesAFileAndOverwritesOnlyByForce) {
    WatchRun watch;
    watch.live.start();
    const std::string command = "watch plant.qrv 3 --count 1 --csv out.csv" + watch.onLine();
    EXPECT_EQ(watch.run(command).exitCode, 0);
    EXPECT_TRUE(bytesOf(watch.qrv.path("out.csv")).starts_with("time,block 3 ON discrete\n20"));
    EXPECT_EQ(watch.run(command).exitCode, 5);
    EXPECT_EQ(watch.run(command + " --force").exitCode, 0);
}

TEST(qrvWatch, CtrlCEndsItWithWholeRows) {
    WatchRun watch;
    watch.live.start();
    const ProgramRun shown = watch.qrv.runMeanwhile("watch plant.qrv 1 --interval 1 --csv out.csv" + watch.onLine(),
                                                    "[ \"$(cat out.csv | wc -l)\" -ge 3 ]", "kill -INT $pid");
    EXPECT_EQ(shown.exitCode, 0) << shown.err;
    const std::string rows = bytesOf(watch.qrv.path("out.csv"));
    EXPECT_TRUE(rows.starts_with("time,block 1 FULL analog\n2")) << rows;
    EXPECT_TRUE(rows.ends_with(",-0.05\n")) << rows;
}

TEST(qrvWatch, CtrlCWhileItConnectsEndsItTheSame) {
    WatchRun watch;
    watch.live.controller.play(SimFaultPlan::always("silence"));
    watch.live.start();
    // The trace's second line is the first frame.
    const ProgramRun shown =
        watch.qrv.runMeanwhile("watch plant.qrv 1 --csv out.csv --trace trace.txt" + watch.onLine(),
                               "[ \"$(cat trace.txt | wc -l)\" -ge 2 ]", "kill -INT $pid");
    EXPECT_EQ(shown.exitCode, 0);
    EXPECT_EQ(shown.err, "");
    EXPECT_EQ(shown.out, "");
    EXPECT_EQ(bytesOf(watch.qrv.path("out.csv")), "");
}

TEST(qrvWatch, AFullDiskEndsIt) {
    for (const std::string output : {">/dev/full", "--csv /dev/full --force"}) {
        WatchRun watch;
        watch.live.start();
        const ProgramRun shown = watch.run("watch plant.qrv 1 --interval 1" + watch.onLine() + " " + output);
        EXPECT_EQ(shown.exitCode, 3) << output;
        EXPECT_EQ(shown.err, output.front() == '>' ? "qrv: the output could not be written whole.\n"
                                                   : "qrv: /dev/full can't be written.\n");
    }
}

TEST(qrvWatch, AReaderThatHasSeenEnoughEndsItWithoutAWord) {
    const PipeNobodyReads output;
    WatchRun watch;
    watch.live.start();
    const ProgramRun shown = watch.run("watch plant.qrv 1 --interval 1" + watch.onLine() + output.redirection());
    EXPECT_EQ(shown.exitCode, 141);
    EXPECT_EQ(shown.err, "");
}

TEST(qrvWatch, EmptyBlockHasNothingToShow) {
    WatchRun watch;
    const ProgramRun shown = watch.run("watch plant.qrv 100" + watch.onLine());
    EXPECT_EQ(shown.exitCode, 1);
    EXPECT_EQ(shown.err, "qrv: Block 100 is empty and has no output.\n");
    EXPECT_EQ(shown.out, "");
}

TEST(qrvWatch, AReadingWithoutAnswerIsAnEmptyFieldAndIsTold) {
    WatchRun watch;
    SimFaultPlan plan = SimFaultPlan::from("silence", 2);  // all ten sends of the first reading
    plan.last = 11;
    watch.live.controller.play(plan);
    watch.live.start();
    const ProgramRun shown = watch.run("watch plant.qrv 1 --interval 1 --count 2" + watch.onLine());
    EXPECT_EQ(shown.exitCode, 0);
    EXPECT_TRUE(matches(shown.out, "time,block 1 FULL analog\n[0-9T:.-]+Z,\n[0-9T:.-]+Z,-0\\.05\n")) << shown.out;
    EXPECT_EQ(shown.err, "Block 1: no answer.\n");
}

TEST(qrvWatch, AnAdapterThatGoesAwayEndsItWithTheRowsSoFar) {
    WatchRun watch;
    watch.live.controller.play(SimFaultPlan::from("hang-up", 3));
    watch.live.start();
    const ProgramRun shown = watch.run("watch plant.qrv 1 --interval 1" + watch.onLine());
    EXPECT_EQ(shown.exitCode, 4);
    EXPECT_TRUE(matches(shown.out, "time,block 1 FULL analog\n[0-9T:.-]+Z,-0\\.05\n")) << shown.out;
    EXPECT_EQ(shown.err,
              "qrv: " + watch.live.path() + " went away while it was open: plug it in again and repeat the action.\n");
}

TEST(qrvWatch, FileThatIsNotThereIsTold) {
    WatchRun watch;
    EXPECT_EQ(watch.run("watch other.qrv 1" + watch.onLine()).exitCode, 3);
}

}  // namespace
}  // namespace qrv
