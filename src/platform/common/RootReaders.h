#pragma once

#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace amberquill {

// After how long RootReaders gives a reading up.
struct ReadingBounds {
    std::chrono::milliseconds standstill{1'000}; // without progress
    std::chrono::milliseconds reading{5'000};    // even with progress
};

// Reads folders in parallel, each on a thread of its own, so that a mount that does not answer delays no
// other folder. A reading without progress is given up: it continues in the background, is not started a
// second time, and its result answers the next question for that folder. Safe on any thread.
class RootReaders {
public:
    // Called by a reading to report progress.
    using GoOn = std::function<void()>;

    explicit RootReaders(const ReadingBounds& bounds = {});
    RootReaders(const RootReaders&) = delete;
    RootReaders& operator=(const RootReaders&) = delete;
    ~RootReaders();

    // The results of `read` for the roots, null for a root that was given up. `kind` distinguishes readings
    // of the same folder for different purposes; one kind always has the same `Result`.
    template<typename Result, typename Read>
    std::vector<std::shared_ptr<Result>> readAll(const QString& kind, const QStringList& roots, Read read) {
        std::vector<Reading> readings;
        for (const QString& root : roots) {
            readings.push_back({kind + root, [read, root](const GoOn& goOn) -> std::shared_ptr<void> {
                                    return std::make_shared<Result>(read(root, goOn));
                                }});
        }
        std::vector<std::shared_ptr<Result>> results;
        for (const std::shared_ptr<void>& result : run(readings)) {
            results.push_back(std::static_pointer_cast<Result>(result));
        }
        return results;
    }

    // `answered` is called, on any thread, when a reading that was given up has ended.
    void setAnswered(std::function<void()> answered);

    // Whether no reading is running.
    [[nodiscard]] bool isIdle() const;

private:
    struct Reading {
        QString key;
        std::function<std::shared_ptr<void>(const GoOn&)> read;
    };
    struct Job;
    struct State;

    std::vector<std::shared_ptr<void>> run(const std::vector<Reading>& readings);

    ReadingBounds bounds_;
    std::shared_ptr<State> state_; // shared with the threads
};

// The same on the calling thread if there are no readers.
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
