#include "window/ClosureMenuItem.h"

#include <utility>

namespace amberquill {

ClosureMenuItem::ClosureMenuItem(const QString& title, std::function<void()> handler, QObject* parent)
    : QAction(QString(title).replace(QLatin1Char('&'), QStringLiteral("&&")), parent)
    , handler_(std::move(handler)) {
    connect(this, &QAction::triggered, this, &ClosureMenuItem::fire);
}

} // namespace amberquill
