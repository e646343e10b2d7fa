#include "shell/TrayStatusItem.h"

#include "platform/TrayHosts.h"
#include "window/MenuStyle.h"

#include <QGuiApplication>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

// Qt's macro for resources works in no namespace.
static void loadStatusSymbol() {
    Q_INIT_RESOURCE(amberquill_status);
}

namespace amberquill {

namespace {

QIcon statusIcon() {
    loadStatusSymbol();
    // White with a dark edge: no tray says whether it is light or dark.
    return QIcon(QStringLiteral(":/assets/square.grid.3x3.fill.svg"));
}

} // namespace

TrayStatusItem::TrayStatusItem(TrayHosts& hosts)
    : hosts_(hosts) {}

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
        letGo(icon_);
        letGo(menu_);
        return;
    }
    hosts_.follow([this] {
        if (isVisible_ && icon_ == nullptr) {
            make();
        }
    });
}

void TrayStatusItem::make() {
    menu_ = std::make_unique<QMenu>();
    connect(menu_.get(), &QMenu::aboutToShow, this, [this] { refill(); });
    refill(); // a host asks for the entries before it asks to show them
    icon_ = std::make_unique<QSystemTrayIcon>(statusIcon());
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

void TrayStatusItem::refill() {
    const auto submenus = menu_->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    menu_->clear();
    qDeleteAll(submenus); // the entries that stood for them went with the others
    actions_.fillMenu(*menu_);
    MenuStyle::applyTo(*menu_);
}

} // namespace amberquill
