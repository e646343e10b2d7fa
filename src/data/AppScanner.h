#pragma once

#include "data/LaunchItem.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace amberquill {

class BundleInformation;
class FileSystem;
class RegisteredApplications;

namespace AppScanner {

// What a scan asks. Everything referred to is safe on any thread and outlives the scan.
struct Services {
    const FileSystem& files;
    const BundleInformation& bundles;
    const RegisteredApplications& registered;
    QString home;      // the user's home folder
    QString ownBundle; // the launcher's own bundle, which is never listed; may be empty
};

// The folders searched for application bundles, in order.
QStringList searchRoots(const QString& home);

// Every application installed, each once: the bundles below the search roots in listing order, depth first,
// then what the desktop has registered. Starts from nothing, never fails; what cannot be read is passed over.
// Safe on any thread.
std::vector<AppInfo> scan(const Services& services);

} // namespace AppScanner

} // namespace amberquill
