#pragma once

#include "platform/ApplicationIcons.h"

#include <QDir>
#include <QPainter>
#include <QSvgRenderer>

namespace amberquill {

// The SVG files of a folder, in the order of their names, as the icons of the applications numbered from 1.
class FileIcons final : public ApplicationIcons {
public:
    explicit FileIcons(const QString& folder)
        : folder_(folder)
        , files_(folder_.entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name)) {}

    // "text-editor.svg" is "Text Editor".
    [[nodiscard]] QStringList names() const {
        QStringList names;
        for (const QString& file : files_) {
            QStringList words = file.chopped(4).split(QLatin1Char('-'), Qt::SkipEmptyParts);
            for (QString& word : words) {
                word[0] = word[0].toUpper();
            }
            names += words.join(QLatin1Char(' '));
        }
        return names;
    }

    [[nodiscard]] QImage image(const QString& path, int edge) const override {
        const int number = path.section(QLatin1Char('/'), -1).section(QLatin1Char('.'), 0, 0).toInt();
        if (number < 1 || files_.isEmpty()) {
            return {};
        }
        QSvgRenderer drawing(folder_.filePath(files_.at((number - 1) % files_.size())));
        QImage icon(edge, edge, QImage::Format_ARGB32_Premultiplied);
        icon.fill(Qt::transparent);
        QPainter painter(&icon);
        drawing.render(&painter);
        return icon;
    }
    [[nodiscard]] QImage genericIcon(int) const override { return {}; }
    void forget() override {}
    void rest() override {}

private:
    QDir folder_;
    QStringList files_;
};

} // namespace amberquill
