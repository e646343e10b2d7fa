#pragma once

#include <QByteArray>
#include <QString>
#include <memory>

namespace amberquill {

class FileSystem;
class MainQueue;

// One file of the user's whose content the program keeps. The newest content is written away from the main
// thread, several changes made together as one; content that was overtaken is not written at all.
//
// What cannot be written now stays in memory and is tried again, after pauses that grow from a second to five
// minutes. Nobody is told. A file whose content the program does not know is set aside before something takes
// its place; where that fails, nothing is written. Where the path leads to something other than a regular
// file, nothing is written either, and one warning is logged.
//
// Main thread only, but for `flush`.
class WriteBehind {
public:
    // `path` is absolute; its missing folders are made. `largest` is the most content there can be, in bytes.
    // Both services outlive this object and the work it has posted.
    WriteBehind(MainQueue& queue, FileSystem& files, QString path, qint64 largest);
    WriteBehind(const WriteBehind&) = delete;
    WriteBehind& operator=(const WriteBehind&) = delete;
    // What was saved and has not failed yet is still written; nothing is tried again.
    ~WriteBehind();

    // The file was read, and this is what it holds: it need not be set aside. Called before the first save.
    void assumeHeld(const QByteArray& content);

    // From now on what waits for the other file is written, or fails, before this one's content is written.
    void writeAfter(const WriteBehind& other);

    // Replaces the file's content soon, unless it is this already.
    void save(QByteArray content);

    // Writes soon what could not be written before. For when the cause may be gone.
    void tryAgain();

    // Writes on this thread, which may be any, what waits. Returns when it is on the disk, or has failed.
    void flush();

private:
    class Writer;

    std::shared_ptr<Writer> writer_; // shared with the work under way
};

} // namespace amberquill
