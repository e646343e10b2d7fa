#include "platform/linux/input/portal/PortalTypes.h"

#include <QDBusObjectPath>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

TEST(PortalTrigger, IsInThePortalsFormat) {
    EXPECT_EQ(portalTrigger({Qt::Key_Space, Qt::ControlModifier | Qt::AltModifier}), u"CTRL+ALT+space"_s);
    EXPECT_EQ(portalTrigger({Qt::Key_A, Qt::ShiftModifier | Qt::MetaModifier}), u"SHIFT+LOGO+a"_s);
}

TEST(PortalResponse, TheSessionMayBeAStringOrAnObjectPath) {
    const QString path = u"/org/freedesktop/portal/desktop/session/1_2/token"_s;
    EXPECT_EQ(sessionIn({{u"session_handle"_s, path}}), path);
    EXPECT_EQ(sessionIn({{u"session_handle"_s, QVariant::fromValue(QDBusObjectPath(path))}}), path);
}

TEST(PortalResponse, AnInvalidPathIsNotASession) {
    for (const QString& wrong : {u""_s, u"/"_s, u"a/b"_s, u"/a/"_s, u"/a//b"_s, u"/a b"_s, u"/\u00e9"_s,
                                 u'/' + QString(5000, u'a')}) {
        EXPECT_EQ(sessionIn({{u"session_handle"_s, wrong}}), QString()) << wrong.left(20).toStdString();
    }
    EXPECT_EQ(sessionIn({{u"session_handle"_s, QVariantList()}}), QString());
    EXPECT_EQ(sessionIn({}), QString());
}

TEST(PortalResponse, AnInvalidListOfShortcutsIsEmpty) {
    EXPECT_TRUE(shortcutsIn({}).isEmpty());
    EXPECT_TRUE(shortcutsIn({{u"shortcuts"_s, u"text"_s}}).isEmpty());
    EXPECT_TRUE(shortcutsIn({{u"shortcuts"_s, QStringList{u"toggle-1"_s}}}).isEmpty());
}
