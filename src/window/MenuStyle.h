#pragma once

#include <QProxyStyle>

class QMenu;

namespace amberquill {

// The desktop's menu style with room for both a check mark and a picture, as the entries with flags need. The
// mark stands before the picture.
class MenuStyle final : public QProxyStyle {
    Q_OBJECT

public:
    // Sets the style of the menu and of its present submenus. The menu owns it; further calls use the same
    // one.
    static void applyTo(QMenu& menu);

    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                         const QWidget* widget) const override;

private:
    explicit MenuStyle(QObject* parent);
};

} // namespace amberquill
