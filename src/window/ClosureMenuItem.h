#pragma once

#include <QAction>
#include <functional>
#include <utility>

namespace amberquill {

// A menu's entry that runs a closure when it is chosen. The title is shown as it is: no letter of it is a
// mnemonic.
class ClosureMenuItem final : public QAction {
    Q_OBJECT

public:
    ClosureMenuItem(const QString& title, std::function<void()> handler, QObject* parent = nullptr)
        : QAction(QString(title).replace(QLatin1Char('&'), QStringLiteral("&&")), parent)
        , handler_(std::move(handler)) {
        connect(this, &QAction::triggered, this, &ClosureMenuItem::fire);
    }

private:
    void fire() const { handler_(); }

    std::function<void()> handler_;
};

} // namespace amberquill
