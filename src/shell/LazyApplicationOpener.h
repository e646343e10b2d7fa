#pragma once

#include "platform/ApplicationOpener.h"

#include <memory>
#include <utility>

namespace amberquill {

// Makes the real opener when it is first needed, so that its connections do not delay the first frame. Main
// thread only.
class LazyApplicationOpener final : public ApplicationOpener {
public:
    explicit LazyApplicationOpener(std::function<std::unique_ptr<ApplicationOpener>()> make)
        : make_(std::move(make)) {}

    void open(const QString& path, const QString& token, std::function<void(bool started)> done) override {
        opener().open(path, token, std::move(done));
    }
    void openPage(const QUrl& address, const QString& token,
                  std::function<void(bool started)> done) override {
        opener().openPage(address, token, std::move(done));
    }

    // Makes the opener now, before the first use has to wait for it.
    void prepare() { opener(); }

private:
    ApplicationOpener& opener() {
        if (!opener_) {
            opener_ = make_();
        }
        return *opener_;
    }

    std::function<std::unique_ptr<ApplicationOpener>()> make_;
    std::unique_ptr<ApplicationOpener> opener_;
};

} // namespace amberquill
