#include "platform/linux/applications/launching/LaunchPlan.h"

#include "LaunchFiles.h"
#include "support/LogRecorder.h"

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

class LaunchPlanTest : public testing::Test {
protected:
    std::optional<LaunchPlan> plan(const QString& path) const { return planLaunch(path, settings_); }

    std::optional<LaunchPlan> planOf(const QString& keys, const QString& name = u"calc.desktop"_s) const {
        return plan(files_.writeEntry(name, keys));
    }

    LaunchFiles files_;
    LaunchSettings settings_{
        .entries = {.dataFolders = {{files_.path(u".local/share"_s)}},
                    .locale = entryLocaleFor({"de"}),
                    .currentDesktops = {},
                    .programFolders = {files_.path(u"bin"_s)}},
        .terminal = {},
        .home = files_.home(),
    };
    QString calc_ = files_.write(u"bin/calc"_s, "", true);
};

} // namespace

TEST_F(LaunchPlanTest, AnEntrysCommandIsFoundAndItsCodesReplaced) {
    const auto made = planOf(u"Name[de]=Rechner\nIcon=calc\nExec=calc %i %c %k %U\n"_s);
    ASSERT_TRUE(made && made->command);
    const QString path = files_.path(u".local/share/applications/calc.desktop"_s);
    EXPECT_EQ(*made->command,
              (Command{calc_, {u"calc"_s, u"--icon"_s, u"calc"_s, u"Rechner"_s, path}, files_.home()}));
    EXPECT_EQ(made->name, u"Rechner"_s);
    EXPECT_EQ(made->icon, u"calc"_s);
    EXPECT_EQ(made->entryPath, path);
    EXPECT_EQ(made->applicationId, u"calc"_s);
    EXPECT_EQ(made->bus, std::nullopt);
    EXPECT_FALSE(made->tellsWhenReady);
}

TEST_F(LaunchPlanTest, StringEscapesAreUndoneBeforeQuotes) {
    const auto made = planOf(u"Exec=calc \"a\\\\\\\\b\" \"\\\\$x\" c\\sd\n"_s);
    ASSERT_TRUE(made && made->command);
    EXPECT_EQ(made->command->arguments, QStringList({u"calc"_s, u"a\\b"_s, u"$x"_s, u"c"_s, u"d"_s}));
}

TEST_F(LaunchPlanTest, ItIsReadAgainEachTime) {
    const QString path = files_.writeEntry(u"calc.desktop"_s, u"Exec=calc one\n"_s);
    EXPECT_EQ(plan(path)->command->arguments.back(), u"one"_s);
    files_.writeEntry(u"calc.desktop"_s, u"Exec=calc two\n"_s);
    EXPECT_EQ(plan(path)->command->arguments.back(), u"two"_s);
    QFile::remove(path);
    EXPECT_FALSE(plan(path));
}

TEST_F(LaunchPlanTest, PathIsTheWorkingDirectory) {
    QDir().mkpath(files_.path(u"work"_s));
    const auto made = planOf(u"Exec=calc\nPath=%1\n"_s.arg(files_.path(u"work"_s)));
    EXPECT_EQ(made->command->workingDirectory, files_.path(u"work"_s));
}

TEST_F(LaunchPlanTest, AnUnusablePathIsReplacedByTheHomeFolder) {
    for (const QString& path : {files_.path(u"gone"_s), calc_, u"bin"_s, u"~/bin"_s, u"$HOME"_s}) {
        const auto made = planOf(u"Exec=calc\nPath=%1\n"_s.arg(path));
        ASSERT_TRUE(made);
        EXPECT_EQ(made->command->workingDirectory, files_.home()) << path.toStdString();
    }
}

TEST_F(LaunchPlanTest, ARelativeProgramIsInTheWorkingDirectory) {
    const auto made = planOf(u"Exec=./calc -x\nPath=%1\n"_s.arg(files_.path(u"bin"_s)));
    ASSERT_TRUE(made && made->command);
    EXPECT_EQ(QDir::cleanPath(made->command->program), calc_);
    EXPECT_EQ(made->command->arguments.front(), u"./calc"_s);
}

TEST_F(LaunchPlanTest, AMissingProgramCannotBeOpened) {
    EXPECT_FALSE(planOf(u"Exec=gone\n"_s));
    EXPECT_FALSE(planOf(u"Exec=/nowhere/at/all\n"_s));
    files_.write(u"bin/text"_s, "");
    EXPECT_FALSE(planOf(u"Exec=text\n"_s));
}

TEST_F(LaunchPlanTest, AMalformedLineCannotBeOpened) {
    EXPECT_FALSE(planOf(u"Exec=calc \"a\n"_s));
}

TEST_F(LaunchPlanTest, AHiddenEntryCannotBeOpened) {
    EXPECT_FALSE(planOf(u"Exec=calc\nHidden=true\n"_s));
    EXPECT_TRUE(planOf(u"Exec=calc\nNoDisplay=true\n"_s));
}

TEST_F(LaunchPlanTest, ATerminalsWordsComeBeforeTheCommand) {
    const QString xterm = files_.write(u"bin/xterm"_s, "", true);
    const auto made = planOf(u"Exec=calc %U -x\nTerminal=true\n"_s);
    ASSERT_TRUE(made && made->command);
    EXPECT_EQ(*made->command, (Command{xterm, {xterm, u"-e"_s, u"calc"_s, u"-x"_s}, files_.home()}));
    settings_.terminal = u"alacritty"_s;
    const QString alacritty = files_.write(u"bin/alacritty"_s, "", true);
    EXPECT_EQ(planOf(u"Exec=calc\nTerminal=true\n"_s)->command->program, alacritty);
}

TEST_F(LaunchPlanTest, ATerminalProgramNeedsATerminal) {
    EXPECT_FALSE(planOf(u"Exec=calc\nTerminal=true\n"_s));
}

TEST_F(LaunchPlanTest, NoTerminalIsOpenedForAMissingProgram) {
    files_.write(u"bin/xterm"_s, "", true);
    EXPECT_FALSE(planOf(u"Exec=gone\nTerminal=true\n"_s));
}

TEST_F(LaunchPlanTest, ADBusApplicationHasAnAddressAndACommandAsFallback) {
    const auto made =
        planOf(u"DBusActivatable=true\nExec=calc\nStartupNotify=true\n"_s, u"org.example.my-calc.desktop"_s);
    ASSERT_TRUE(made && made->command);
    EXPECT_EQ(made->bus, (BusAddress{u"org.example.my-calc"_s, u"/org/example/my_calc"_s}));
    EXPECT_TRUE(made->tellsWhenReady);
}

TEST_F(LaunchPlanTest, ADBusApplicationNeedsNoExec) {
    const auto made = planOf(u"DBusActivatable=true\n"_s, u"org.example.Calc.desktop"_s);
    ASSERT_TRUE(made);
    EXPECT_TRUE(made->bus);
    EXPECT_FALSE(made->command);
}

TEST_F(LaunchPlanTest, AnIdThatIsNotABusNameLeavesOnlyTheCommand) {
    const auto made = planOf(u"DBusActivatable=true\nExec=calc\n"_s);
    ASSERT_TRUE(made);
    EXPECT_FALSE(made->bus);
    EXPECT_TRUE(made->command);
    EXPECT_FALSE(planOf(u"DBusActivatable=true\n"_s));
}

TEST_F(LaunchPlanTest, ABundleRunsItsExecutable) {
    files_.writePropertyList(u"Calc.app/Contents/Info.plist"_s,
                             "<key>CFBundleExecutable</key><string>Calc Tool</string>"
                             "<key>CFBundleIdentifier</key><string>org.example.calc</string>");
    const QString program = files_.write(u"Calc.app/Contents/MacOS/Calc Tool"_s, "", true);
    const auto made = plan(files_.path(u"Calc.app"_s));
    ASSERT_TRUE(made && made->command);
    EXPECT_EQ(*made->command, (Command{program, {program}, files_.home()}));
    EXPECT_EQ(made->applicationId, u"org.example.calc"_s);
    EXPECT_EQ(made->name, u"Calc"_s);
    EXPECT_EQ(made->entryPath, QString());
    EXPECT_FALSE(made->bus);
}

TEST_F(LaunchPlanTest, AGnustepBundleHasItsExecutableBesideItsResources) {
    files_.writePropertyList(u"Calc.app/Resources/Info-gnustep.plist"_s,
                             "<key>NSExecutable</key><string>Calc</string>");
    const QString program = files_.write(u"Calc.app/Calc"_s, "", true);
    const auto made = plan(files_.path(u"Calc.app"_s));
    ASSERT_TRUE(made && made->command);
    EXPECT_EQ(made->command->program, program);
    EXPECT_EQ(made->applicationId, u"Calc"_s);
}

TEST_F(LaunchPlanTest, ABundleWithAnExecutableOutsideCannotBeOpened) {
    for (const char* const name : {"../../../bin/calc", "/bin/sh", "..", ".", ""}) {
        files_.writePropertyList(u"Calc.app/Contents/Info.plist"_s,
                                 "<key>CFBundleExecutable</key><string>" + QByteArray(name) + "</string>");
        files_.write(u"Calc.app/Contents/MacOS/x"_s, "", true);
        EXPECT_FALSE(plan(files_.path(u"Calc.app"_s))) << name;
    }
}

TEST_F(LaunchPlanTest, ADamagedBundleCannotBeOpened) {
    EXPECT_FALSE(plan(files_.path(u"Gone.app"_s)));
    files_.write(u"Broken.app/Contents/Info.plist"_s, "no list");
    EXPECT_FALSE(plan(files_.path(u"Broken.app"_s)));
    files_.writePropertyList(u"Empty.app/Contents/Info.plist"_s,
                             "<key>CFBundleExecutable</key><string>Gone</string>");
    EXPECT_FALSE(plan(files_.path(u"Empty.app"_s)));
    files_.write(u"Empty.app/Contents/MacOS/Gone"_s, "");
    EXPECT_FALSE(plan(files_.path(u"Empty.app"_s))) << "it is there but may not be executed";
}

TEST_F(LaunchPlanTest, OtherFilesCannotBeOpened) {
    EXPECT_FALSE(plan(calc_));
    EXPECT_FALSE(plan(files_.home()));
    EXPECT_FALSE(plan({}));
}

TEST_F(LaunchPlanTest, AWebPageIsOpenedByXdgOpen) {
    EXPECT_FALSE(planPage(QUrl(u"https://example.org/"_s), settings_)) << "the desktop has none";
    const QString program = files_.write(u"bin/xdg-open"_s, "", true);
    const auto made = planPage(QUrl(u"https://example.org/a b?c=d#e"_s), settings_);
    ASSERT_TRUE(made && made->command);
    EXPECT_EQ(*made->command,
              (Command{program, {u"xdg-open"_s, u"https://example.org/a%20b?c=d#e"_s}, files_.home()}));
    EXPECT_EQ(made->entryPath, QString());
    EXPECT_FALSE(made->bus);
}

TEST_F(LaunchPlanTest, OnlyHttpsAddressesAreOpened) {
    files_.write(u"bin/xdg-open"_s, "", true);
    for (const QString& address :
         {u"http://example.org/"_s, u"file:///etc/passwd"_s, u"/bin/sh"_s, u"https:"_s, u"https:///path"_s,
          u"javascript:alert(1)"_s, u"--help"_s, u""_s}) {
        EXPECT_FALSE(planPage(QUrl(address), settings_)) << address.toStdString();
    }
}

TEST(LaunchSettings, ComesFromTheEnvironment) {
    const Environment environment = [](const char* name) -> std::optional<QByteArray> {
        const QHash<QByteArray, QByteArray> variables{
            {"HOME", "/home/u"}, {"PATH", "/a:b::/c"}, {"TERMINAL", "kitty"}, {"XDG_DATA_HOME", "/data"}};
        return variables.contains(name) ? std::optional(variables[name]) : std::nullopt;
    };
    const LaunchSettings settings = launchSettingsFrom(environment);
    EXPECT_EQ(settings.home, u"/home/u"_s);
    EXPECT_EQ(settings.terminal, u"kitty"_s);
    EXPECT_EQ(settings.entries.programFolders, QStringList({u"/a"_s, u"/c"_s}));
    EXPECT_EQ(settings.entries.dataFolders.folders.front(), u"/data"_s);
}

TEST_F(LaunchPlanTest, WhyAnApplicationCannotBeOpenedIsLogged) {
    const auto logOf = [this](const QString& keys) {
        return debugLog("amberquill.launching", [&] { EXPECT_FALSE(planOf(keys)); });
    };
    const auto says = [](const std::string& log, const char* reason) {
        return log.find(reason) != std::string::npos && log.find("calc.desktop") != std::string::npos;
    };
    EXPECT_PRED2(says, logOf(u"Exec=calc \"a\n"_s), "invalid Exec");
    EXPECT_PRED2(says, logOf(u"Exec=gone\n"_s), "program not found");
    EXPECT_PRED2(says, logOf(u"Exec=calc\nTerminal=true\n"_s), "no terminal");
    EXPECT_PRED2(says, logOf(u"Exec=calc\nHidden=true\n"_s), "missing, invalid or hidden entry");
    EXPECT_EQ(debugLog("amberquill.launching", [&] { EXPECT_TRUE(planOf(u"Exec=calc\n"_s)); }), "");
    const auto folder =
        debugLog("amberquill.launching", [&] { EXPECT_TRUE(planOf(u"Exec=calc\nPath=/gone\n"_s)); });
    EXPECT_PRED2(says, folder, "working directory cannot be entered: \"/gone\"");
}
