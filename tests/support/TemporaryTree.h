#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace amberquill {

// A temporary folder. Relative paths are below it; missing folders are created. A failure throws.
class TemporaryTree {
public:
    TemporaryTree() = default;
    TemporaryTree(const TemporaryTree&) = delete;
    TemporaryTree& operator=(const TemporaryTree&) = delete;
    // Unlike QTemporaryDir, also removes files whose names are not valid UTF-8.
    ~TemporaryTree() {
        std::error_code ignored;
        std::filesystem::remove_all(at(), ignored);
    }

    [[nodiscard]] QString path(const char* relative = "") const {
        return QString::fromStdString(at(relative).string());
    }

    [[nodiscard]] std::filesystem::path at(const std::filesystem::path& relative = {}) const {
        const std::filesystem::path root(folder_.path().toStdString());
        return relative.empty() ? root : root / relative;
    }

    QString makeFolder(const std::filesystem::path& relative) const {
        std::filesystem::create_directories(at(relative));
        return QString::fromStdString(at(relative).string());
    }

    QString write(const std::filesystem::path& relative, const QByteArray& content) const {
        std::filesystem::create_directories(at(relative).parent_path());
        std::ofstream file(at(relative), std::ios::binary | std::ios::trunc);
        file.write(content.constData(), content.size());
        file.close();
        if (!file) {
            throw std::runtime_error("cannot write " + at(relative).string());
        }
        return QString::fromStdString(at(relative).string());
    }

    // A symbolic link at `relative` with exactly this target.
    QString link(const std::filesystem::path& relative, const std::filesystem::path& target) const {
        std::filesystem::create_directories(at(relative).parent_path());
        std::filesystem::create_symlink(target, at(relative));
        return QString::fromStdString(at(relative).string());
    }

    [[nodiscard]] QByteArray read(const std::filesystem::path& relative) const {
        QFile file(QString::fromStdString(at(relative).string()));
        if (!file.open(QIODevice::ReadOnly)) {
            throw std::runtime_error("cannot read " + at(relative).string());
        }
        return file.readAll();
    }

    void remove(const std::filesystem::path& relative) const { std::filesystem::remove_all(at(relative)); }

private:
    QTemporaryDir folder_;
};

} // namespace amberquill
