#pragma once

#include "platform/MainBundle.h"

#include <QHash>
#include <QStringList>

namespace amberquill::desktop {

// The launcher's own values, from the first property list that can be read. Read once, at the first question.
// Main thread only.
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

// The candidates for the launcher's own list: in the bundle it runs from (`ownBundle`; empty: none), in the
// data folder it is installed with, and in a build tree. `program` is the launcher's path.
[[nodiscard]] QStringList mainBundlePaths(const QString& program, const QString& ownBundle);

} // namespace amberquill::desktop
