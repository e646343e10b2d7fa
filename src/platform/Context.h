#pragma once

#include <memory>
#include <utility>

namespace amberquill {

// What delayed and background work is bound to: bound work does nothing once its context is gone. A context
// is a member of the object that the work uses. It is declared last, so that it goes first. Main thread only;
// work that is bound may be copied and destroyed on any thread.
class Context {
public:
    Context() = default;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() = default;

    // `work` as a function that does nothing once this context is gone or has been reset. Called on the main
    // thread.
    template<typename Work>
    [[nodiscard]] auto bind(Work work) const {
        return [life = std::weak_ptr<const char>(life_), work = std::move(work)](auto&&... values) mutable {
            if (!life.expired()) {
                work(std::forward<decltype(values)>(values)...);
            }
        };
    }

    // Gone when what is bound now does nothing any more. May be asked on any thread.
    [[nodiscard]] std::weak_ptr<const char> life() const { return life_; }

    // All that was bound so far does nothing any more: nobody waits for those answers.
    void reset() { life_ = std::make_shared<const char>(); }

private:
    std::shared_ptr<const char> life_ = std::make_shared<const char>();
};

} // namespace amberquill
