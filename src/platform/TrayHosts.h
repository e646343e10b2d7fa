#pragma once

#include <QImage>
#include <functional>

namespace amberquill {

// The desktop's trays, which may appear late, restart or never appear. Main thread only.
class TrayHosts {
public:
    TrayHosts() = default;
    TrayHosts(const TrayHosts&) = delete;
    TrayHosts& operator=(const TrayHosts&) = delete;
    virtual ~TrayHosts() = default;

    // Calls `came` when there is a tray: soon, if there is one now, and each time that one appears. Calls
    // `gone` when no later tray will see the existing item: a new one has to be made then.
    virtual void follow(std::function<void()> came, std::function<void()> gone) = 0;

    // The program's item as its tray shows it now, in device pixels, with the part of the panel behind it.
    // Null: not known. Most trays draw items themselves and cannot be asked.
    [[nodiscard]] virtual QImage itemPicture() const = 0;
};

} // namespace amberquill
