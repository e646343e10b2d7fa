// Compares the argument vectors of applications with those of GIO, for lines on which the rules agree.
#include "platform/linux/applications/launching/ExecLine.h"

#include "LaunchFiles.h"
#include "Report.h"
#include "platform/linux/applications/entries/DesktopEntry.h"
#include "support/WaitUntil.h"

// GIO's headers use names that are macros of Qt without QT_NO_KEYWORDS.
#include <gio/gdesktopappinfo.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

// The arguments that the program gets from GIO.
std::optional<QStringList> byGio(const QString& entryPath, const QString& reportPath) {
    GDesktopAppInfo* const application =
        g_desktop_app_info_new_from_filename(QFile::encodeName(entryPath).constData());
    if (application == nullptr) {
        return std::nullopt;
    }
    const bool launched = g_app_info_launch(G_APP_INFO(application), nullptr, nullptr, nullptr) != FALSE;
    g_object_unref(application);
    const std::optional<Report> report = launched ? awaitReport(reportPath) : std::nullopt;
    return report ? std::optional(report->arguments) : std::nullopt;
}

class ExecAgainstGio : public testing::TestWithParam<const char*> {};

} // namespace

TEST_P(ExecAgainstGio, TheProgramGetsTheSameArguments) {
    const LaunchFiles files;
    const QString reportPath = files.path(u"report"_s);
    const QString path = files.writeEntry(u"calc.desktop"_s, u"Icon=calc\nExec=%1\n"_s.arg(reporterLine(
                                                                 reportPath, QString::fromUtf8(GetParam()))));
    const auto entry = readDesktopEntry(path, {});
    ASSERT_TRUE(entry);
    const auto ours = execArguments(entry->exec, {entry->icon, entry->name, path});
    ASSERT_TRUE(ours);
    EXPECT_EQ(ours->sliced(2), byGio(path, reportPath));
}

INSTANTIATE_TEST_SUITE_P(Lines, ExecAgainstGio,
                         testing::Values("", "a b", "\"a b\" c", "\"\" '' x", "\"it's\"", "'a \"b\" c'",
                                         "--name=\"a b\"'c d'e", R"("\\"q\\"")", R"("\\$HOME \\`id\\`")",
                                         R"("a\\\\b")", R"(a\\ b)", "a\\sb", "a\\tb", "%U", "%f a %F", "%u b",
                                         "%%", "100%%x", "%i", "x %c y", "%k", "%d %n %v %m z", "@@u %U @@",
                                         "a;b", "a&b | c > d", "~ * ?", "$HOME", "é ü"));

// Neither may run anything.
TEST(ExecAgainstGioMalformed, AnUnfinishedQuoteRunsNothing) {
    const LaunchFiles files;
    const QString path = files.writeEntry(u"calc.desktop"_s, u"Exec=/bin/true \"a\n"_s);
    EXPECT_EQ(g_desktop_app_info_new_from_filename(QFile::encodeName(path).constData()), nullptr);
    EXPECT_EQ(execArguments(u"/bin/true \"a", {}), std::nullopt);
}
