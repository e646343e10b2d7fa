#pragma once

#include <QByteArray>
#include <QString>
#include <memory>

namespace amberquill {

class FileSystem;
class MainQueue;

// A file of the user's with content that the program owns. The newest content is written in the background;
// changes that are made together are written once.
//
// Content that cannot be written stays in memory and is tried again, after pauses that grow from a second to
// five minutes; failures are only logged. A file with unknown content is renamed before a new one takes its
// place; if renaming fails, nothing is written. If the path leads to anything but a regular file, nothing is
// written either.
//
// Main thread only, except `flush`.
class WriteBehind {
public:
    // `path` is absolute; missing folders are created. `largest` is the largest possible content, in bytes.
    // Both services outlive this object and the work that it has posted.
    WriteBehind(MainQueue& queue, FileSystem& files, QString path, qint64 largest);
    WriteBehind(const WriteBehind&) = delete;
    WriteBehind& operator=(const WriteBehind&) = delete;
    // Content that was saved and has not failed yet is still written, but not tried again.
    ~WriteBehind();

    // The file was read and holds this content, so it need not be renamed. Called before the first save.
    void assumeHeld(const QByteArray& content);

    // From now on content that waits for the other file is written, or fails, before this file is written.
    void writeAfter(const WriteBehind& other);

    // Replaces the file's content soon, unless the file has this content already.
    void save(QByteArray content);

    // Tries again soon to write content that could not be written. Called when the cause may be gone.
    void tryAgain();

    // Writes waiting content on the calling thread, which may be any. Returns when it is on the disk or has
    // failed.
    void flush();

private:
    class Writer;

    std::shared_ptr<Writer> writer_; // shared with the work under way
};

} // namespace amberquill
