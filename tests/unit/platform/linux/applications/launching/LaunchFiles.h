#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace amberquill {

// A home folder for applications to launch.
class LaunchFiles {
public:
    [[nodiscard]] QString home() const { return folder_.path(); }
    [[nodiscard]] QString path(const QString& name) const { return folder_.filePath(name); }

    // A file below the home folder; its path.
    QString write(const QString& name, const QByteArray& content, bool executable = false) const {
        const QString file = path(name);
        QDir().mkpath(file.section(QLatin1Char('/'), 0, -2));
        QFile written(file);
        EXPECT_TRUE(written.open(QIODevice::WriteOnly));
        EXPECT_EQ(written.write(content), content.size());
        if (executable) {
            written.setPermissions(written.permissions() | QFile::ExeOwner);
        }
        return file;
    }

    // A desktop file among the user's applications; `keys` are its lines without the group, the type and the
    // name.
    QString writeEntry(const QString& name, const QString& keys) const {
        return write(QStringLiteral(".local/share/applications/") + name,
                     "[Desktop Entry]\nType=Application\nName=The Calculator\n" + keys.toUtf8());
    }

    QString writePropertyList(const QString& name, const QByteArray& keys) const {
        return write(name, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" +
                               keys + "</dict></plist>\n");
    }

private:
    QTemporaryDir folder_;
};

} // namespace amberquill
