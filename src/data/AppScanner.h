#pragma once

#include "data/LaunchItem.h"
#include "platform/ScannedFolders.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace amberquill {

class BundleInformation;
class FileSystem;
class RegisteredApplications;
class RootReaders;

// What a scan found. A list of applications stands for a scan that read all its folders.
struct ScanResult {
    ScanResult() = default;
    ScanResult(std::vector<AppInfo> found, ScannedFolders scanned = {})
        : apps(std::move(found))
        , folders(std::move(scanned)) {}

    std::vector<AppInfo> apps;
    ScannedFolders folders;
};

namespace AppScanner {

// What a scan asks. Everything referred to is safe on any thread and outlives the scan.
struct Services {
    const FileSystem& files;
    const BundleInformation& bundles;
    const RegisteredApplications& registered;
    QString home;                   // the user's home folder
    QString ownBundle;              // the launcher's own bundle, which is never listed; may be empty
    RootReaders* readers = nullptr; // read the folders side by side; null: this thread reads them
};

// The folders searched for application bundles, in order.
QStringList searchRoots(const QString& home);

// Every application installed, each once: the bundles below the search roots in listing order, depth first,
// then what the desktop has registered. Starts from nothing, never fails; what cannot be read is passed over
// and noted. Safe on any thread.
ScanResult scan(const Services& services);

} // namespace AppScanner

} // namespace amberquill
