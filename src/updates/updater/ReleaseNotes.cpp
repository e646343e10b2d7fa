// Own code and not QTextDocumentFragment::fromHtml, which, in Qt 6.4, opens local files that `@import` and
// `url()` name (a FIFO blocks it for ever), takes 9 s for 64 KB of nested tags (this code: 4 ms for 256 KB)
// and drops what follows a single `<`.
#include "updates/updater/ReleaseNotes.h"

#include <array>

namespace amberquill {
namespace {

constexpr QChar lineBreak(u'\n');

// Bidirectional formatting characters can make a text look like another one.
bool isBidiControl(QChar character) {
    const char16_t code = character.unicode();
    return (code >= u'\u202A' && code <= u'\u202E') || (code >= u'\u2066' && code <= u'\u2069');
}

bool isLineEnd(QChar character) {
    return character == lineBreak || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

bool isShown(QChar character) {
    return character.category() != QChar::Other_Control && !isBidiControl(character);
}

// Trims the text and cuts it off, never within a surrogate pair.
QString cut(QString text, qsizetype limit) {
    text = std::move(text).trimmed();
    if (text.size() <= limit) {
        return text;
    }
    text.truncate(limit > 0 && text.at(limit - 1).isHighSurrogate() ? limit - 1 : limit);
    return std::move(text).trimmed();
}

// Collects the text of an HTML document.
class Writer {
public:
    explicit Writer(qsizetype limit)
        : limit_(limit) {}

    [[nodiscard]] bool isFull() const { return text_.size() > limit_; }

    void add(QStringView text) {
        for (const QChar character : text) {
            if (character.isSpace() && character != QChar::Nbsp) {
                hasSpace_ = true;
            } else if (isShown(character)) {
                if (!isAtLineStart() && hasSpace_) {
                    text_ += u' ';
                }
                hasSpace_ = false;
                text_ += character == QChar::Nbsp ? QChar(u' ') : character;
            }
        }
    }

    // Ends the line. There is at most one empty line in a row.
    void breakLine() {
        hasSpace_ = false;
        if (!text_.isEmpty() && !text_.endsWith(QLatin1String("\n\n"))) {
            text_ += lineBreak;
        }
    }

    void beginLine() {
        if (!isAtLineStart()) {
            breakLine();
        }
    }

    [[nodiscard]] QString take() && { return cut(std::move(text_), limit_); }

private:
    [[nodiscard]] bool isAtLineStart() const { return text_.isEmpty() || text_.endsWith(lineBreak); }

    qsizetype limit_;
    QString text_;
    bool hasSpace_ = false; // white space since the last character
};

struct Named {
    QLatin1StringView name;
    char16_t character = 0;
};

constexpr std::array namedCharacters = {
    Named{QLatin1StringView("amp"), u'&'},         Named{QLatin1StringView("apos"), u'\''},
    Named{QLatin1StringView("bull"), u'\u2022'},   Named{QLatin1StringView("copy"), u'\u00A9'},
    Named{QLatin1StringView("gt"), u'>'},          Named{QLatin1StringView("hellip"), u'\u2026'},
    Named{QLatin1StringView("ldquo"), u'\u201C'},  Named{QLatin1StringView("lsquo"), u'\u2018'},
    Named{QLatin1StringView("lt"), u'<'},          Named{QLatin1StringView("mdash"), u'\u2014'},
    Named{QLatin1StringView("middot"), u'\u00B7'}, Named{QLatin1StringView("nbsp"), u'\u00A0'},
    Named{QLatin1StringView("ndash"), u'\u2013'},  Named{QLatin1StringView("quot"), u'"'},
    Named{QLatin1StringView("rdquo"), u'\u201D'},  Named{QLatin1StringView("rsquo"), u'\u2019'},
    Named{QLatin1StringView("times"), u'\u00D7'}};

// The character of the reference `&name;`; empty: it is not known.
QString referencedCharacter(QStringView name) {
    if (name.startsWith(u'#')) {
        const bool isHexadecimal = name.size() > 1 && name.at(1).toLower() == u'x';
        bool isNumber = false;
        const char32_t code = name.mid(isHexadecimal ? 2 : 1).toUInt(&isNumber, isHexadecimal ? 16 : 10);
        const bool isCharacter =
            isNumber && code != 0 && code <= QChar::LastValidCodePoint && !QChar::isSurrogate(code);
        return isCharacter ? QString::fromUcs4(&code, 1) : QString();
    }
    for (const Named& named : namedCharacters) {
        if (name == named.name) {
            return QString(QChar(named.character));
        }
    }
    return {};
}

bool isOneOf(QStringView name, std::initializer_list<QLatin1StringView> names) {
    return std::any_of(names.begin(), names.end(),
                       [name](auto other) { return name.compare(other, Qt::CaseInsensitive) == 0; });
}

// Reads HTML once from start to end.
class HtmlReader {
public:
    HtmlReader(QStringView text, qsizetype limit)
        : rest_(text)
        , writer_(limit) {}

    [[nodiscard]] qsizetype searched() const { return searched_; }

    QString read() {
        while (!rest_.isEmpty() && !writer_.isFull()) {
            const auto* const next =
                std::find_if(rest_.begin(), rest_.end(), [](QChar c) { return c == u'<' || c == u'&'; });
            searched_ += next - rest_.begin();
            writer_.add(QStringView(rest_.begin(), next));
            rest_ = QStringView(next, rest_.end());
            if (rest_.startsWith(u'<')) {
                takeTag();
            } else if (rest_.startsWith(u'&')) {
                takeReference();
            }
        }
        return std::move(writer_).take();
    }

private:
    void takeCharacter() {
        writer_.add(rest_.first(1));
        rest_ = rest_.mid(1);
    }

    // Skips up to and including the next `end`; without one, the rest.
    void skipThrough(QStringView end) {
        const qsizetype at = rest_.indexOf(end, 0, Qt::CaseInsensitive);
        searched_ += at < 0 ? rest_.size() : at + end.size();
        rest_ = at < 0 ? QStringView() : rest_.mid(at + end.size());
    }

    void takeReference() {
        constexpr qsizetype longestName = 10;
        const QStringView near = rest_.mid(1, longestName);
        const qsizetype end = near.indexOf(u';');
        const QString character = end > 0 ? referencedCharacter(near.first(end)) : QString();
        if (character.isEmpty()) {
            takeCharacter();
        } else {
            writer_.add(character);
            rest_ = rest_.mid(1 + end + 1);
        }
    }

    void takeTag() {
        if (rest_.startsWith(u"<!--")) {
            rest_ = rest_.mid(4);
            skipThrough(u"-->");
            return;
        }
        QStringView name = rest_.mid(1);
        const bool closes = name.startsWith(u'/');
        name = name.mid(closes ? 1 : 0);
        const auto* const end =
            std::find_if_not(name.begin(), name.end(), [](QChar c) { return c.isLetterOrNumber(); });
        name = QStringView(name.begin(), end);
        searched_ += name.size();
        const bool isDeclaration = !closes && rest_.mid(1, 1) == u"!";
        if (!isDeclaration && (name.isEmpty() || !name.first(1).at(0).isLetter())) {
            takeCharacter(); // "a < b"
            return;
        }
        skipThrough(u">");
        if (!closes && isOneOf(name, {QLatin1StringView("script"), QLatin1StringView("style")})) {
            skipThrough(name.at(1).toLower() == u'c' ? u"</script" : u"</style");
            skipThrough(u">");
            return;
        }
        breakLines(name, closes);
    }

    // Line breaks and bullets for an element.
    void breakLines(QStringView name, bool closes) {
        using View = QLatin1StringView;
        if (isOneOf(name, {View("br")})) {
            writer_.breakLine();
        } else if (isOneOf(name, {View("li")})) {
            writer_.beginLine();
            if (!closes) {
                writer_.add(u"\u2022\u00A0");
            }
        } else if (isOneOf(name,
                           {View("p"), View("h1"), View("h2"), View("h3"), View("h4"), View("h5"), View("h6"),
                            View("ul"), View("ol"), View("table"), View("pre"), View("blockquote")})) {
            writer_.beginLine();
            if (closes) {
                writer_.breakLine();
            }
        } else if (isOneOf(name, {View("div"), View("tr"), View("dt"), View("dd"), View("hr"), View("title"),
                                  View("head"), View("section"), View("article"), View("header")})) {
            writer_.beginLine();
        } else if (isOneOf(name, {View("td"), View("th")})) {
            writer_.add(u" ");
        }
    }

    QStringView rest_;
    Writer writer_;
    qsizetype searched_ = 0;
};

} // namespace

QString plainLine(QStringView text, qsizetype limit) {
    QString line;
    for (const QChar character : text) {
        if (character.isSpace()) {
            line += u' ';
        } else if (isShown(character)) {
            line += character;
        }
    }
    return cut(std::move(line).simplified(), limit);
}

QString plainLines(QStringView text, qsizetype limit) {
    QString lines;
    for (const QChar character : text) {
        if (isLineEnd(character)) {
            lines += lineBreak;
        } else if (character == u'\t') {
            lines += u' ';
        } else if (isShown(character)) { // drops carriage returns
            lines += character;
        }
    }
    return cut(std::move(lines), limit);
}

QString plainTextOfHtml(QStringView html, qsizetype limit, qsizetype* searched) {
    HtmlReader reader(html, limit);
    QString text = reader.read();
    if (searched != nullptr) {
        *searched = reader.searched();
    }
    return text;
}

} // namespace amberquill
