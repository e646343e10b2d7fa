#pragma once

#include "platform/ScannedFolders.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace amberquill {

struct RegisteredApplication {
    QString path; // of the file that registers it, by which it is opened and its icon is found
    QString name; // in the user's language

    bool operator==(const RegisteredApplication&) const = default;
};

// The applications that are registered with the desktop, as opposed to bundles in the application folders.
// Safe on any thread.
class RegisteredApplications {
public:
    RegisteredApplications() = default;
    RegisteredApplications(const RegisteredApplications&) = delete;
    RegisteredApplications& operator=(const RegisteredApplications&) = delete;
    virtual ~RegisteredApplications() = default;

    // The applications to be listed, in a stable order. Appends the folders that were searched to `folders`.
    // Reads the disk, which takes a noticeable time with thousands of applications.
    [[nodiscard]] virtual std::vector<RegisteredApplication> list(ScannedFolders& folders) const = 0;
    [[nodiscard]] std::vector<RegisteredApplication> list() const {
        ScannedFolders ignored;
        return list(ignored);
    }

    // The folders whose changes may change the list, whether they exist or not.
    [[nodiscard]] virtual QStringList watchedFolders() const = 0;
};

} // namespace amberquill
