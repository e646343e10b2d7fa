#pragma once

#include <QString>
#include <functional>

class QMenu;

namespace amberquill {

// The program's item in the desktop's tray. A tray may appear late, restart or never appear: the item is
// shown whenever there is one.
class StatusItem {
public:
    // What the user's actions on the item do.
    struct Actions {
        std::function<void()> clicked;        // the primary button
        std::function<void(QMenu&)> fillMenu; // appends the menu's entries; called before each opening
    };

    StatusItem() = default;
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    virtual ~StatusItem() = default;

    virtual void setActions(Actions actions) = 0;
    virtual void setVisible(bool visible) = 0;
    [[nodiscard]] virtual bool isVisible() const = 0;
};

} // namespace amberquill
