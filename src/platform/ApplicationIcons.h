#pragma once

#include <QImage>
#include <QString>

namespace amberquill {

// Finds and decodes the picture of an application. Safe on any thread; called away from the main one.
class ApplicationIcons {
public:
    ApplicationIcons() = default;
    ApplicationIcons(const ApplicationIcons&) = delete;
    ApplicationIcons& operator=(const ApplicationIcons&) = delete;
    virtual ~ApplicationIcons() = default;

    // The application's icon as an image of exactly `edge` × `edge` device pixels (premultiplied ARGB, ratio
    // 1; an icon that is not square is centred). A null image: it has none, or none that can be read.
    [[nodiscard]] virtual QImage image(const QString& applicationPath, int edge) const = 0;

    // The icon for applications that have none of their own, in the same form. A null image: this desktop has
    // no such icon.
    [[nodiscard]] virtual QImage genericIcon(int edge) const = 0;

    // Drops cached contents of the icon folders: the next call reads them again.
    virtual void forget() = 0;

    // Frees resources for quick answers. Called when no icon was asked for during some seconds; the
    // next call may come at any time.
    virtual void rest() = 0;
};

} // namespace amberquill
