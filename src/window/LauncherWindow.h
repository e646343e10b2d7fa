// window/: the launcher's one window, how it comes and goes, and the keys and wheel that act on it as a
// whole.
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

// What the Edit menu does in a field.
enum class EditCommand { Undo, Cut, Copy, Paste, SelectAll };

// The window in which the launcher is drawn: borderless, as large as the screen it is put on. It
// holds the view tree; the model and the queue outlive it.
class LauncherWindow final : public QQuickView {
    Q_OBJECT

public:
    // `translucent`: what lies behind the window shows through it. An opaque one is drawn faster.
    LauncherWindow(LauncherModel& model, MainQueue& queue, bool translucent);
    ~LauncherWindow() override;

    LauncherWindow(const LauncherWindow&) = delete;
    LauncherWindow& operator=(const LauncherWindow&) = delete;

    // What the launcher is shown over from its next coming on: while nothing of it is seen yet, no frame
    // waits for the picture.
    void setBackdrop(const std::shared_ptr<const Backdrop>& backdrop);

    // Lets go of it, and of the pictures that were made of it, while the window is off the screen.
    void forgetBackdrop();

    // Lets go of what the next showing can do without, while the window is off the screen. What was drawn of
    // it is freed by the event loop afterwards.
    void dropUnseen();

    // How opaque the launcher is as a whole, 0 … 1.
    void setAlpha(double alpha);

    // Whether pointer, touch and assistive technologies reach anything in it. True at first. What was begun
    // before it was switched off is cancelled.
    void setTakesInput(bool takes);

    // Whether a field has the keyboard focus.
    [[nodiscard]] bool isEditing() const;

    // Whether an input method holds text for that field which is not in it yet.
    [[nodiscard]] bool isComposing() const;

    // Does this in the field that has the focus; without one it does nothing.
    void edit(EditCommand command);

    // Takes the keyboard focus from every field.
    void endEditing();

    // Where a menu opened without the pointer belongs: below the menu's button, in global points.
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
    std::shared_ptr<const Backdrop> coming_; // none: the background has it
};

} // namespace amberquill
