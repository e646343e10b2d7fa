#pragma once

#include "data/IconCache.h"
#include "support/ColourIcons.h"
#include "support/ModelFixture.h"
#include "views/BackgroundWash.h"
#include "window/LauncherWindow.h"

#include <QCoreApplication>
#include <QQuickItem>
#include <QTest>
#include <cmath>
#include <gtest/gtest.h>

namespace amberquill {

// The real views with a real model, drawn by the software renderer into an image.
class RootViewFixture : public ModelFixture, public testing::WithParamInterface<QSize> {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        IconCache::shared().serveFrom(&icons_, &queue_);
    }

    void TearDown() override {
        window_.reset();
        IconCache::shared().serveFrom(nullptr, nullptr);
        ModelFixture::TearDown();
    }

    // The launcher as it stands once it has come up, with this many applications installed.
    void showWith(int count) {
        installed_ = apps(count);
        open();
        bringUp();
    }

    void open() {
        makeModel();
        window_ = std::make_unique<LauncherWindow>(*model_, true);
        window_->resize(GetParam());
        window_->show();
        window_->setAlpha(1);
        model_->willShow();
        queue_.runPosted();
    }

    void bringUp() {
        model_->setPresented(true);
        QCoreApplication::processEvents();
        window_->grabWindow(); // asks for the icons
        queue_.runPosted();
    }

    [[nodiscard]] double ratio() const { return window_->effectiveDevicePixelRatio(); }

    // What is on the screen, over black, in device pixels.
    [[nodiscard]] QImage picture() const {
        QCoreApplication::processEvents();
        return window_->grabWindow().convertToFormat(QImage::Format_RGB32);
    }

    [[nodiscard]] QColor at(const QImage& image, const QPointF& point) const {
        return image.pixelColor((point * ratio()).toPoint());
    }

    [[nodiscard]] QPointF iconCentre(int slot) const {
        const GridMetrics metrics = model_->metrics();
        return metrics.cellCenter(slot) - QPointF(0, metrics.iconRise());
    }

    void type(const std::string& text) {
        for (const char character : text) {
            QTest::keyClick(window_.get(), character);
        }
    }

    // The item of this name, anywhere in the picture; null when there is none.
    [[nodiscard]] QQuickItem* item(const QString& name) const {
        return itemBelow(window_->rootObject(), name);
    }

    [[nodiscard]] static QQuickItem* itemBelow(QQuickItem* top, const QString& name) {
        if (top->objectName() == name) {
            return top;
        }
        for (QQuickItem* child : top->childItems()) {
            if (QQuickItem* found = itemBelow(child, name)) {
                return found;
            }
        }
        return nullptr;
    }

    void advance(double seconds) {
        for (double passed = 0; passed < seconds; passed += 1.0 / 60) {
            queue_.advance(1.0 / 60);
            Timeline::shared().advance();
        }
    }

    ColourIcons icons_;
    std::unique_ptr<LauncherWindow> window_;
};

inline testing::AssertionResult isAbout(const QColor& colour, const QColor& wanted, int tolerance = 2) {
    if (std::abs(colour.red() - wanted.red()) <= tolerance &&
        std::abs(colour.green() - wanted.green()) <= tolerance &&
        std::abs(colour.blue() - wanted.blue()) <= tolerance) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << colour.name().toStdString() << " instead of " << wanted.name().toStdString();
}

// A translucent white over a colour.
inline QColor lightened(const QColor& colour, double white) {
    const auto mix = [white](int component) {
        return static_cast<int>(std::lround(component * (1 - white) + 255 * white));
    };
    return {mix(colour.red()), mix(colour.green()), mix(colour.blue())};
}

} // namespace amberquill
