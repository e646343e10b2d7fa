// Exchange files of any bytes: each is refused, or is written and read back unchanged. Qt reads every
// accepted text as JSON too, within its own limits: on nesting, and on numbers, which may be huge in keys
// that are ignored.
#include "Require.h"
#include "data/HomePaths.h"
#include "data/LayoutFile.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <cstdint>

using namespace amberquill;

namespace {

const HomeFolders& homes() {
    static const HomeFolders theHomes{QStringLiteral("/home/me"), [](const QString& user) {
                                          return user.size() == 3
                                                     ? std::optional(QStringLiteral("/home/") + user)
                                                     : std::nullopt;
                                      }};
    return theHomes;
}

void requireHomePath(const QString& path, TildeExpansion& tilde) {
    const QString expanded = tilde.expand(path);
    if (!path.startsWith(QLatin1Char('~'))) {
        require(expanded == path);
        require(tilde.expand(homeRelative(path, homes().own)) == path);
    }
}

// Whether every number of a JSON text follows the grammar (RFC 8259, section 6). Their size does not matter.
bool writesNumbersWell(const QByteArray& text) {
    static const QRegularExpression token(QStringLiteral(R"("(?:[^"\\]|\\.)*"|[-+.0-9][-+.0-9eE]*)"),
                                          QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression number(QRegularExpression::anchoredPattern(
        QStringLiteral(R"(-?(0|[1-9][0-9]*)(\.[0-9]+)?([eE][-+]?[0-9]+)?)")));
    auto tokens = token.globalMatch(QString::fromLatin1(text));
    while (tokens.hasNext()) {
        const QString found = tokens.next().captured();
        if (!found.startsWith(QLatin1Char('"')) && !number.match(found).hasMatch()) {
            return false;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto file = decodeLayoutFile(text);
    if (!file) {
        return 0;
    }
    QJsonParseError error;
    QJsonDocument::fromJson(text, &error);
    require(error.error == QJsonParseError::NoError || error.error == QJsonParseError::DeepNesting ||
            (error.error == QJsonParseError::IllegalNumber && writesNumbersWell(text)));
    require(decodeLayoutFile(encodeLayoutFile(*file)) == file);
    TildeExpansion tilde(homes());
    for (const LaunchItem& item : file->items) {
        if (const QString* path = item.asApp()) {
            requireHomePath(*path, tilde);
        } else {
            for (const QString& member : item.asFolder()->apps) {
                requireHomePath(member, tilde);
            }
        }
    }
    return 0;
}
