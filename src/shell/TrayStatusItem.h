#pragma once

#include "platform/MainQueue.h"
#include "platform/StatusItem.h"
#include "shell/StatusSymbol.h"

#include <QObject>
#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace amberquill {

class TrayHosts;

// The status item in whatever tray the desktop has. Made when it is to be seen and there is a tray: most
// desktops never need it.
class TrayStatusItem final : public QObject, public StatusItem {
    Q_OBJECT

public:
    // Both outlive the item.
    TrayStatusItem(TrayHosts& hosts, MainQueue& queue);
    ~TrayStatusItem() override;

    TrayStatusItem(const TrayStatusItem&) = delete;
    TrayStatusItem& operator=(const TrayStatusItem&) = delete;

    void setActions(Actions actions) override { actions_ = std::move(actions); }
    void setVisible(bool visible) override;
    [[nodiscard]] bool isVisible() const override { return isVisible_; }

    // Looks at the panel's colour again, now and when everything has been drawn: what covered it may be gone.
    void lookSoon();

private:
    template<typename Object>
    void letGo(std::unique_ptr<Object>& object);
    void make();
    void drop();
    void refill();
    void setTone(PanelTone tone);
    void look();

    TrayHosts& hosts_;
    MainQueue& queue_;
    bool isVisible_ = false;
    Actions actions_;
    std::unique_ptr<QMenu> menu_; // the tray shows it by itself: it is filled anew before each opening
    std::unique_ptr<QSystemTrayIcon> icon_;
    PanelTone tone_ = PanelTone::Unknown; // as the symbol is drawn for
    DelayedWork soon_;
    DelayedWork later_;
};

} // namespace amberquill
