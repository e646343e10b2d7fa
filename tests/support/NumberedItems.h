#pragma once

#include "data/LaunchItem.h"

namespace amberquill {

// Applications whose paths are "0", "1", "2" and so on.
inline LaunchItems numberedApps(int count) {
    LaunchItems items;
    for (int i = 0; i < count; ++i) {
        items.push_back(LaunchItem::app(QString::number(i)));
    }
    return items;
}

} // namespace amberquill
