#pragma once

#include "platform/ActivationTokens.h"

namespace amberquill::desktop {

// Startup notification ids. The window manager lets a window that carries one come to the front unless the
// user has done something else since the click or key that the id tells the time of. Needs the application
// object, on X11. Answers at once.
class X11ActivationTokens final : public ActivationTokens {
public:
    void request(QWindow& window, const QString& applicationPath, std::function<void(QString)> then) override;

private:
    int starts_ = 0;
};

} // namespace amberquill::desktop
