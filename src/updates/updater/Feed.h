#pragma once

#include "updates/updater/Signature.h"

#include <QByteArrayView>
#include <QSet>
#include <QString>
#include <QUrl>
#include <optional>
#include <vector>

// Update feeds: RSS 2.0 with the elements and attributes that describe a version of a program.
namespace amberquill {

inline constexpr qint64 maximumFeedBytes = qint64{5} * 1024 * 1024;
inline constexpr std::size_t maximumFeedItems = 1000;
inline constexpr qsizetype maximumFeedLine = 512; // letters of a title, a version, a channel
inline constexpr qsizetype maximumReleaseNotes = qsizetype{64} * 1024; // letters; longer ones are cut off
inline constexpr int maximumFeedDepth = 64;                            // elements in one another
// The time that the XML reader takes grows with the square of these.
inline constexpr qsizetype maximumFeedAttributes = 2000; // of one element
inline constexpr qsizetype maximumFeedNamespaces = 256;

// What an item offers to download.
struct FeedEnclosure {
    QUrl address;
    qint64 length = 0; // bytes; 0: not said, or not a size
    std::optional<Signature> signature;

    bool operator==(const FeedEnclosure&) const = default;
};

// One version of the program. All texts are plain; none has control characters in it but the line breaks of
// the notes.
struct FeedItem {
    QString title;
    QString version; // never empty
    QString shortVersion;
    QString minimumSystemVersion; // empty: any
    QString operatingSystem;      // empty: not said
    QString channel;              // empty: for everybody
    // What HTML in the feed says, without its tags: they are taken out, never acted on. Notes that the feed
    // itself calls plain are as they were written.
    QString releaseNotes;
    QUrl releaseNotesPage;                  // a page with them; invalid: none
    QUrl releasePage;                       // a page about the version; invalid: none
    std::optional<FeedEnclosure> enclosure; // none: the version is only to be read about

    // What people are shown.
    [[nodiscard]] const QString& shownVersion() const {
        return shortVersion.isEmpty() ? version : shortVersion;
    }

    bool operator==(const FeedItem&) const = default;
};

// Items without a version are left out. Entities of the document's own are not expanded: a feed that declares
// any is none, as is one that is too large, nested too deep or broken anywhere. `lettersRead`, where it is
// given: how much of the feed was read as XML before it was refused.
[[nodiscard]] std::optional<std::vector<FeedItem>> readFeed(QByteArrayView bytes,
                                                            qint64* lettersRead = nullptr);

// The newest item that is newer than what is installed and fits this system: for Linux or for no system in
// particular, on a system that is new enough, on one of the channels or for everybody. What the user has
// skipped hides itself and everything before it.
[[nodiscard]] std::optional<FeedItem> chooseUpdate(const std::vector<FeedItem>& items,
                                                   const QString& installedVersion,
                                                   const QString& systemVersion,
                                                   const QSet<QString>& channels,
                                                   const std::optional<QString>& skipped);

// This system's version, as feeds for Linux mean it: the kernel's leading numbers.
[[nodiscard]] QString systemVersion();

} // namespace amberquill
