#include "shell/TrayStatusItem.h"

#include "platform/TrayHosts.h"
#include "support/ManualQueue.h"
#include "support/PlatformFakes.h"
#include "window/MenuStyle.h"

#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class TrayStatusItemTest : public testing::Test {
protected:
    TrayStatusItemTest() {
        item_.setActions({[] {},
                          [this](QMenu& menu) {
                              menu.addMenu(u"Settings"_s)->addMenu(u"Grid"_s);
                              menu.addAction(u"Show in Menu Bar"_s, [this] { chosen_(); });
                          }});
        item_.setVisible(true);
    }

    // All menus, submenus included.
    static QList<QMenu*> menus() {
        QList<QMenu*> found;
        for (QWidget* widget : QApplication::allWidgets()) {
            if (auto* menu = qobject_cast<QMenu*>(widget)) {
                found += menu;
            }
        }
        return found;
    }

    static QMenu* menu() {
        for (QMenu* menu : menus()) {
            if (menu->parent() == nullptr) {
                return menu;
            }
        }
        return nullptr;
    }

    SilentTray hosts_;
    ManualQueue queue_;
    std::function<void()> chosen_;
    TrayStatusItem item_{hosts_, queue_};
};

} // namespace

TEST_F(TrayStatusItemTest, TurnedOffFromItsOwnMenuItLivesUntilTheHandlerReturns) {
    const QPointer<QMenu> shown = menu();
    ASSERT_NE(shown, nullptr);
    bool wasThere = false;
    chosen_ = [&] {
        item_.setVisible(false);
        wasThere = shown != nullptr;
    };
    shown->actions().constLast()->trigger();
    EXPECT_TRUE(wasThere);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(menus(), QList<QMenu*>());
}

TEST_F(TrayStatusItemTest, TheMenuHasTheLaunchersStyle) {
    for (int openings = 0; openings < 2; ++openings) {
        Q_EMIT menu()->aboutToShow();
        for (const QMenu* each : menus()) {
            EXPECT_NE(qobject_cast<MenuStyle*>(each->style()), nullptr);
        }
    }
}

TEST_F(TrayStatusItemTest, EachOpeningReplacesTheEntries) {
    const auto atFirst = menus().size();
    for (int openings = 0; openings < 3; ++openings) {
        Q_EMIT menu()->aboutToShow();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(menus().size(), atFirst);
    }
}
