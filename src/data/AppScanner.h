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

// What a scan found. A result made of a list alone is one whose folders have all been read.
struct ScanResult {
    ScanResult() = default;
    ScanResult(std::vector<AppInfo> found, ScannedFolders scanned = {})
        : apps(std::move(found))
        , folders(std::move(scanned)) {}

    std::vector<AppInfo> apps;
    ScannedFolders folders;
};

namespace AppScanner {

// What a scan needs. All of it is safe on any thread and outlives the scan.
struct Services {
    const FileSystem& files;
    const BundleInformation& bundles;
    const RegisteredApplications& registered;
    QString home;                   // the user's home folder
    QString ownBundle;              // the launcher's own bundle, which is never listed; empty: none
    RootReaders* readers = nullptr; // read the folders in parallel; null: this thread reads them
};

// The folders searched for application bundles, in order.
QStringList searchRoots(const QString& home);

// All installed applications, each once: the bundles below the search roots in listing order, depth first,
// then the registered applications. Keeps nothing from an earlier scan and never fails: a folder that cannot
// be read is skipped and noted. Safe on any thread.
ScanResult scan(const Services& services);

} // namespace AppScanner

} // namespace amberquill
