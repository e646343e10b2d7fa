#pragma once

#include <memory>
#include <utility>

namespace amberquill {

// The lifetime of delayed and background work: work that is bound to a context does nothing once the context
// is destroyed. A context is a member of the object that the work uses, declared last, so that it is
// destroyed first. Main thread only; bound work may be copied and destroyed on any thread.
class Context {
public:
    Context() = default;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() = default;

    // A function that calls `work`, unless this context has been destroyed or reset. It is called on the main
    // thread.
    template<typename Work>
    [[nodiscard]] auto bind(Work work) const {
        return [life = std::weak_ptr<const char>(life_), work = std::move(work)](auto&&... values) mutable {
            if (!life.expired()) {
                work(std::forward<decltype(values)>(values)...);
            }
        };
    }

    // Expires when work that is bound now does nothing any more. May be checked on any thread.
    [[nodiscard]] std::weak_ptr<const char> life() const { return life_; }

    // Work that was bound so far does nothing from now on: its answers are no longer wanted.
    void reset() { life_ = std::make_shared<const char>(); }

private:
    std::shared_ptr<const char> life_ = std::make_shared<const char>();
};

} // namespace amberquill
