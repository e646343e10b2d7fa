#include "shell/TrayStatusItem.h"

#include "platform/TrayHosts.h"
#include "shell/ShellLog.h"
#include "window/MenuStyle.h"

#include <QGuiApplication>
#include <QMenu>
#include <QSystemTrayIcon>

namespace amberquill {

namespace {

// Seconds in which a panel redraws itself around a new item.
constexpr double panelRedraw = 1;

const char* nameOf(PanelTone tone) {
    switch (tone) {
    case PanelTone::Light:
        return "light";
    case PanelTone::Dark:
        return "dark";
    case PanelTone::Unknown:
        break;
    }
    return "of unknown brightness";
}

} // namespace

TrayStatusItem::TrayStatusItem(TrayHosts& hosts, MainQueue& queue)
    : hosts_(hosts)
    , queue_(queue) {}

TrayStatusItem::~TrayStatusItem() = default;

// Deletes it later: the item's own menu may be what turns the item off.
template<typename Object>
void TrayStatusItem::discard(std::unique_ptr<Object>& object) {
    if (object != nullptr) {
        object->disconnect(this);
        object.release()->deleteLater();
    }
}

void TrayStatusItem::setVisible(bool visible) {
    isVisible_ = visible;
    if (!visible) {
        destroy();
        return;
    }
    const auto trayCame = [this] {
        if (isVisible_ && icon_ == nullptr) {
            make();
        }
    };
    hosts_.follow(context_.bind(trayCame), context_.bind([this] { destroy(); }));
}

void TrayStatusItem::destroy() {
    discard(icon_);
    discard(menu_);
}

void TrayStatusItem::make() {
    qCDebug(shellLog, "status item made");
    menu_ = std::make_unique<QMenu>();
    connect(menu_.get(), &QMenu::aboutToShow, this, [this] { refill(); });
    refill(); // some hosts read the entries before they open the menu
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
    icon_->setIcon(statusSymbol(tone, context_.bind([this] { updateToneSoon(); })));
}

// Trays do not announce their colours. A change of colour usually redraws the symbol.
void TrayStatusItem::updateToneSoon() {
    earlyUpdate_ = queue_.postAfter(0, [this] { updateTone(); });
    lateUpdate_ = queue_.postAfter(panelRedraw, [this] { updateTone(); });
}

void TrayStatusItem::updateTone() {
    if (icon_ == nullptr) {
        return;
    }
    const PanelTone tone = panelTone(hosts_.itemPicture());
    if (tone != tone_) {
        qCDebug(shellLog, "the panel is now %s", nameOf(tone));
        setTone(tone);
    }
}

void TrayStatusItem::refill() {
    const auto submenus = menu_->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    menu_->clear();
    qDeleteAll(submenus); // clear() deletes only their entries
    actions_.fillMenu(*menu_);
    MenuStyle::applyTo(*menu_);
    updateToneSoon();
}

} // namespace amberquill
