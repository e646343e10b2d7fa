#pragma once

#include "platform/MainBundle.h"

#include <QHash>
#include <QStringList>

namespace amberquill::desktop {

// What the first property list says that can be read. Read when it is first asked for anything, once. Main
// thread only.
class PropertyListMainBundle final : public MainBundle {
public:
    // Absolute paths.
    explicit PropertyListMainBundle(QStringList paths)
        : paths_(std::move(paths)) {}

    [[nodiscard]] std::optional<QString> text(const QString& key) const override;

private:
    QStringList paths_;
    mutable std::optional<QHash<QString, QString>> texts_;
};

// Where the launcher's own list may be: in the bundle it runs from (empty: in none), among the data of the
// folders it is installed in, beside it where it was built. `program` is its path.
[[nodiscard]] QStringList mainBundlePaths(const QString& program, const QString& ownBundle);

} // namespace amberquill::desktop
