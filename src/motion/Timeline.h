#pragma once

#include <QAbstractAnimation>
#include <QObject>
#include <vector>

namespace amberquill {

class MainQueue;

// A value in motion that is advanced each frame.
class Moving {
public:
    Moving() = default;
    Moving(const Moving&) = delete;
    Moving& operator=(const Moving&) = delete;

    // Removes it from the timeline.
    virtual ~Moving();

    // Advances to `now` (seconds). False: the motion has ended.
    virtual bool advance(double now) = 0;
};

// All values in motion. While there are any, a FrameDriver calls `advance` once a frame. Main thread only.
class Timeline final : public QObject {
    Q_OBJECT

public:
    // The process's timeline.
    static Timeline& shared();

    // The clock, which outlives its use. Without one, every change jumps.
    void runOn(const MainQueue* queue) { queue_ = queue; }
    [[nodiscard]] bool isRunning() const { return queue_ != nullptr; }
    [[nodiscard]] double now() const;

    // Reduced motion, as the desktop asks for it: positions jump and fades are short.
    void setReduced(bool reduced) { reduced_ = reduced; }
    [[nodiscard]] bool isReduced() const { return reduced_; }

    void add(Moving& moving);
    void remove(Moving& moving);
    [[nodiscard]] bool isIdle() const { return moving_.empty(); }

    // One frame.
    void advance();

Q_SIGNALS:
    void started();
    void stopped();

private:
    const MainQueue* queue_ = nullptr;
    std::vector<Moving*> moving_;
    bool reduced_ = false;
};

// Advances a timeline once a frame while it is not idle: at the display's rate where Qt Quick renders in step
// with the display, otherwise sixty times a second.
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
