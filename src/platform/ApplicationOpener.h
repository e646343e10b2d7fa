#pragma once

#include <QString>
#include <QUrl>
#include <functional>

namespace amberquill {

// Starts applications, the browser among them. Main thread only.
class ApplicationOpener {
public:
    ApplicationOpener() = default;
    ApplicationOpener(const ApplicationOpener&) = delete;
    ApplicationOpener& operator=(const ApplicationOpener&) = delete;
    virtual ~ApplicationOpener() = default;

    // Opens the application at `path` without waiting for it. `token` (may be empty) is one of
    // ActivationTokens'. `done` is called once, on the main thread: true when the application was started,
    // false when it could not be.
    virtual void open(const QString& path, const QString& token, std::function<void(bool started)> done) = 0;

    // Opens a web page in the user's browser. Only https addresses are opened: others may name files and
    // programs. `token` and `done` as above.
    virtual void openPage(const QUrl& address, const QString& token,
                          std::function<void(bool started)> done) = 0;
};

} // namespace amberquill
