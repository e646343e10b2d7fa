#pragma once

#include <QAction>
#include <functional>

namespace amberquill {

// A menu's entry that does what it holds.
class ClosureMenuItem final : public QAction {
    Q_OBJECT

public:
    ClosureMenuItem(const QString& title, std::function<void()> handler, QObject* parent = nullptr);

private:
    void fire() const { handler_(); }

    std::function<void()> handler_;
};

} // namespace amberquill
