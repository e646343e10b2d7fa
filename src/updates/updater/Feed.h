#pragma once

#include "updates/updater/Signature.h"

#include <QByteArrayView>
#include <QSet>
#include <QString>
#include <QUrl>
#include <optional>
#include <vector>

// Update feeds: RSS 2.0 with elements and attributes that describe a version of a program. Texts are counted
// in UTF-16 units.
namespace amberquill {

inline constexpr qint64 maximumFeedBytes = qint64{5} * 1024 * 1024;
inline constexpr std::size_t maximumFeedItems = 1000;
inline constexpr qsizetype maximumFeedLine = 512;                      // a title, a version, a channel
inline constexpr qsizetype maximumReleaseNotes = qsizetype{64} * 1024; // longer notes are cut off
inline constexpr int maximumFeedDepth = 64;                            // nested elements
// The XML reader's time is quadratic in these.
inline constexpr qsizetype maximumFeedAttributes = 2000; // of one element
inline constexpr qsizetype maximumFeedNamespaces = 256;

// The download of an item.
struct FeedEnclosure {
    QUrl address;
    qint64 length = 0; // bytes; 0: missing or invalid
    std::optional<Signature> signature;

    bool operator==(const FeedEnclosure&) const = default;
};

// One version of the program. All texts are plain and without control characters, except the line breaks of
// the notes.
struct FeedItem {
    QString title;
    QString version; // never empty
    QString shortVersion;
    QString minimumSystemVersion; // empty: any
    QString operatingSystem;      // empty: any
    QString channel;              // empty: for everybody
    // HTML is converted to plain text. Notes that the feed marks as plain are unchanged.
    QString releaseNotes;
    QUrl releaseNotesPage;                  // invalid: none
    QUrl releasePage;                       // a page about the version; invalid: none
    std::optional<FeedEnclosure> enclosure; // none: nothing to download

    // The version to show to the user.
    [[nodiscard]] const QString& shownVersion() const {
        return shortVersion.isEmpty() ? version : shortVersion;
    }

    bool operator==(const FeedItem&) const = default;
};

// Skips items without a version. None: the feed is too large, nested too deep, declares entities or has any
// syntax error. `charactersRead`, if not null, receives how much of the feed was parsed as XML. Any thread.
[[nodiscard]] std::optional<std::vector<FeedItem>> readFeed(QByteArrayView bytes,
                                                            qint64* charactersRead = nullptr);

// The item without the links that a feed at this address may not have.
[[nodiscard]] FeedItem withAllowedLinks(FeedItem item, const QUrl& feed);

// The newest item that is newer than the installed version and is meant for this system: for Linux or any
// operating system, for this system version or an earlier one, for one of the channels or for everybody. A
// skipped version hides itself and all versions before it.
[[nodiscard]] std::optional<FeedItem> chooseUpdate(const std::vector<FeedItem>& items,
                                                   const QString& installedVersion,
                                                   const QString& systemVersion,
                                                   const QSet<QString>& channels,
                                                   const std::optional<QString>& skipped);

// The system version that feeds for Linux compare with: the leading numbers of the kernel's version.
[[nodiscard]] QString systemVersion();

} // namespace amberquill
