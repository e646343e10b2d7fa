#pragma once

#include <QProxyStyle>

class QMenu;

namespace amberquill {

// The desktop's style for menus, which has no place for a check mark beside a picture: the flags beside the
// languages get the room that they are drawn for, and the mark stands before them.
class MenuStyle final : public QProxyStyle {
    Q_OBJECT

public:
    // For the menu and its submenus of now. The style is the menu's and serves it when it is called again.
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
