#pragma once

#include "views/TextureItem.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// A tile's name: one centred line of plain white text with a soft shadow, elided if it is wider than the
// item. Tall scripts and the shadow reach beyond the item instead of being clipped.
class LabelTexture : public amberquill::TextureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    Q_PROPERTY(double fontSize READ fontSize WRITE setFontSize NOTIFY fontSizeChanged FINAL) // points
    Q_PROPERTY(double brightness READ brightness WRITE setBrightness NOTIFY brightnessChanged FINAL)

public:
    using TextureItem::TextureItem;

    [[nodiscard]] QString text() const { return text_; }
    void setText(const QString& text);
    [[nodiscard]] double fontSize() const { return fontSize_; }
    void setFontSize(double fontSize);
    [[nodiscard]] double brightness() const { return brightness_; }
    void setBrightness(double brightness);

Q_SIGNALS:
    void textChanged();
    void fontSizeChanged();
    void brightnessChanged();

protected:
    Painted paintTexture(double devicePixelRatio) override;

private:
    QString text_;
    double fontSize_ = 12;
    double brightness_ = 0;
};

} // namespace amberquill
