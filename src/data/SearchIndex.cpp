#include "data/SearchIndex.h"

#include "data/NameOrder.h"

namespace amberquill {

namespace {

bool hasDotlessI(const QLocale& locale) {
    return locale.language() == QLocale::Turkish || locale.language() == QLocale::Azerbaijani;
}

// Composed accented letters. Lowers the capitals of the Turkic pairs I ı and İ i.
QString composed(const QString& text, bool isTurkic) {
    QString result = text.normalized(QString::NormalizationForm_C);
    if (isTurkic) {
        result.replace(QChar(u'I'), QChar(u'ı')).replace(QChar(u'İ'), QChar(u'i'));
    }
    return result;
}

// Folds a lower-case text: two forms of one letter (σ and ς, ß and ss) become the same.
QString folded(const QString& lowered) {
    return lowered.toCaseFolded().replace(QChar(u'ß'), QStringLiteral("ss"));
}

} // namespace

void SearchIndex::Texts::append(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    all_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    ends_.push_back(all_.size());
}

std::string_view SearchIndex::Texts::at(std::size_t text) const {
    const std::size_t start = text == 0 ? 0 : ends_[text - 1];
    return std::string_view(all_).substr(start, ends_[text] - start);
}

SearchIndex::SearchIndex(const std::vector<AppInfo>& apps, const NameOrder& order)
    : isTurkic_(hasDotlessI(order.locale())) {
    std::vector<QString> names;
    names.reserve(apps.size());
    for (const AppInfo& app : apps) {
        names.push_back(app.name);
    }
    positions_ = order.order(names);
    for (const std::size_t position : positions_) {
        const QString lowered = composed(names[position], isTurkic_).toLower();
        lowered_.append(lowered);
        folded_.append(folded(lowered));
    }
}

std::vector<std::size_t> SearchIndex::find(const QString& text) const {
    const QString query = composed(text.trimmed(), isTurkic_).toLower();
    if (query.isEmpty()) {
        return {};
    }
    const std::string start = query.toStdString();
    const std::string part = folded(query).toStdString();
    std::vector<std::size_t> starting;
    std::vector<std::size_t> holding;
    std::size_t name = 0;
    for (std::size_t found = folded_.all().find(part); found != std::string::npos;) {
        while (folded_.end(name) <= found) {
            ++name;
        }
        // A match across the end of a name is no match.
        if (found + part.size() > folded_.end(name)) {
            found = folded_.all().find(part, found + 1);
            continue;
        }
        (lowered_.at(name).starts_with(start) ? starting : holding).push_back(positions_[name]);
        found = folded_.all().find(part, folded_.end(name));
    }
    starting.insert(starting.end(), holding.begin(), holding.end());
    return starting;
}

} // namespace amberquill
