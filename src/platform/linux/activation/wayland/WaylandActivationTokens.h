#pragma once

#include "platform/ActivationTokens.h"
#include "platform/linux/activation/wayland/XdgActivation.h"
#include "platform/linux/environment/DataFolders.h"

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Tokens of the compositor that Qt is connected to. Made after the application object, on Wayland; destroyed
// before it.
class WaylandActivationTokens final : public ActivationTokens {
public:
    explicit WaylandActivationTokens(MainQueue& queue);

    void request(QWindow& window, const QString& applicationPath, std::function<void(QString)> then) override;

private:
    DataFolders folders_; // what an application's id depends on
    XdgActivation activation_;
};

} // namespace amberquill::desktop
