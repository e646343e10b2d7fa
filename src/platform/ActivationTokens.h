#pragma once

#include <QString>
#include <functional>

class QWindow;

namespace amberquill {

// Tokens that let an application about to be opened come to the front: the Wayland protocol
// xdg-activation-v1, and startup notification ids on X11. Main thread only.
class ActivationTokens {
public:
    ActivationTokens() = default;
    ActivationTokens(const ActivationTokens&) = delete;
    ActivationTokens& operator=(const ActivationTokens&) = delete;
    virtual ~ActivationTokens() = default;

    // Asks for a token on behalf of `window`, which has the focus now. `then` is called exactly once, and
    // soon: with the token, or with an empty text if the desktop has none or does not answer.
    virtual void request(QWindow& window, const QString& applicationPath,
                         std::function<void(QString)> then) = 0;
};

class NullActivationTokens final : public ActivationTokens {
public:
    void request(QWindow&, const QString&, std::function<void(QString)> then) override { then({}); }
};

} // namespace amberquill
