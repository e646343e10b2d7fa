// Applications when the launcher ends.
#include "LaunchFiles.h"
#include "Report.h"
#include "support/TestPaths.h"
#include "support/WaitUntil.h"

#include <QProcess>
#include <csignal>
#include <unistd.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LauncherEnd : public testing::Test {
protected:
    // Runs a launcher to its end.
    void run(const QStringList& arguments) {
        launcher_.start(testProgram(QStringLiteral("quitting_launcher")), arguments);
        EXPECT_TRUE(launcher_.waitForFinished(10'000));
    }

    // The application's id. It runs until this test ends.
    std::optional<Report> report() {
        std::optional<Report> report = awaitReport(files_.path(u"report"_s));
        process_ = report ? report->process : 0;
        return report;
    }

    void TearDown() override {
        if (process_ > 0) {
            kill(static_cast<pid_t>(process_), SIGKILL);
        }
    }

    // Whether the process runs: neither gone nor a zombie.
    static bool isAlive(qint64 process) {
        QFile status(u"/proc/%1/stat"_s.arg(process));
        return status.open(QIODevice::ReadOnly) && !status.readAll().contains(") Z ");
    }

    LaunchFiles files_;
    QProcess launcher_;
    qint64 process_ = 0;
};

} // namespace

TEST_F(LauncherEnd, QuittingLeavesTheApplicationAlone) {
    run({u"quit"_s, files_.writeEntry(u"calc.desktop"_s, u"Exec=%1\n"_s.arg(reporterLine(
                                                             files_.path(u"report"_s), u"--stay"_s)))});
    EXPECT_EQ(launcher_.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(launcher_.exitCode(), 0);
    ASSERT_TRUE(report());
    EXPECT_TRUE(isAlive(process_));
}

TEST_F(LauncherEnd, ALauncherKilledBeforeTheStartGateOpensStillStartsTheApplication) {
    run({u"hold"_s, reporterPath(), files_.path(u"report"_s)});
    EXPECT_EQ(launcher_.exitStatus(), QProcess::CrashExit);
    ASSERT_TRUE(report());
    EXPECT_TRUE(isAlive(process_));
}
