#pragma once

#include "data/LaunchItem.h"

#include <QPointF>
#include <QString>
#include <QUuid>
#include <optional>

namespace amberquill {

// What is being dragged.
struct DragInfo {
    QString id; // the item's identity
    LaunchItem item;
    std::optional<QUuid> fromFolder; // whose panel the application is dragged in; none on the page
    QPointF grabOffset;              // of the pointer from the dragged icon's centre, in points
    bool dropping = false;           // let go, gliding into its place

    bool operator==(const DragInfo&) const = default;
};

} // namespace amberquill
