#include "platform/common/RootReaders.h"

#include "platform/common/Thread.h"

#include <QDeadlineTimer>
#include <QHash>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace amberquill {

namespace {

constexpr std::chrono::milliseconds lookEvery{50};

} // namespace

struct RootReaders::Job {
    std::atomic<unsigned> progress = 0;
    bool isDone = false;
    bool isGivenUp = false;
    std::shared_ptr<void> result;

    // As last seen by the waiting thread.
    unsigned seen = 0;
    QDeadlineTimer standstillEnds;
};

struct RootReaders::State {
    std::mutex mutex;
    std::condition_variable ended;
    QHash<QString, std::shared_ptr<Job>> underWay;
    QHash<QString, std::shared_ptr<void>> late; // results of readings that had been given up
    std::function<void()> answered;

    void end(const QString& key, Job& job, const std::shared_ptr<void>& result) {
        std::function<void()> tell;
        {
            const std::scoped_lock lock(mutex);
            job.isDone = true;
            underWay.remove(key);
            if (job.isGivenUp) {
                late.insert(key, result);
                tell = answered;
            } else {
                job.result = result;
            }
            ended.notify_all();
        }
        if (tell) {
            tell();
        }
    }
};

RootReaders::RootReaders(const ReadingBounds& bounds)
    : bounds_(bounds)
    , state_(std::make_shared<State>()) {}

RootReaders::~RootReaders() = default;

void RootReaders::setAnswered(std::function<void()> answered) {
    const std::scoped_lock lock(state_->mutex);
    state_->answered = std::move(answered);
}

bool RootReaders::isIdle() const {
    const std::scoped_lock lock(state_->mutex);
    return state_->underWay.isEmpty();
}

std::vector<std::shared_ptr<void>> RootReaders::run(const std::vector<Reading>& readings) {
    std::vector<std::shared_ptr<Job>> jobs;
    std::unique_lock lock(state_->mutex);
    for (const Reading& reading : readings) {
        auto job = std::make_shared<Job>();
        if (const auto late = state_->late.take(reading.key)) {
            job->isDone = true;
            job->result = late;
        } else if (state_->underWay.contains(reading.key)) {
            job->isGivenUp = true;
        } else {
            state_->underWay.insert(reading.key, job);
            const bool isStarted = startThread([state = state_, job, reading] {
                state->end(reading.key, *job, reading.read([&job] { ++job->progress; }));
            });
            if (!isStarted) {
                state_->underWay.remove(reading.key);
                job->isGivenUp = true;
            }
        }
        jobs.push_back(std::move(job));
    }
    const QDeadlineTimer end(bounds_.reading);
    for (const auto& job : jobs) {
        job->standstillEnds = QDeadlineTimer(bounds_.standstill);
    }
    const auto isOver = [](const std::shared_ptr<Job>& job) { return job->isDone || job->isGivenUp; };
    const auto allAreOver = [&] { return std::all_of(jobs.begin(), jobs.end(), isOver); };
    while (!state_->ended.wait_for(lock, lookEvery, allAreOver)) {
        for (const auto& job : jobs) {
            if (const unsigned progress = job->progress; progress != job->seen) {
                job->seen = progress;
                job->standstillEnds = QDeadlineTimer(bounds_.standstill);
            }
            if (!job->isDone && (end.hasExpired() || job->standstillEnds.hasExpired())) {
                job->isGivenUp = true;
            }
        }
    }
    std::vector<std::shared_ptr<void>> results;
    results.reserve(jobs.size());
    for (const auto& job : jobs) {
        results.push_back(std::move(job->result));
    }
    return results;
}

} // namespace amberquill
