#pragma once

#include "views/TextureItem.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// An application's icon, decoded for exactly the pixels that it covers. Until then the placeholder.
class AppIconTexture : public amberquill::TextureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged FINAL)
    // Added to every colour component: -0.3 darkens, 0 leaves the icon as it is.
    Q_PROPERTY(double brightness READ brightness WRITE setBrightness NOTIFY brightnessChanged FINAL)

public:
    explicit AppIconTexture(QQuickItem* parent = nullptr);

    [[nodiscard]] QString path() const { return path_; }
    void setPath(const QString& path);
    [[nodiscard]] double brightness() const { return brightness_; }
    void setBrightness(double brightness);

Q_SIGNALS:
    void pathChanged();
    void brightnessChanged();

protected:
    Painted paintTexture(double devicePixelRatio) override;

private:
    [[nodiscard]] int edge(double devicePixelRatio) const;

    QString path_;
    double brightness_ = 0;
};

// The soft shadow of the dragged icon. The item has the icon's place and size; the shadow reaches beyond the
// item.
class IconShadow : public amberquill::TextureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY changed FINAL) // of an application
    Q_PROPERTY(bool isFolder READ isFolder WRITE setIsFolder NOTIFY changed FINAL)

public:
    using TextureItem::TextureItem;

    [[nodiscard]] QString path() const { return path_; }
    void setPath(const QString& path);
    [[nodiscard]] bool isFolder() const { return isFolder_; }
    void setIsFolder(bool isFolder);

Q_SIGNALS:
    void changed();

protected:
    Painted paintTexture(double devicePixelRatio) override;

private:
    QString path_;
    bool isFolder_ = false;
};

} // namespace amberquill
