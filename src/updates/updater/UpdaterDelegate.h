#pragma once

#include "updates/updater/Feed.h"

#include <optional>

namespace amberquill {

enum class UpdateCheck { UserInitiated, Scheduled };

// Why a check or an update failed. The download is deleted, except after Download.
enum class UpdateError {
    NoFeed,         // the bundle names no feed
    FeedConnection, // the feed could not be fetched
    FeedContent,    // the feed could not be read
    NoDownload,     // the version has no valid download
    NoPublicKey,    // the bundle has no key to verify signatures with
    NoSignature,    // the version is not signed
    Download,       // the connection failed: the next attempt resumes the download
    WrongLength,
    WrongSignature,
    File,        // the download could not be written or read
    NotNewer,    // the downloaded program is not newer than this one, whatever the feed says
    Installation // the program could not be replaced
};

// Notified when the updater's windows appear and disappear. Called on the main thread.
class UpdaterDelegate {
public:
    UpdaterDelegate() = default;
    UpdaterDelegate(const UpdaterDelegate&) = delete;
    UpdaterDelegate& operator=(const UpdaterDelegate&) = delete;
    virtual ~UpdaterDelegate() = default;

    // Before an update is shown. `handlesShowingUpdate`: the updater's own user interface will show it.
    virtual void standardUserDriverWillHandleShowingUpdate(bool handlesShowingUpdate, const FeedItem& update,
                                                           UpdateCheck check) = 0;

    // After the last window of a check is closed.
    virtual void standardUserDriverWillFinishUpdateSession() = 0;

    // At the end of each check and its update, whether the user saw anything or not.
    virtual void didFinishUpdateCycle(UpdateCheck check, std::optional<UpdateError> error) = 0;
};

} // namespace amberquill
