#include "RootViewFixture.h"

#include <QPainter>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

// The labels below the icons, with unusual names.
class LabelTest : public RootViewFixture {
protected:
    void showNamed(const QStringList& names) {
        installed_ = apps(static_cast<int>(names.size()));
        LaunchItems order;
        for (std::size_t i = 0; i < installed_.size(); ++i) {
            installed_[i].name = names.at(static_cast<qsizetype>(i));
            order.push_back(LaunchItem::app(installed_[i].path));
        }
        files_.addFile(layoutPath, encodeItems(order));
        open();
        bringUp();
        settle();
    }

    // The label in a slot, with the parts that reach beyond it, in device pixels.
    [[nodiscard]] QImage label(int slot) const {
        const GridMetrics metrics = model_->metrics();
        const QPointF centre = metrics.cellCenter(slot);
        const QRectF tile = metrics.tileRect(centre);
        const QPoint corner =
            pixelOf({centre.x() - metrics.cellSize().width() / 2, tile.bottom() - metrics.labelHeight()});
        const QPoint end = pixelOf({centre.x() + metrics.cellSize().width() / 2, tile.bottom() + 7});
        return picture().copy(QRect(corner, end));
    }

    // The columns of bright pixels: the first, and the one after the last.
    static std::pair<int, int> extent(const QImage& image) {
        int left = image.width();
        int right = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y).lightness() > 170) {
                    left = std::min(left, x);
                    right = std::max(right, x + 1);
                }
            }
        }
        return {left, right};
    }

    static int ink(const QImage& image) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                count += image.pixelColor(x, y).lightness() > 170 ? 1 : 0;
            }
        }
        return count;
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Sizes, LabelTest, testing::Values(QSize(1920, 1080), QSize(1280, 800)),
                         [](const auto& size) {
                             return std::to_string(size.param.width()) + "x" +
                                    std::to_string(size.param.height());
                         });

TEST_P(LabelTest, MarkupIsShownAsItIs) {
    showNamed({u"<b>x</b>"_s, u"x"_s, u"&amp;"_s, u"&"_s});
    const auto width = [this](int slot) {
        const auto [left, right] = extent(label(slot));
        return right - left;
    };
    EXPECT_GT(width(0), 4 * width(1));
    EXPECT_GT(width(2), 2 * width(3));
}

TEST_P(LabelTest, ControlCharactersAndLineBreaksAreSpacesOnOneLine) {
    showNamed({u"Line\nbreak\tand\u0007bell\u2028x"_s, u"Line break and bell x"_s});
    const auto [left, right] = extent(label(0));
    const auto [wantedLeft, wantedRight] = extent(label(1));
    EXPECT_NEAR(right - left, wantedRight - wantedLeft, 1);
    EXPECT_NEAR(ink(label(0)), ink(label(1)), ink(label(1)) / 20 + 2);
}

TEST_P(LabelTest, EveryScriptIsDrawnInItsPlace) {
    const QStringList names = {u"简体中文"_s,        u"日本語"_s,          u"تطبيق"_s, u"יישום"_s,
                               u"🎨👩‍🚀"_s, u"Zo\u0308e\u0301"_s, u"ไทย"_s,   u"हिन्दी"_s};
    showNamed(names);
    for (int slot = 0; slot < static_cast<int>(names.size()); ++slot) {
        const QImage image = label(slot);
        EXPECT_GT(ink(image), 10) << slot;
        const auto [left, right] = extent(image);
        EXPECT_NEAR((left + right) / 2.0, image.width() / 2.0, 4 * ratio()) << slot;
    }
}

TEST_P(LabelTest, MissingGlyphsComeFromAnotherFont) {
    showNamed({u"中文"_s, u"国語"_s, u"アア"_s, u"🎨"_s});
    EXPECT_NE(label(0), label(1)) << "a missing sign is a box like any other";
    EXPECT_NE(label(1), label(2));
    const QImage emoji = label(3);
    int most = 0;
    for (int y = 0; y < emoji.height(); ++y) {
        for (int x = 0; x < emoji.width(); ++x) {
            const QColor colour = emoji.pixelColor(x, y);
            most = std::max(most, colour.red() - colour.blue());
        }
    }
    EXPECT_GT(most, 60) << "in its colours";
}

TEST_P(LabelTest, LettersAreNotClippedAboveOrBelow) {
    // The same name in a picture much higher than a line, where nothing is clipped.
    showNamed({u"gjpqy|Åẫ"_s});
    const GridMetrics metrics = model_->metrics();
    QFont font = QGuiApplication::font();
    font.setPixelSize(static_cast<int>(std::lround(metrics.labelFontSize() * ratio())));
    font.setWeight(QFont::Medium);
    QImage free(600, 400, QImage::Format_RGB32);
    free.fill(Qt::black);
    QPainter painter(&free);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QPointF(50, 200), u"gjpqy|Åẫ"_s);
    painter.end();
    const auto rows = [](const QImage& image, int threshold) {
        int top = image.height();
        int bottom = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y).lightness() > threshold) {
                    top = std::min(top, y);
                    bottom = std::max(bottom, y + 1);
                }
            }
        }
        return bottom - top;
    };
    const QPointF centre = metrics.cellCenter(0);
    const QRectF tile = metrics.tileRect(centre);
    const QImage drawn =
        picture().copy(QRect(pixelOf({centre.x() - 60, tile.bottom() - metrics.labelHeight() - 6}),
                             pixelOf({centre.x() + 60, tile.bottom() + 7})));
    EXPECT_NEAR(rows(drawn, 150), rows(free, 150), 1);
}

TEST_P(LabelTest, ANameTooWideEndsInAnEllipsis) {
    const QString wide = QString(40, u'W');
    showNamed({wide, QString(41, u'W'), QString(39, u'W') + u"i"_s});
    // The wash behind differs a little from place to place.
    EXPECT_NEAR(ink(label(0)), ink(label(1)), ink(label(1)) / 50)
        << "what lies beyond the end makes no difference";
    const auto [left, right] = extent(label(0));
    const QImage image = label(0);
    // The dots of the ellipsis are low: the upper half is empty there.
    int high = 0;
    for (int y = 0; y < static_cast<int>(model_->metrics().labelHeight() * ratio() / 2); ++y) {
        for (int x = right - static_cast<int>(6 * ratio()); x < right; ++x) {
            high += image.pixelColor(x, y).lightness() > 170 ? 1 : 0;
        }
    }
    EXPECT_EQ(high, 0);
    EXPECT_LE(right - left, (model_->metrics().cellSize().width() - 8) * ratio() + 1);
}

TEST_P(LabelTest, ASoftShadowLiesBelowTheLetters) {
    showNamed({u"IIIII"_s});
    const QImage image = label(0);
    int darkest = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = image.width() / 3; x < image.width() * 2 / 3; ++x) {
            darkest = std::min(darkest, image.pixelColor(x, y).lightness());
        }
    }
    const int wash = image.pixelColor(3, image.height() - 3).lightness();
    EXPECT_LT(darkest, wash * 9 / 10);
    EXPECT_GT(darkest, wash / 2 - 4) << "no more than black at 0.45";
}

TEST_P(LabelTest, LettersBeyondTheFirst512AreNotLaidOut) {
    // Accents do not make a name wider, so letters after them would be drawn if they were laid out.
    const auto accented = [](int accents, const QString& end) {
        return u"e"_s + QString(accents, u'\u0301') + end;
    };
    showNamed({accented(100, {}), accented(100, u"WWW"_s), accented(1'000, {}), accented(1'000, u"WWW"_s)});
    ASSERT_GT(ink(label(1)), 2 * ink(label(0))) << "what follows the accents is not seen";
    EXPECT_GT(ink(label(2)), 10);
    EXPECT_NEAR(ink(label(3)), ink(label(2)), ink(label(2)) / 20 + 2);
    const auto [left, right] = extent(label(3));
    const auto [wantedLeft, wantedRight] = extent(label(2));
    EXPECT_NEAR(right - left, wantedRight - wantedLeft, 1);
}

TEST_P(LabelTest, NamesOfAMillionLettersAreDrawn) {
    QStringList names;
    for (int i = 0; i < 35; ++i) {
        names += i % 3 == 0   ? QString(1'000'000, u'm')
                 : i % 3 == 1 ? u"e"_s + QString(1'000'000, u'\u0301')
                              : QString(500'000, u'\u05D0') + QString(500'000, u'\u202E');
    }
    showNamed(names);
    for (int slot = 0; slot < 35; ++slot) {
        EXPECT_GT(ink(label(slot)), 10) << slot;
    }
}
