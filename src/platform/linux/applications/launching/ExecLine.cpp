#include "platform/linux/applications/launching/ExecLine.h"

namespace amberquill::desktop {

namespace {

// The kernel takes 128 KiB in one argument. No real line has a third of that.
constexpr qsizetype maximumLine = qsizetype{48} * 1024;
constexpr qsizetype maximumWords = 4096;
// A short line of many codes and a long name must not multiply into gigabytes.
constexpr qsizetype maximumVector = qsizetype{128} * 1024;

bool isSeparator(QChar c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

// Reads one line from left to right. The functions advance past what they read, and return false if the line
// ends too early.
class WordReader {
public:
    explicit WordReader(QStringView line)
        : rest_(line) {}

    // The next word; none at the end or when isMalformed() has become true.
    std::optional<QString> next() {
        while (!rest_.isEmpty() && isSeparator(rest_.front())) {
            rest_ = rest_.sliced(1);
        }
        if (rest_.isEmpty()) {
            return std::nullopt;
        }
        QString word = QLatin1String(""); // `""` is a word too, an empty one
        while (!rest_.isEmpty() && !isSeparator(rest_.front())) {
            if (!readPiece(word)) {
                isMalformed_ = true;
                return std::nullopt;
            }
        }
        return word;
    }

    [[nodiscard]] bool isMalformed() const { return isMalformed_; }

private:
    QChar take() {
        const QChar c = rest_.front();
        rest_ = rest_.sliced(1);
        return c;
    }

    bool readPiece(QString& word) {
        const QChar c = take();
        if (c == u'"') {
            return readDoubleQuoted(word);
        }
        if (c == u'\'') {
            return readSingleQuoted(word);
        }
        if (c == u'\\') {
            if (rest_.isEmpty()) {
                return false;
            }
            word += take();
            return true;
        }
        word += c;
        return true;
    }

    bool readDoubleQuoted(QString& word) {
        while (!rest_.isEmpty()) {
            const QChar c = take();
            if (c == u'"') {
                return true;
            }
            const bool escapes =
                c == u'\\' && !rest_.isEmpty() && QStringView(u"\"`$\\").contains(rest_.front());
            word += escapes ? take() : c;
        }
        return false;
    }

    bool readSingleQuoted(QString& word) {
        const qsizetype end = rest_.indexOf(u'\'');
        if (end < 0) {
            return false;
        }
        word += rest_.first(end);
        rest_ = rest_.sliced(end + 1);
        return true;
    }

    QStringView rest_;
    bool isMalformed_ = false;
};

struct ExpandedWord {
    QString text;
    bool droppedCode = false; // it had a code that was replaced by nothing
};

ExpandedWord expandedWord(const QString& word, const ExecFields& fields) {
    ExpandedWord result;
    for (qsizetype i = 0; i < word.size() && result.text.size() <= maximumVector; ++i) {
        const QChar c = word[i];
        if (c != u'%' || i + 1 == word.size()) {
            result.text += c;
            continue;
        }
        const QChar code = word[++i];
        if (code == u'%') {
            result.text += u'%';
        } else if (code == u'c') {
            result.text += fields.name;
        } else if (code == u'k') {
            result.text += fields.entryPath;
        } else if (QStringView(u"fFuUidDnNvm").contains(code)) {
            result.droppedCode = true;
        } else {
            // Not a field code: addresses with %20 are common in entries made by hand.
            result.text += c;
            result.text += code;
        }
    }
    return result;
}

} // namespace

std::optional<QStringList> splitCommandLine(QStringView line) {
    // A program would see a word only up to the null character.
    if (line.size() > maximumLine || line.contains(QChar::Null)) {
        return std::nullopt;
    }
    WordReader reader(line);
    QStringList words;
    while (std::optional<QString> word = reader.next()) {
        if (words.size() == maximumWords) {
            return std::nullopt;
        }
        words += *std::move(word);
    }
    if (reader.isMalformed()) {
        return std::nullopt;
    }
    return words;
}

std::optional<QStringList> execArguments(QStringView line, const ExecFields& fields) {
    const std::optional<QStringList> words = splitCommandLine(line);
    if (!words || fields.icon.contains(QChar::Null) || fields.name.contains(QChar::Null) ||
        fields.entryPath.contains(QChar::Null)) {
        return std::nullopt;
    }
    QStringList arguments;
    qsizetype total = 0;
    const auto add = [&arguments, &total](const QString& argument) {
        arguments += argument;
        total += argument.size() + 1;
    };
    for (const QString& word : *words) {
        if (word == u"%i") {
            if (!fields.icon.isEmpty()) {
                add(QStringLiteral("--icon"));
                add(fields.icon);
            }
        } else if (const ExpandedWord argument = expandedWord(word, fields);
                   !argument.text.isEmpty() || !argument.droppedCode) {
            add(argument.text);
        }
        if (total > maximumVector) {
            return std::nullopt;
        }
    }
    if (arguments.isEmpty() || arguments.front().isEmpty()) {
        return std::nullopt;
    }
    return arguments;
}

} // namespace amberquill::desktop
