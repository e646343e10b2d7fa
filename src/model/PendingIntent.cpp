#include "model/PendingIntent.h"

namespace amberquill {

void PendingIntent::schedule(const QString& key, double seconds, MainQueue::Work work) {
    if (key == key_) {
        return;
    }
    cancel();
    key_ = key;
    work_ = queue_.postAfter(seconds, [this, work = std::move(work)] {
        key_.clear();
        work();
    });
}

void PendingIntent::cancel() {
    work_.cancel();
    work_ = {};
    key_.clear();
}

} // namespace amberquill
