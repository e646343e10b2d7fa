#pragma once

#include <QImage>
#include <functional>

namespace amberquill {

// The desktop's trays, which may come late, come back or never come. Main thread only.
class TrayHosts {
public:
    TrayHosts() = default;
    TrayHosts(const TrayHosts&) = delete;
    TrayHosts& operator=(const TrayHosts&) = delete;
    virtual ~TrayHosts() = default;

    // Calls `came` when there is a tray: soon, where there is one now, and each time that one comes. Calls
    // `gone` when no tray to come will see the item that was made: another has to be made then.
    virtual void follow(std::function<void()> came, std::function<void()> gone) = 0;

    // What is seen of the program's item in its tray now, in device pixels, with as much of its panel as is
    // behind it. Null where nothing tells: most trays draw items themselves.
    [[nodiscard]] virtual QImage itemPicture() const = 0;
};

// A desktop whose trays tell nothing: one is taken to be there.
class NullTrayHosts final : public TrayHosts {
public:
    void follow(std::function<void()> came, std::function<void()> /*gone*/) override { came(); }
    [[nodiscard]] QImage itemPicture() const override { return {}; }
};

} // namespace amberquill
