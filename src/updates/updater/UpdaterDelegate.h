#pragma once

#include "updates/updater/Feed.h"

#include <optional>

namespace amberquill {

// Who asked for a check.
enum class UpdateCheck { UserInitiated, Scheduled };

// Why there is no update, or why it was refused. What was downloaded is deleted, but for `download`.
enum class UpdateError {
    NoFeed,         // the bundle names no feed
    FeedConnection, // the feed could not be fetched
    FeedContent,    // what was fetched is no feed
    NoDownload,     // the version has nothing to download, or does not say how much
    NoPublicKey,    // the bundle has no key to check with
    NoSignature,    // the version is not signed
    Download,       // the connection failed; the next attempt goes on where this one ended
    WrongLength,
    WrongSignature,
    File,        // it could not be kept
    NotNewer,    // what came is not newer than what is installed, whatever the feed says
    Installation // the program could not be replaced
};

// Is told when the updater's windows come and go. Called on the main thread.
class UpdaterDelegate {
public:
    UpdaterDelegate() = default;
    UpdaterDelegate(const UpdaterDelegate&) = delete;
    UpdaterDelegate& operator=(const UpdaterDelegate&) = delete;
    virtual ~UpdaterDelegate() = default;

    // Before an update is shown. `handlesShowingUpdate`: the updater's own user interface is about to.
    virtual void standardUserDriverWillHandleShowingUpdate(bool handlesShowingUpdate, const FeedItem& update,
                                                           UpdateCheck check) = 0;

    // After the last window of a check is gone.
    virtual void standardUserDriverWillFinishUpdateSession() = 0;

    // At the end of each check and all that came of it, seen by the user or not.
    virtual void didFinishUpdateCycle(UpdateCheck check, std::optional<UpdateError> error) = 0;
};

} // namespace amberquill
