#pragma once

#include "platform/ScannedFolders.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace amberquill {

struct RegisteredApplication {
    QString path; // of the file that registers it; opens it and finds its icon
    QString name; // as shown to a person, in the user's language

    bool operator==(const RegisteredApplication&) const = default;
};

// The applications that the desktop itself knows of, beside the bundles in the application folders.
// Safe on any thread.
class RegisteredApplications {
public:
    RegisteredApplications() = default;
    RegisteredApplications(const RegisteredApplications&) = delete;
    RegisteredApplications& operator=(const RegisteredApplications&) = delete;
    virtual ~RegisteredApplications() = default;

    // Those to be listed, in a stable order, and in `folders`, at its end, where they were looked for. Reads
    // the disk; takes a noticeable time with thousands.
    [[nodiscard]] virtual std::vector<RegisteredApplication> list(ScannedFolders& folders) const = 0;
    [[nodiscard]] std::vector<RegisteredApplication> list() const {
        ScannedFolders ignored;
        return list(ignored);
    }

    // The folders whose changes may change the list, whether they exist or not.
    [[nodiscard]] virtual QStringList watchedFolders() const = 0;
};

class NullRegisteredApplications final : public RegisteredApplications {
public:
    using RegisteredApplications::list;

    [[nodiscard]] std::vector<RegisteredApplication> list(ScannedFolders&) const override { return {}; }
    [[nodiscard]] QStringList watchedFolders() const override { return {}; }
};

} // namespace amberquill
