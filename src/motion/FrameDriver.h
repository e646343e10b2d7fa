#pragma once

#include <QAbstractAnimation>

namespace amberquill {

class Timeline;

// Advances a timeline once a frame while something on it moves: at the display's own rate where the scene is
// drawn in step with it, sixty times a second elsewhere. Idle, it does not run at all.
class FrameDriver final : public QAbstractAnimation {
    Q_OBJECT

public:
    explicit FrameDriver(Timeline& timeline, QObject* parent = nullptr);

    [[nodiscard]] int duration() const override { return -1; }

protected:
    void updateCurrentTime(int milliseconds) override;

private:
    Timeline& timeline_;
};

} // namespace amberquill
