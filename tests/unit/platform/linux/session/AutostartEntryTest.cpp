#include "platform/linux/session/AutostartLoginItem.h"

#include "platform/linux/applications/entries/DesktopEntry.h"
#include "platform/linux/applications/launching/ExecLine.h"
#include "support/TestPaths.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

const QStringList gnome = {u"ubuntu"_s, u"GNOME"_s};

bool isStarted(const QByteArray& lines) {
    return isStartedAtLogin("[Desktop Entry]\nType=Application\nName=A\nExec=a\n" + lines, gnome);
}

} // namespace

TEST(AutostartEntry, StartsAProgramWithAnyCharactersInItsPath) {
    for (const QString& program : {u"/usr/bin/amberquill"_s, u"/home/a b/100%/%u %%"_s, u"/it's/\"quoted\""_s,
                                   u"/$HOME/`x`/\\back\\\\"_s, u"/é/日本/🙂"_s,
                                   u"/line\nbreak\ttab\rreturn"_s, u"/semi;colon/a\\sb"_s}) {
        const auto entry = parseDesktopEntry(autostartEntryFor(program), entryLocaleFor({}));
        ASSERT_TRUE(entry) << program.toStdString();
        EXPECT_EQ(execArguments(entry->exec, {}), QStringList{program});
        EXPECT_TRUE(isStartedAtLogin(autostartEntryFor(program), {}));
    }
}

TEST(AutostartEntry, HasTheNameAndTheIconOfTheInstalledEntry) {
    QFile file(projectFile(u"packaging/org.amberquill.Amberquill.desktop.in"_s));
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const auto installed = parseDesktopEntry(file.readAll(), entryLocaleFor({}));
    ASSERT_TRUE(installed);
    for (const QByteArray& bytes : {autostartEntryFor(u"/usr/bin/amberquill"_s),
                                    autostartEntryFor(u"/opt/amber quill/bin/amberquill"_s)}) {
        const auto entry = parseDesktopEntry(bytes, entryLocaleFor({}));
        ASSERT_TRUE(entry);
        EXPECT_EQ(entry->name, installed->name);
        EXPECT_EQ(entry->icon, installed->icon);
        EXPECT_EQ(entry->icon, u"org.amberquill.Amberquill"_s);
    }
}

TEST(AutostartEntry, AHiddenEntryIsNotStarted) {
    EXPECT_FALSE(isStartedAtLogin(hiddenAutostartEntry(), gnome));
    EXPECT_FALSE(isStarted("Hidden=true\n"));
    EXPECT_TRUE(isStarted("Hidden=false\n"));
}

TEST(AutostartEntry, AnEntryThatGnomesToolsDisabledIsNotStarted) {
    EXPECT_FALSE(isStarted("X-GNOME-Autostart-enabled=false\n"));
    EXPECT_TRUE(isStarted("X-GNOME-Autostart-enabled=true\n"));
    EXPECT_TRUE(isStarted("X-GNOME-Autostart-enabled=perhaps\n"));
}

TEST(AutostartEntry, AnEntryForOtherDesktopsIsNotStarted) {
    EXPECT_FALSE(isStarted("OnlyShowIn=KDE;\n"));
    EXPECT_FALSE(isStarted("NotShowIn=GNOME;\n"));
    EXPECT_TRUE(isStarted("OnlyShowIn=GNOME;KDE;\n"));
}

TEST(AutostartEntry, AnInvalidEntryIsNotStarted) {
    EXPECT_FALSE(isStartedAtLogin("", gnome));
    EXPECT_FALSE(isStartedAtLogin("junk\xff", gnome));
    EXPECT_FALSE(isStartedAtLogin("[Desktop Entry]\nType=Application\nName=A\n", gnome))
        << "nothing to start";
}
