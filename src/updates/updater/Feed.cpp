#include "updates/updater/Feed.h"

#include "updates/updater/AddressPolicy.h"
#include "updates/updater/ReleaseNotes.h"
#include "updates/updater/Version.h"

#include <QLoggingCategory>
#include <QSysInfo>
#include <QXmlStreamReader>

namespace amberquill {
namespace {

Q_LOGGING_CATEGORY(feedLog, "amberquill.updates", QtCriticalMsg)

constexpr QLatin1StringView versionNamespace("http://www.andymatuschak.org/xml-namespaces/sparkle");

// Longest HTML that is converted to notes.
constexpr qsizetype maximumMarkup = qsizetype{4} * maximumReleaseNotes;

// Whether the XML reader's time is linear in the text's length. A tag has no more attributes than there are
// `=` between its `<` and the next one. (Text and attribute values may contain `=`, too, but hardly as many.)
bool isLinearToParse(const QString& text) {
    qsizetype attributes = 0;
    for (const QChar character : text) {
        if (character == u'<') {
            attributes = 0;
        } else if (character == u'=' && ++attributes > maximumFeedAttributes) {
            return false;
        }
    }
    return text.count(u"xmlns") <= maximumFeedNamespaces;
}

// A text that decides about an item. None: it is too long. (Cut off, it would be another text.)
std::optional<QString> exactText(QStringView text) {
    QString line = plainLine(text, text.size());
    return line.size() <= maximumFeedLine ? std::optional(std::move(line)) : std::nullopt;
}

QUrl addressOf(QStringView text) {
    return QUrl(text.trimmed().toString(), QUrl::StrictMode);
}

// A page that may be opened, or an invalid address.
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

    [[nodiscard]] qint64 charactersRead() const { return xml_.characterOffset(); }

    [[nodiscard]] QString error() const {
        return xml_.hasError() ? xml_.errorString()
                               : QStringLiteral("no RSS, nested too deep, entities or too many items");
    }

    std::optional<std::vector<FeedItem>> read() {
        while (next()) {
            if (!xml_.isStartElement()) {
                continue;
            }
            if (depth_ == 1 && !isRssElement(u"rss")) {
                return std::nullopt;
            }
            if (depth_ == 3 && isInChannel_ && isRssElement(u"item")) {
                readItem();
            } else if (depth_ == 2) {
                isInChannel_ = isRssElement(u"channel");
            }
        }
        return isRefused_ || xml_.hasError() ? std::nullopt : std::optional(std::move(items_));
    }

private:
    // Reads the next token. False: the end of the feed, or an error.
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
            // Only an internal subset can declare entities.
            isRefused_ = xml_.text().contains(u'[');
            break;
        default:
            break;
        }
        return !isRefused_ && !xml_.hasError();
    }

    [[nodiscard]] bool isRssElement(QStringView name) const {
        return xml_.namespaceUri().isEmpty() && xml_.name() == name;
    }

    [[nodiscard]] bool isVersionElement(QStringView name) const {
        return xml_.namespaceUri() == versionNamespace && xml_.name() == name;
    }

    void skip() {
        for (const int outside = depth_ - 1; depth_ > outside && next();) {
        }
    }

    // The text of the element and the elements in it, cut off at `limit`.
    QString readText(qsizetype limit) {
        QString text;
        for (const int outside = depth_ - 1; depth_ > outside && next();) {
            if (xml_.isCharacters() && text.size() < limit) {
                text += xml_.text().left(limit - text.size());
            }
        }
        return text;
    }

    // The first of two elements with the same name counts.
    void readExactText(std::optional<QString>& value) {
        constexpr qsizetype limit = qsizetype{2} * maximumFeedLine;
        const QString whole = readText(limit);
        const auto text = whole.size() < limit ? exactText(whole) : std::nullopt;
        isValid_ = isValid_ && text.has_value();
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
            readAttribute(valueOf(u"version"), texts.version);
            readAttribute(valueOf(u"shortVersionString"), texts.shortVersion);
            readAttribute(valueOf(u"os"), texts.operatingSystem);
        }
        skip();
    }

    void readAttribute(QStringView value, std::optional<QString>& text) {
        text = exactText(value);
        isValid_ = isValid_ && text.has_value();
    }

    void readItem() {
        FeedItem item;
        VersionTexts ofElements;
        VersionTexts ofEnclosure;
        std::optional<QString> minimum;
        std::optional<QString> channel;
        isValid_ = true;
        for (const int outside = depth_ - 1; depth_ > outside && next();) {
            if (!xml_.isStartElement()) {
                continue;
            }
            if (isRssElement(u"title")) {
                const QString title = plainLine(readText(qsizetype{4} * maximumFeedLine), maximumFeedLine);
                item.title = item.title.isEmpty() ? title : item.title;
            } else if (isRssElement(u"description")) {
                readNotes(item.releaseNotes);
            } else if (isRssElement(u"link")) {
                readPage(item.releasePage);
            } else if (isRssElement(u"enclosure")) {
                readEnclosure(item.enclosure, ofEnclosure);
            } else if (isVersionElement(u"version")) {
                readExactText(ofElements.version);
            } else if (isVersionElement(u"shortVersionString")) {
                readExactText(ofElements.shortVersion);
            } else if (isVersionElement(u"minimumSystemVersion")) {
                readExactText(minimum);
            } else if (isVersionElement(u"channel")) {
                readExactText(channel);
            } else if (isVersionElement(u"releaseNotesLink")) {
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
        if (isValid_ && !item.version.isEmpty()) {
            isRefused_ = isRefused_ || items_.size() >= maximumFeedItems;
            items_.push_back(std::move(item));
        } else {
            qCDebug(feedLog) << "item skipped, no version or a text that is too long:" << item.title;
        }
    }

    QXmlStreamReader xml_;
    int depth_ = 0;
    bool isInChannel_ = false;
    bool isValid_ = true; // the current item: no text that decides about it is too long
    bool isRefused_ = false;
    std::vector<FeedItem> items_;
};

bool isMeantFor(const FeedItem& item, const QString& systemVersion, const QSet<QString>& channels) {
    const bool isForLinux = item.operatingSystem.isEmpty() ||
                            item.operatingSystem.compare(QLatin1String("linux"), Qt::CaseInsensitive) == 0;
    const bool isMeant =
        isForLinux && (item.channel.isEmpty() || channels.contains(item.channel)) &&
        (item.minimumSystemVersion.isEmpty() || !isNewer(item.minimumSystemVersion, systemVersion));
    if (!isMeant) {
        qCDebug(feedLog) << "version" << item.version << "passed over: for another system or channel";
    }
    return isMeant;
}

} // namespace

std::optional<std::vector<FeedItem>> readFeed(QByteArrayView bytes, qint64* charactersRead) {
    if (charactersRead != nullptr) {
        *charactersRead = 0;
    }
    if (bytes.size() > maximumFeedBytes || !bytes.isValidUtf8()) {
        qCDebug(feedLog) << "feed refused: too large, or not UTF-8";
        return std::nullopt;
    }
    const QString text = QString::fromUtf8(bytes);
    if (!isLinearToParse(text)) {
        qCDebug(feedLog) << "feed refused: too many attributes or namespaces";
        return std::nullopt;
    }
    FeedReader reader(text);
    auto items = reader.read();
    if (charactersRead != nullptr) {
        *charactersRead = reader.charactersRead();
    }
    if (!items) {
        qCDebug(feedLog) << "feed refused:" << reader.error();
    }
    return items;
}

FeedItem withAllowedLinks(FeedItem item, const QUrl& feed) {
    for (QUrl* page : {&item.releasePage, &item.releaseNotesPage}) {
        *page = mayLeadTo(feed, *page) ? *page : QUrl();
    }
    if (item.enclosure && !mayLeadTo(feed, item.enclosure->address)) {
        qCDebug(feedLog) << "download of version" << item.version
                         << "passed over, not allowed from this feed:"
                         << item.enclosure->address.toDisplayString();
        item.enclosure.reset();
    }
    return item;
}

std::optional<FeedItem> chooseUpdate(const std::vector<FeedItem>& items, const QString& installedVersion,
                                     const QString& systemVersion, const QSet<QString>& channels,
                                     const std::optional<QString>& skipped) {
    const FeedItem* newest = nullptr;
    for (const FeedItem& item : items) {
        if (isMeantFor(item, systemVersion, channels) &&
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
