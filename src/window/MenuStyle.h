#pragma once

#include <QProxyStyle>

namespace amberquill {

// The desktop's style for menus, which has no place for a check mark beside a picture: the flags beside the
// languages get the room that they are drawn for, and the mark stands at the end of the line.
class MenuStyle final : public QProxyStyle {
    Q_OBJECT

public:
    explicit MenuStyle(QObject* parent);

    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                         const QWidget* widget) const override;
};

} // namespace amberquill
