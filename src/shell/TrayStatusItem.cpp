#include "shell/TrayStatusItem.h"

#include "platform/TrayHosts.h"
#include "window/MenuStyle.h"

#include <QGuiApplication>
#include <QMenu>
#include <QPointer>
#include <QSystemTrayIcon>

namespace amberquill {

namespace {

// Seconds after which a panel has drawn itself anew that another window was put into.
constexpr double settledPanel = 1;

} // namespace

TrayStatusItem::TrayStatusItem(TrayHosts& hosts, MainQueue& queue)
    : hosts_(hosts)
    , queue_(queue) {}

TrayStatusItem::~TrayStatusItem() = default;

// What turns the item off may be its own menu, which goes on working with itself after that.
template<typename Object>
void TrayStatusItem::letGo(std::unique_ptr<Object>& object) {
    if (object != nullptr) {
        object->disconnect(this);
        object.release()->deleteLater();
    }
}

void TrayStatusItem::setVisible(bool visible) {
    isVisible_ = visible;
    if (!visible) {
        drop();
        return;
    }
    hosts_.follow(
        [this] {
            if (isVisible_ && icon_ == nullptr) {
                make();
            }
        },
        [this] { drop(); });
}

void TrayStatusItem::drop() {
    letGo(icon_);
    letGo(menu_);
}

void TrayStatusItem::make() {
    menu_ = std::make_unique<QMenu>();
    connect(menu_.get(), &QMenu::aboutToShow, this, [this] { refill(); });
    refill(); // a host asks for the entries before it asks to show them
    icon_ = std::make_unique<QSystemTrayIcon>();
    setTone(PanelTone::Unknown);
    icon_->setToolTip(QStringLiteral("Amberquill"));
    icon_->setContextMenu(menu_.get());
    connect(icon_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        const bool withControl = QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier);
        if (reason == QSystemTrayIcon::Trigger && !withControl) {
            actions_.clicked();
        } else if (reason == QSystemTrayIcon::Trigger) {
            menu_->popup(icon_->geometry().bottomLeft());
        }
    });
    icon_->show();
}

void TrayStatusItem::setTone(PanelTone tone) {
    tone_ = tone;
    icon_->setIcon(statusSymbol(tone, [self = QPointer(this)] {
        if (self != nullptr) {
            self->lookSoon();
        }
    }));
}

// Panels tell nothing of their colours. What changes them has the symbol drawn anew, as a rule.
void TrayStatusItem::lookSoon() {
    const auto look = [self = QPointer(this)] {
        if (self != nullptr) {
            self->look();
        }
    };
    soon_.cancel();
    soon_ = queue_.postAfter(0, look);
    later_.cancel();
    later_ = queue_.postAfter(settledPanel, look);
}

void TrayStatusItem::look() {
    if (icon_ == nullptr) {
        return;
    }
    const PanelTone tone = panelTone(hosts_.itemPicture());
    if (tone != tone_) {
        setTone(tone);
    }
}

void TrayStatusItem::refill() {
    const auto submenus = menu_->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    menu_->clear();
    qDeleteAll(submenus); // the entries that stood for them went with the others
    actions_.fillMenu(*menu_);
    MenuStyle::applyTo(*menu_);
    lookSoon();
}

} // namespace amberquill
