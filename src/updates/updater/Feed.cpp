#include "updates/updater/Feed.h"

#include "updates/updater/AddressPolicy.h"
#include "updates/updater/ReleaseNotes.h"
#include "updates/updater/Version.h"

#include <QSysInfo>
#include <QXmlStreamReader>

namespace amberquill {
namespace {

constexpr QLatin1StringView versionNamespace("http://www.andymatuschak.org/xml-namespaces/sparkle");

// Markup that notes may hold before it is taken out of them.
constexpr qsizetype maximumMarkup = qsizetype{4} * maximumReleaseNotes;

// Whether the XML reader is done with the text in a time that grows with its length alone. Between two `<`
// there is one tag, and what follows it: it has no more attributes than there are `=`. (In quoted text there
// may be more of either. Few feeds have that many there.)
bool isHarmless(const QString& text) {
    qsizetype attributes = 0;
    for (const QChar letter : text) {
        if (letter == u'<') {
            attributes = 0;
        } else if (letter == u'=' && ++attributes > maximumFeedAttributes) {
            return false;
        }
    }
    return text.count(u"xmlns") <= maximumFeedNamespaces;
}

// A text that is compared: cut off it would be another one, so one that is too long is none.
std::optional<QString> exactText(QStringView text) {
    QString line = plainLine(text, text.size());
    return line.size() <= maximumFeedLine ? std::optional(std::move(line)) : std::nullopt;
}

QUrl addressOf(QStringView text) {
    return QUrl(text.trimmed().toString(), QUrl::StrictMode);
}

// A page that may be shown to the user, or an invalid address.
QUrl pageOf(QStringView text) {
    const QUrl address = addressOf(text);
    return mayFetch(address) ? address : QUrl();
}

qint64 lengthOf(QStringView text) {
    bool isNumber = false;
    const qint64 length = text.toLongLong(&isNumber);
    return isNumber && length > 0 ? length : 0;
}

class FeedReader {
public:
    explicit FeedReader(const QString& text)
        : xml_(text) {}

    [[nodiscard]] qint64 lettersRead() const { return xml_.characterOffset(); }

    std::optional<std::vector<FeedItem>> read() {
        while (next()) {
            if (!xml_.isStartElement()) {
                continue;
            }
            if (depth_ == 1 && !isPlain(u"rss")) {
                return std::nullopt;
            }
            if (depth_ == 3 && isInChannel_ && isPlain(u"item")) {
                readItem();
            } else if (depth_ == 2) {
                isInChannel_ = isPlain(u"channel");
            }
        }
        return isRefused_ || xml_.hasError() ? std::nullopt : std::optional(std::move(items_));
    }

private:
    // Moves on to the next token. False: the end, or the end of what is taken.
    bool next() {
        if (isRefused_ || xml_.atEnd()) {
            return false;
        }
        switch (xml_.readNext()) {
        case QXmlStreamReader::StartElement:
            isRefused_ = ++depth_ > maximumFeedDepth;
            break;
        case QXmlStreamReader::EndElement:
            --depth_;
            break;
        case QXmlStreamReader::DTD:
            // One in the document itself is where entities are declared.
            isRefused_ = xml_.text().contains(u'[');
            break;
        default:
            break;
        }
        return !isRefused_ && !xml_.hasError();
    }

    [[nodiscard]] bool isPlain(QStringView name) const {
        return xml_.namespaceUri().isEmpty() && xml_.name() == name;
    }

    [[nodiscard]] bool isOfVersion(QStringView name) const {
        return xml_.namespaceUri() == versionNamespace && xml_.name() == name;
    }

    void skip() {
        for (const int outside = depth_ - 1; depth_ > outside && next();) {
        }
    }

    // All text in the element, and no more of it than `limit` letters.
    QString readText(qsizetype limit) {
        QString text;
        for (const int outside = depth_ - 1; depth_ > outside && next();) {
            if (xml_.isCharacters() && text.size() < limit) {
                text += xml_.text().left(limit - text.size());
            }
        }
        return text;
    }

    // Of two elements of one name the first counts.
    void readExactly(std::optional<QString>& value) {
        constexpr qsizetype limit = qsizetype{2} * maximumFeedLine;
        const QString whole = readText(limit);
        const auto text = whole.size() < limit ? exactText(whole) : std::nullopt;
        isJudgeable_ = isJudgeable_ && text.has_value();
        if (!value) {
            value = text;
        }
    }

    void readNotes(QString& notes) {
        const auto format = xml_.attributes().value(QString(versionNamespace), QStringLiteral("format"));
        const bool isMarkup = format != u"plain-text" && format != u"markdown";
        const QString text = readText(maximumMarkup);
        if (notes.isEmpty()) {
            notes =
                isMarkup ? plainTextOfHtml(text, maximumReleaseNotes) : plainLines(text, maximumReleaseNotes);
        }
    }

    void readPage(QUrl& page) {
        const QUrl address = pageOf(readText(maximumMarkup));
        if (!page.isValid()) {
            page = address;
        }
    }

    struct VersionTexts {
        std::optional<QString> version;
        std::optional<QString> shortVersion;
        std::optional<QString> operatingSystem;
    };

    void readEnclosure(std::optional<FeedEnclosure>& enclosure, VersionTexts& texts) {
        if (!enclosure) {
            const QXmlStreamAttributes attributes = xml_.attributes();
            const auto valueOf = [&attributes](const char16_t* name) {
                return attributes.value(QString(versionNamespace), QString::fromUtf16(name));
            };
            enclosure = FeedEnclosure{.address = addressOf(attributes.value(QStringLiteral("url"))),
                                      .length = lengthOf(attributes.value(QStringLiteral("length"))),
                                      .signature = readSignature(valueOf(u"edSignature").toString())};
            takeAttribute(valueOf(u"version"), texts.version);
            takeAttribute(valueOf(u"shortVersionString"), texts.shortVersion);
            takeAttribute(valueOf(u"os"), texts.operatingSystem);
        }
        skip();
    }

    void takeAttribute(QStringView value, std::optional<QString>& text) {
        text = exactText(value);
        isJudgeable_ = isJudgeable_ && text.has_value();
    }

    void readItem() {
        FeedItem item;
        VersionTexts ofElements;
        VersionTexts ofEnclosure;
        std::optional<QString> minimum;
        std::optional<QString> channel;
        isJudgeable_ = true;
        for (const int outside = depth_ - 1; depth_ > outside && next();) {
            if (!xml_.isStartElement()) {
                continue;
            }
            if (isPlain(u"title")) {
                const QString title = plainLine(readText(qsizetype{4} * maximumFeedLine), maximumFeedLine);
                item.title = item.title.isEmpty() ? title : item.title;
            } else if (isPlain(u"description")) {
                readNotes(item.releaseNotes);
            } else if (isPlain(u"link")) {
                readPage(item.releasePage);
            } else if (isPlain(u"enclosure")) {
                readEnclosure(item.enclosure, ofEnclosure);
            } else if (isOfVersion(u"version")) {
                readExactly(ofElements.version);
            } else if (isOfVersion(u"shortVersionString")) {
                readExactly(ofElements.shortVersion);
            } else if (isOfVersion(u"minimumSystemVersion")) {
                readExactly(minimum);
            } else if (isOfVersion(u"channel")) {
                readExactly(channel);
            } else if (isOfVersion(u"releaseNotesLink")) {
                readPage(item.releaseNotesPage);
            } else {
                skip();
            }
        }
        item.version = ofElements.version.value_or(ofEnclosure.version.value_or(QString()));
        item.shortVersion = ofElements.shortVersion.value_or(ofEnclosure.shortVersion.value_or(QString()));
        item.operatingSystem = ofEnclosure.operatingSystem.value_or(QString());
        item.minimumSystemVersion = minimum.value_or(QString());
        item.channel = channel.value_or(QString());
        if (isJudgeable_ && !item.version.isEmpty()) {
            isRefused_ = isRefused_ || items_.size() >= maximumFeedItems;
            items_.push_back(std::move(item));
        }
    }

    QXmlStreamReader xml_;
    int depth_ = 0;
    bool isInChannel_ = false;
    bool isJudgeable_ = true; // of the item that is read: nothing that decides about it is cut off
    bool isRefused_ = false;
    std::vector<FeedItem> items_;
};

bool fits(const FeedItem& item, const QString& systemVersion, const QSet<QString>& channels) {
    const bool isForSystem = item.operatingSystem.isEmpty() ||
                             item.operatingSystem.compare(QLatin1String("linux"), Qt::CaseInsensitive) == 0;
    return isForSystem && (item.channel.isEmpty() || channels.contains(item.channel)) &&
           (item.minimumSystemVersion.isEmpty() || !isNewer(item.minimumSystemVersion, systemVersion));
}

} // namespace

std::optional<std::vector<FeedItem>> readFeed(QByteArrayView bytes, qint64* lettersRead) {
    if (lettersRead != nullptr) {
        *lettersRead = 0;
    }
    if (bytes.size() > maximumFeedBytes || !bytes.isValidUtf8()) {
        return std::nullopt;
    }
    const QString text = QString::fromUtf8(bytes);
    if (!isHarmless(text)) {
        return std::nullopt;
    }
    FeedReader reader(text);
    auto items = reader.read();
    if (lettersRead != nullptr) {
        *lettersRead = reader.lettersRead();
    }
    return items;
}

std::optional<FeedItem> chooseUpdate(const std::vector<FeedItem>& items, const QString& installedVersion,
                                     const QString& systemVersion, const QSet<QString>& channels,
                                     const std::optional<QString>& skipped) {
    const FeedItem* newest = nullptr;
    for (const FeedItem& item : items) {
        if (fits(item, systemVersion, channels) &&
            (newest == nullptr || isNewer(item.version, newest->version))) {
            newest = &item;
        }
    }
    const bool isUpdate = newest != nullptr && isNewer(newest->version, installedVersion) &&
                          (!skipped || isNewer(newest->version, *skipped));
    return isUpdate ? std::optional(*newest) : std::nullopt;
}

QString systemVersion() {
    const QString version = QSysInfo::kernelVersion();
    const auto* const end = std::find_if_not(version.begin(), version.end(), [](QChar c) {
        return c == QLatin1Char('.') || (c >= QLatin1Char('0') && c <= QLatin1Char('9'));
    });
    return QString(version.begin(), end - version.begin());
}

} // namespace amberquill
