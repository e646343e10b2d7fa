#pragma once

#include <QString>

namespace amberquill {

// The folders of the program's files. Absolute, without a trailing slash; a folder need not exist.
struct Locations {
    QString home;               // the user's home folder
    QString applicationSupport; // data that the user would miss: the layout
    QString configuration;      // preferences
    QString caches;             // deletable at any time
    QString ownBundle;          // the launcher's own application bundle; empty when it is not in one
};

} // namespace amberquill
