#pragma once

#include "platform/StatusItem.h"

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
    // The trays outlive the item.
    explicit TrayStatusItem(TrayHosts& hosts);
    ~TrayStatusItem() override;

    TrayStatusItem(const TrayStatusItem&) = delete;
    TrayStatusItem& operator=(const TrayStatusItem&) = delete;

    void setActions(Actions actions) override { actions_ = std::move(actions); }
    void setVisible(bool visible) override;
    [[nodiscard]] bool isVisible() const override { return isVisible_; }

private:
    template<typename Object>
    void letGo(std::unique_ptr<Object>& object);
    void make();
    void refill();

    TrayHosts& hosts_;
    bool isVisible_ = false;
    Actions actions_;
    std::unique_ptr<QMenu> menu_; // the tray shows it by itself: it is filled anew before each opening
    std::unique_ptr<QSystemTrayIcon> icon_;
};

} // namespace amberquill
