#include "window/LauncherWindow.h"

#include "data/IconCache.h"

#include <QGuiApplication>
#include <QPixmapCache>
#include <QQmlEngine>
#include <QQuickItem>
#include <QStyleHints>
#include <QSurfaceFormat>
#include <QVariant>

// What Qt's tools generate for the views' module, which is linked in and not loaded.
void qml_register_types_Amberquill_Views();

// Qt's macro for resources works in no namespace, not even in an unnamed one.
static void loadViews() {
    Q_INIT_RESOURCE(qmake_Amberquill_Views);
    Q_INIT_RESOURCE(qmlcache_amberquill_views);
    // A mention links the types in; Qt registers them when the module is imported.
    [[maybe_unused]] const auto volatile registration = &qml_register_types_Amberquill_Views;
}

namespace amberquill {
namespace {

// The method of Qt's text fields.
const char* methodFor(EditCommand command) {
    switch (command) {
    case EditCommand::Undo:
        return "undo";
    case EditCommand::Cut:
        return "cut";
    case EditCommand::Copy:
        return "copy";
    case EditCommand::Paste:
        return "paste";
    case EditCommand::SelectAll:
        break;
    }
    return "selectAll";
}

} // namespace

LauncherWindow::LauncherWindow(LauncherModel& model, MainQueue& queue, bool translucent)
    : tiles_(model, queue)
    , wantedIcons_(model, tiles_, IconCache::shared())
    , folder_(model)
    , drag_(model) {
    loadViews();
    // A caret that blinks would wake the processor for as long as the launcher is up.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    connect(&model, &LauncherModel::languageDidChange, &texts_, &ViewTexts::retranslate);
    setTitle(QStringLiteral("Amberquill")); // what screen readers call it
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    QSurfaceFormat surface = requestedFormat();
    surface.setAlphaBufferSize(translucent ? 8 : 0);
    setFormat(surface);
    setColor(translucent ? Qt::transparent : Qt::black);
    setResizeMode(SizeRootObjectToView);
    engine()->addImportPath(QStringLiteral(":/qt/qml"));
    setInitialProperties({{QStringLiteral("launcher"), QVariant::fromValue(&model)},
                          {QStringLiteral("tiles"), QVariant::fromValue(&tiles_)},
                          {QStringLiteral("folder"), QVariant::fromValue(&folder_)},
                          {QStringLiteral("drag"), QVariant::fromValue(&drag_)},
                          {QStringLiteral("texts"), QVariant::fromValue(&texts_)}});
    setSource(QUrl(QStringLiteral("qrc:/qt/qml/Amberquill/Views/LauncherRootView.qml")));
    desktop_.setParentItem(contentItem());
    desktop_.setZ(-1);
}

LauncherWindow::~LauncherWindow() {
    desktop_.setParentItem(nullptr);
    // The views go before the models that they are bound to.
    setSource({});
}

void LauncherWindow::setBackdrop(const std::shared_ptr<const Backdrop>& backdrop) {
    desktop_.setImage(backdrop->whole());
    coming_ = backdrop;
    setAlpha(rootObject()->opacity());
}

void LauncherWindow::forgetBackdrop() {
    coming_.reset();
    desktop_.forget();
    rootObject()->findChild<BackgroundLayer*>()->forgetBackdrop();
}

void LauncherWindow::dropUnseen() {
    tiles_.dropPagesLeftBehind();
    QPixmapCache::clear();
    engine()->collectGarbage();
}

void LauncherWindow::setAlpha(double alpha) {
    if (alpha > 0 && coming_) {
        rootObject()->findChild<BackgroundLayer*>()->setBackdrop(std::exchange(coming_, {}));
    }
    rootObject()->setOpacity(alpha);
    // Whole, the launcher covers it.
    desktop_.setVisible(alpha < 1);
}

void LauncherWindow::setTakesInput(bool takes) {
    rootObject()->setEnabled(takes);
}

// A window that is put up again has lost what was drawn in it, and Qt's software renderer draws only what has
// changed since: another colour under everything is such a change.
void LauncherWindow::showEvent(QShowEvent* event) {
    if (requestedFormat().hasAlpha()) {
        const QColor sameInOtherWords = QColor::fromHsv(0, 0, 0, 0);
        setColor(color() == sameInOtherWords ? QColor(Qt::transparent) : sameInOtherWords);
    }
    QQuickView::showEvent(event);
}

void LauncherWindow::resizeEvent(QResizeEvent* event) {
    QQuickView::resizeEvent(event);
    desktop_.setSize(size());
}

bool LauncherWindow::isEditing() const {
    const QQuickItem* item = activeFocusItem();
    return item != nullptr && item->flags().testFlag(QQuickItem::ItemAcceptsInputMethod);
}

bool LauncherWindow::isComposing() const {
    return isEditing() && activeFocusItem()->property("inputMethodComposing").toBool();
}

void LauncherWindow::edit(EditCommand command) {
    if (isEditing()) {
        QMetaObject::invokeMethod(activeFocusItem(), methodFor(command));
    }
}

QPoint LauncherWindow::menuPlace() const {
    const auto* button = rootObject()->findChild<QQuickItem*>(QStringLiteral("menuButton"));
    return mapToGlobal(button->mapToScene(button->boundingRect().bottomLeft()).toPoint());
}

void LauncherWindow::endEditing() {
    if (QQuickItem* item = activeFocusItem()) {
        item->setFocus(false);
    }
}

} // namespace amberquill
