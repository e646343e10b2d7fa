#pragma once

#include <QAbstractAnimation>
#include <QObject>
#include <vector>

namespace amberquill {

class MainQueue;

// Something that moves and wants to be told the time.
class Moving {
public:
    Moving() = default;
    Moving(const Moving&) = delete;
    Moving& operator=(const Moving&) = delete;

    // Leaves the timeline.
    virtual ~Moving();

    // Moves to where it is at `now` (seconds). False once it rests.
    virtual bool advance(double now) = 0;
};

// Everything that moves now. While something does, `advance` is called once a frame by a FrameDriver; while
// nothing does, nothing runs. Main thread only.
class Timeline final : public QObject {
    Q_OBJECT

public:
    // The process's timeline.
    static Timeline& shared();

    // The clock; it outlives its use. Until this is called, nothing moves: every change jumps.
    void runOn(const MainQueue* queue) { queue_ = queue; }
    [[nodiscard]] bool isRunning() const { return queue_ != nullptr; }
    [[nodiscard]] double now() const;

    // Where the desktop asks for less motion, positions jump and fades are short.
    void setReduced(bool reduced) { reduced_ = reduced; }
    [[nodiscard]] bool isReduced() const { return reduced_; }

    void add(Moving& moving);
    void remove(Moving& moving);
    [[nodiscard]] bool isIdle() const { return moving_.empty(); }

    // One frame: everything that moves is moved to the present.
    void advance();

Q_SIGNALS:
    void started();
    void stopped();

private:
    const MainQueue* queue_ = nullptr;
    std::vector<Moving*> moving_;
    bool reduced_ = false;
};

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
