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

    // Shows a page of the web in the application that the user has for these. Addresses of another scheme
    // than https are not opened: they may name files and programs. Everything else as above.
    virtual void openPage(const QUrl& address, const QString& token,
                          std::function<void(bool started)> done) = 0;
};

class NullApplicationOpener final : public ApplicationOpener {
public:
    void open(const QString&, const QString&, std::function<void(bool)> done) override { done(false); }
    void openPage(const QUrl&, const QString&, std::function<void(bool)> done) override { done(false); }
};

} // namespace amberquill
