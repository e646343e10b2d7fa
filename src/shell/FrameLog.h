#pragma once

#include <QObject>

class QQuickWindow;

namespace amberquill {

// Tells a developer when frames reach the screen: with QT_LOGGING_RULES="amberquill.frames=true", a line per
// frame with the time on the monotonic clock (seconds) and whether every icon in it was a real one. Otherwise
// it does nothing.
class FrameLog final : public QObject {
    Q_OBJECT

public:
    explicit FrameLog(QQuickWindow& window, QObject* parent = nullptr);

private:
    bool complete_ = false;
};

} // namespace amberquill
