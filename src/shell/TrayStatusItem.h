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

// The status item in the desktop's tray. The Qt objects are made only when the item is turned on and there is
// a tray.
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

    // Reads the panel's colour again, soon and once more when the panel has been redrawn.
    void updateToneSoon();

private:
    template<typename Object>
    void discard(std::unique_ptr<Object>& object);
    void make();
    void destroy();
    void refill();
    void setTone(PanelTone tone);
    void updateTone();

    TrayHosts& hosts_;
    MainQueue& queue_;
    bool isVisible_ = false;
    Actions actions_;
    std::unique_ptr<QMenu> menu_; // filled again before each opening
    std::unique_ptr<QSystemTrayIcon> icon_;
    PanelTone tone_ = PanelTone::Unknown; // that the symbol is drawn for
    DelayedWork earlyUpdate_;
    DelayedWork lateUpdate_;
    Context context_;
};

} // namespace amberquill
