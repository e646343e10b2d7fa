#pragma once

#include <QString>
#include <functional>

class QMenu;

namespace amberquill {

// The program's own small picture in the desktop's tray. A tray may come late, come back or never come: the
// item is there whenever one is.
class StatusItem {
public:
    // What a person does with it.
    struct Actions {
        std::function<void()> clicked;        // the plain click
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

// A desktop without a tray.
class NullStatusItem final : public StatusItem {
public:
    void setActions(Actions) override {}
    void setVisible(bool visible) override { isVisible_ = visible; }
    [[nodiscard]] bool isVisible() const override { return isVisible_; }

private:
    bool isVisible_ = false;
};

} // namespace amberquill
