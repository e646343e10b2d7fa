#pragma once

#include "data/IconCache.h"
#include "support/ModelStage.h"
#include "support/PlatformFakes.h"
#include "window/LauncherWindow.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>
#include <QStyleHints>
#include <QTest>
#include <cmath>

namespace amberquill {

// The real views with a real model, drawn into an image by the program's renderer.
class ViewStage : public ModelStage {
public:
    void begin(const QSize& contentSize) {
        ModelStage::begin();
        QGuiApplication::styleHints()->setCursorFlashTime(0); // as the program has it
        contentSize_ = contentSize;
        IconCache::shared().serveFrom(iconSource_, &queue_);
    }

    void end() {
        window_.reset();
        IconCache::shared().serveFrom(nullptr, nullptr);
        ModelStage::end();
    }

    // Shows the launcher with this many applications, until it is fully presented.
    void showWith(int count) {
        installed_ = apps(count);
        open();
        bringUp();
    }

    void open() {
        makeModel();
        window_ = std::make_unique<LauncherWindow>(*model_, queue_, true);
        if (screen_ != nullptr) {
            window_->setScreen(screen_);
            window_->setPosition(screen_->geometry().topLeft()); // else it is moved to another screen
        }
        window_->resize(contentSize_);
        window_->show();
        // On a real display a window appears some time after show().
        [[maybe_unused]] const bool isThere = QTest::qWaitForWindowExposed(window_.get());
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

    // The window over black, in device pixels.
    [[nodiscard]] QImage picture() const {
        QCoreApplication::processEvents();
        return window_->grabWindow().convertToFormat(QImage::Format_RGB32);
    }

    // The device pixel that a point, in points, lies in.
    [[nodiscard]] QPoint pixelOf(const QPointF& point) const {
        return {static_cast<int>(std::floor(point.x() * ratio())),
                static_cast<int>(std::floor(point.y() * ratio()))};
    }

    [[nodiscard]] QColor at(const QImage& image, const QPointF& point) const {
        return image.pixelColor(pixelOf(point));
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

    // The item of this name; null: there is none.
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

    // Every visible item of a type, in the order of drawing. The type is "amberquill::AppIconTexture" for one
    // in C++, "FolderTitle" for one in QML.
    [[nodiscard]] std::vector<QQuickItem*> drawn(const QString& type) const {
        std::vector<QQuickItem*> found;
        collect(window_->rootObject(), type, found);
        return found;
    }

    // Where an item is drawn, in points.
    [[nodiscard]] static QRectF drawnRect(const QQuickItem* item) {
        return item->mapRectToScene(QRectF({}, item->size()));
    }

    // The opacity of an item within the window.
    [[nodiscard]] static double drawnOpacity(const QQuickItem* item) {
        double opacity = 1;
        for (; item != nullptr; item = item->parentItem()) {
            opacity *= item->opacity();
        }
        return opacity;
    }

    // The visible icon of the application with this number; null: there is none.
    [[nodiscard]] QQuickItem* iconOf(int number) const {
        for (QQuickItem* icon : drawn(QStringLiteral("amberquill::AppIconTexture"))) {
            if (icon->property("path").toString() == path(number)) {
                return icon;
            }
        }
        return nullptr;
    }

    // Advances until everything rests, the neighbours of the page shown are made and every icon is decoded.
    void settle() {
        advance(2);
        finishIcons();
    }

    // Draws, which asks for icons, and has them decoded.
    void finishIcons() {
        for (int round = 0; round < 2; ++round) {
            QCoreApplication::processEvents();
            window_->grabWindow();
            queue_.runPosted();
        }
    }

    static void collect(QQuickItem* top, const QString& type, std::vector<QQuickItem*>& found) {
        if (!top->isVisible()) {
            return;
        }
        const QString name = QString::fromLatin1(top->metaObject()->className());
        if (name.section(QStringLiteral("_QML"), 0, 0) == type) {
            found.push_back(top);
        }
        for (QQuickItem* child : top->childItems()) {
            collect(child, type, found);
        }
    }

    QSize contentSize_;
    QScreen* screen_ = nullptr; // null: the primary one
    ColourIcons icons_;
    ApplicationIcons* iconSource_ = &icons_;
    std::unique_ptr<LauncherWindow> window_;
};

} // namespace amberquill
