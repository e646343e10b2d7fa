// The files installed for desktops and the session bus match the program's D-Bus object.

#include "platform/linux/session/ApplicationRequest.h"
#include "support/FixedEnvironment.h"
#include "support/TestPaths.h"

#include <QFile>
#include <QMap>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

// The groups of a file in the format of desktop entries: keys and their values.
using Groups = QMap<QByteArray, QMap<QByteArray, QByteArray>>;

QString packagingPath(const QString& name) {
    return projectFile(u"packaging/"_s + QString::fromUtf8(applicationBusName) + name);
}

Groups groupsOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QFile::ReadOnly)) << path.toStdString();
    Groups groups;
    QByteArray group;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith('[')) {
            group = line.mid(1, line.size() - 2);
        } else if (const auto equals = line.indexOf('='); equals > 0) {
            groups[group][line.first(equals)] = line.mid(equals + 1);
        }
    }
    return groups;
}

} // namespace

TEST(InstalledEntry, ItHasTheActionsOfTheApplicationObject) {
    const Groups entry = groupsOf(packagingPath(u".desktop.in"_s));
    QByteArrayList actions = entry[QByteArray("Desktop Entry")][QByteArray("Actions")].split(';');
    ASSERT_EQ(actions.takeLast(), "") << "the list ends with a semicolon";
    QList<ApplicationRequest::Kind> kinds;
    for (const QByteArray& action : actions) {
        const auto kind = actionKind(std::string_view(action.constData()));
        ASSERT_TRUE(kind) << action.toStdString();
        kinds.append(*kind);
        EXPECT_TRUE(entry.contains("Desktop Action " + action)) << action.toStdString();
    }
    using Kind = ApplicationRequest::Kind;
    EXPECT_EQ(kinds, (QList<Kind>{Kind::Toggle, Kind::Show, Kind::Hide}));
    EXPECT_EQ(entry.size(), 1 + actions.size()) << "no group without an action";
}

TEST(InstalledEntry, WithoutABusItsActionsDoTheSame) {
    const Groups entry = groupsOf(packagingPath(u".desktop.in"_s));
    for (auto group = entry.begin(); group != entry.end(); ++group) {
        const QByteArrayList words = group.value()[QByteArray("Exec")].split(' ');
        ASSERT_EQ(words.first(), "@AMBERQUILL_EXEC@");
        const auto startup = startupRequest(environmentOf({}), words.mid(1));
        if (group.key() == "Desktop Entry") {
            EXPECT_EQ(words.size(), 1);
            EXPECT_EQ(startup.request.kind, ApplicationRequest::Kind::Show);
        } else {
            EXPECT_EQ(startup.request.kind, actionKind(group.key().split(' ').last().toStdString()));
        }
    }
}

TEST(InstalledEntry, IsActivatedOverTheBus) {
    EXPECT_EQ(
        groupsOf(packagingPath(u".desktop.in"_s))[QByteArray("Desktop Entry")][QByteArray("DBusActivatable")],
        "true");
}

TEST(InstalledService, IsThatOfTheProgramsName) {
    const Groups service = groupsOf(packagingPath(u".service.in"_s));
    EXPECT_EQ(service[QByteArray("D-BUS Service")][QByteArray("Name")], applicationBusName);
}
