#pragma once

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

} // namespace amberquill
