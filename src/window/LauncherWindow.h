// window/: the launcher's one window: showing and hiding it, its keys and scrolling, its menus and dialogs.
#pragma once

#include "model/LauncherModel.h"
#include "views/Backdrop.h"
#include "views/BackgroundLayer.h"
#include "views/DragView.h"
#include "views/FolderTiles.h"
#include "views/TileModel.h"
#include "views/ViewTexts.h"
#include "views/WantedIcons.h"

#include <QQuickView>
#include <memory>

namespace amberquill {

// The commands of the Edit menu.
enum class EditCommand { Undo, Cut, Copy, Paste, SelectAll };

// The window that the launcher is drawn in: borderless and as large as its screen. It owns the view tree. The
// model and the queue outlive it.
class LauncherWindow final : public QQuickView {
    Q_OBJECT

public:
    // `translucent`: the desktop shows through. An opaque window is drawn faster.
    LauncherWindow(LauncherModel& model, MainQueue& queue, bool translucent);
    ~LauncherWindow() override;

    LauncherWindow(const LauncherWindow&) = delete;
    LauncherWindow& operator=(const LauncherWindow&) = delete;

    // For the next showing. The background takes the backdrop over with the first frame that shows it, so
    // that no frame before waits for it.
    void setBackdrop(const std::shared_ptr<const Backdrop>& backdrop);

    // Frees the backdrop and the images made of it. For a window that is off the screen.
    void forgetBackdrop();

    // Frees what the next showing does not need. For a window that is off the screen. Part of it is freed
    // later by the event loop.
    void dropUnseen();

    // The launcher's opacity, 0 … 1.
    void setAlpha(double alpha);

    // Whether pointer, touch and assistive technologies reach the views; true at first. Switching it off
    // cancels what has begun.
    void setTakesInput(bool takes);

    // Whether a field has the keyboard focus.
    [[nodiscard]] bool isEditing() const;

    // Whether an input method is composing text for that field.
    [[nodiscard]] bool isComposing() const;

    // Runs the command in the focused field, if there is one.
    void edit(EditCommand command);

    // Takes the keyboard focus from every field.
    void endEditing();

    // Where a menu opened by a key belongs: below the menu's button, in global points.
    [[nodiscard]] QPoint menuPlace() const;

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    TileModel tiles_;
    WantedIcons wantedIcons_;
    FolderTiles folder_;
    DragView drag_;
    ViewTexts texts_;
    DesktopPicture desktop_;
    std::shared_ptr<const Backdrop> nextBackdrop_; // null: the background has taken it over
};

} // namespace amberquill
