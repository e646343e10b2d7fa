#pragma once

#include "platform/FileSystem.h"

#include <QByteArray>
#include <QString>
#include <system_error>

// How PosixFileSystem replaces and renames files. Paths are absolute and UTF-8. Any thread.
namespace amberquill::desktop {

// Whether a path can be handed to the system: absolute and without a NUL.
[[nodiscard]] bool isUsablePath(const QString& path);

// FileSystem::writeAtomically: none, or why it failed. Then nothing has changed, and no temporary file is
// left.
[[nodiscard]] std::error_code replaceFile(const QByteArray& path, const QByteArray& content,
                                          NewFile newFile = NewFile::UserOnly);

// FileSystem::setAside.
[[nodiscard]] bool renameToFreeName(const QByteArray& path);

} // namespace amberquill::desktop
