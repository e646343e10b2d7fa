#pragma once

#include <QObject>

class QQuickWindow;

namespace amberquill {

// Tells a developer when frames reach the screen: with QT_LOGGING_RULES="amberquill.frames=true", a line per
// frame with the time on the monotonic clock (seconds), whether every icon in it was a real one, and the
// seconds from the moment it was begun. Otherwise it does nothing.
class FrameLog final : public QObject {
    Q_OBJECT

public:
    explicit FrameLog(QQuickWindow& window, QObject* parent = nullptr);

private:
    bool complete_ = false;
    double begun_ = 0;
};

} // namespace amberquill
