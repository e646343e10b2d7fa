#pragma once

#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace amberquill {

// Reads folders side by side, each on a thread of its own, so that one on a mount that does not answer keeps
// no other waiting. A folder whose reading gets no further is given up. Its reading goes on and is not begun
// a second time; what it comes to in the end is the answer to the next question for it. Safe on any thread.
class RootReaders {
public:
    // Tells that the reading gets on.
    using GoOn = std::function<void()>;

    // A reading that gets no further for so long is given up.
    explicit RootReaders(std::chrono::milliseconds longestStandstill = std::chrono::seconds(1));
    RootReaders(const RootReaders&) = delete;
    RootReaders& operator=(const RootReaders&) = delete;
    ~RootReaders();

    // What `read` answers for each of the roots, null for one that was given up. `kind` tells readings of one
    // folder for different purposes apart, and always stands for the same `Result`.
    template<typename Result, typename Read>
    std::vector<std::shared_ptr<Result>> readAll(const QString& kind, const QStringList& roots, Read read) {
        std::vector<Reading> readings;
        for (const QString& root : roots) {
            readings.push_back({kind + root, [read, root](const GoOn& goOn) -> std::shared_ptr<void> {
                                    return std::make_shared<Result>(read(root, goOn));
                                }});
        }
        std::vector<std::shared_ptr<Result>> results;
        for (const std::shared_ptr<void>& result : run(std::move(readings))) {
            results.push_back(std::static_pointer_cast<Result>(result));
        }
        return results;
    }

    // Called, on any thread, when a reading that was given up has come to its end.
    void setAnswered(std::function<void()> answered);

    // Whether no reading is under way.
    [[nodiscard]] bool isIdle() const;

private:
    struct Reading {
        QString key;
        std::function<std::shared_ptr<void>(const GoOn&)> read;
    };
    struct Job;
    struct State;

    std::vector<std::shared_ptr<void>> run(std::vector<Reading> readings);

    std::chrono::milliseconds longestStandstill_;
    std::shared_ptr<State> state_; // shared with the threads
};

// The same on this thread where there are no readers.
template<typename Result, typename Read>
std::vector<std::shared_ptr<Result>> readRoots(RootReaders* readers, const QString& kind,
                                               const QStringList& roots, Read read) {
    if (readers != nullptr) {
        return readers->readAll<Result>(kind, roots, std::move(read));
    }
    std::vector<std::shared_ptr<Result>> results;
    for (const QString& root : roots) {
        results.push_back(std::make_shared<Result>(read(root, [] {})));
    }
    return results;
}

} // namespace amberquill
