#include "platform/linux/windows/x11/X11WindowSystem.h"

#include "platform/linux/windows/x11/ScreenChoice.h"
#include "platform/linux/x11/XcbReply.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <array>
#include <qpa/qplatformscreen.h>
#include <qpa/qplatformwindow.h>
#include <span>
// Qt puts the time of the last event that it received into its requests to the window manager. The launcher
// is shown because of events that other programs received, and only this private header can set their time.
#include <cstdint>
#include <private/qtx11extras_p.h>
#include <string_view>

namespace amberquill::desktop {
namespace {

constexpr uint32_t onEveryDesktop = 0xFFFFFFFF;
constexpr uint32_t keepCompositing = 2;
constexpr uint32_t sourceApplication = 1;

[[nodiscard]] xcb_window_t handle(const QWindow& window) {
    return static_cast<xcb_window_t>(window.winId());
}

void writeProperty(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                   std::span<const uint32_t> values) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<uint32_t>(values.size()), values.data());
}

[[nodiscard]] std::optional<xcb_window_t> windowProperty(xcb_connection_t* connection, xcb_window_t window,
                                                         xcb_atom_t property) {
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, window, property, XCB_ATOM_WINDOW, 0, 1), nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) != sizeof(xcb_window_t)) {
        return std::nullopt;
    }
    return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
}

// Compositing managers that blur behind windows list the property _KDE_NET_WM_BLUR_BEHIND_REGION on the root
// window.
[[nodiscard]] bool understandsBlurRegion(xcb_connection_t* connection, xcb_window_t root,
                                         xcb_atom_t property) {
    const XcbReply<xcb_list_properties_reply_t> listed(
        xcb_list_properties_reply(connection, xcb_list_properties(connection, root), nullptr));
    if (!listed || property == XCB_ATOM_NONE) {
        return false;
    }
    const auto* const first = xcb_list_properties_atoms(listed.get());
    const auto* const end = first + xcb_list_properties_atoms_length(listed.get());
    return std::find(first, end, property) != end;
}

// Blurs behind the whole window.
void setBlurRegion(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                   const QSize& pixels) {
    const std::array<std::uint32_t, 4> all{0, 0, static_cast<std::uint32_t>(pixels.width()),
                                           static_cast<std::uint32_t>(pixels.height())};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_CARDINAL, 32,
                        all.size(), all.data());
}

} // namespace

X11WindowSystem::X11WindowSystem(xcb_connection_t* connection)
    : connection_(connection)
    , root_(QX11Info::appRootWindow())
    , atoms_(connection)
    , focusFilter_(atoms_[AtomName::ActiveWindow]) {
    for (QScreen* screen : QGuiApplication::screens()) {
        watch(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        watch(screen);
        keepOnLivingScreen();
    });
    // Queued, because Qt is still removing the screen.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &X11WindowSystem::keepOnLivingScreen,
            Qt::QueuedConnection);
}

QScreen* X11WindowSystem::screenUnderPointer() const {
    const XcbReply<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(connection_, xcb_query_pointer(connection_, root_), nullptr));
    const auto screens = QGuiApplication::screens();
    if (!pointer || pointer->same_screen == 0) {
        return QGuiApplication::primaryScreen();
    }
    std::vector<QRect> areas;
    areas.reserve(static_cast<std::size_t>(screens.size()));
    for (const QScreen* screen : screens) {
        // Not QScreen::geometry(): at a fractional scale its size is rounded, and the pointer on the edge of
        // one screen would count as on the next.
        areas.push_back(screen->handle()->geometry());
    }
    const auto index = screenFor({pointer->root_x, pointer->root_y}, areas);
    return index ? screens.at(static_cast<qsizetype>(*index)) : nullptr;
}

void X11WindowSystem::setActivationToken(const QString& startupId) {
    startupId_ = startupId;
}

void X11WindowSystem::setListedInTaskBars(bool listed) {
    listedInTaskBars_ = listed;
    if (window_) {
        askForState(handle(*window_), !listed, AtomName::StateSkipTaskbar, AtomName::StateSkipPager);
    }
}

void X11WindowSystem::present(QWindow& window, QScreen* screen) {
    QScreen* const wanted = screen != nullptr ? screen : screenUnderPointer();
    const bool managed = hasWindowManager();
    noteUserTime();
    if (!window.isVisible()) {
        earlierFocus_ = managed ? std::nullopt : focusOwner();
        window.setFlags(window.flags() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        window.setWindowStates(Qt::WindowFullScreen);
        if (wanted != nullptr) {
            window.setScreen(wanted);
        }
        window.create();
        describe(window);
        if (wanted != nullptr) {
            place(window, *wanted);
        }
        window.installEventFilter(this); // repeated calls have no effect
        window.setVisible(true);
    } else if (wanted != nullptr && window.screen() != wanted) {
        move(window, *wanted);
    }
    window_ = &window;
    if (!managed) {
        window.raise();
        setFocus(handle(window));
    }
    window.requestActivate();
}

void X11WindowSystem::withdraw(QWindow& window, std::function<void()> then) {
    const bool ours = window.isVisible() && focusOwner() == handle(window);
    window_.clear();
    window.hide();
    if (ours) {
        giveFocusBack();
    }
    earlierFocus_.reset();
    then();
}

void X11WindowSystem::beep() {
    xcb_bell(connection_, 0);
    xcb_flush(connection_);
}

void X11WindowSystem::watch(QScreen* screen) const {
    connect(screen, &QScreen::geometryChanged, this, &X11WindowSystem::keepOnLivingScreen,
            Qt::QueuedConnection);
}

void X11WindowSystem::keepOnLivingScreen() {
    if (window_ && window_->screen() != nullptr) {
        move(*window_, *window_->screen());
    }
}

// Sets the properties that window managers and compositors read when the window is mapped. Each time, because
// a window manager removes the states and the desktop when a window is withdrawn. Qt adds the full-screen
// state.
void X11WindowSystem::describe(QWindow& window) {
    std::vector<uint32_t> states{atoms_[AtomName::StateAbove], atoms_[AtomName::StateSticky]};
    if (!listedInTaskBars_) {
        states.push_back(atoms_[AtomName::StateSkipTaskbar]);
        states.push_back(atoms_[AtomName::StateSkipPager]);
    }
    const auto id = handle(window);
    writeProperty(connection_, id, atoms_[AtomName::State], XCB_ATOM_ATOM, states);
    writeProperty(connection_, id, atoms_[AtomName::Desktop], XCB_ATOM_CARDINAL, std::array{onEveryDesktop});
    // Otherwise a full-screen window may switch compositing off, and the window would not be transparent.
    writeProperty(connection_, id, atoms_[AtomName::BypassCompositor], XCB_ATOM_CARDINAL,
                  std::array{keepCompositing});
    writeProperty(connection_, id, atoms_[AtomName::KdeSkipCloseAnimation], XCB_ATOM_CARDINAL,
                  std::array{uint32_t{1}});
    // Desktops find the application's entry, and so its icon and name, by the window's class.
    const auto desktopId = QGuiApplication::desktopFileName().toUtf8();
    if (!desktopId.isEmpty()) {
        const QByteArray classes =
            QCoreApplication::applicationName().toUtf8().toLower() + '\0' + desktopId + '\0';
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                            static_cast<uint32_t>(classes.size()), classes.constData());
    }
}

// A window manager makes a window full screen on the monitor where the window is.
void X11WindowSystem::place(QWindow& window, QScreen& screen) {
    window.setGeometry(screen.geometry());
    // Also without Qt: it sends no request if it believes that the window is there already, and it does not
    // notice when a window manager moves a withdrawn window.
    const QRect area = screen.handle()->geometry();
    const std::array<int32_t, 4> values{area.x(), area.y(), area.width(), area.height()};
    xcb_configure_window(connection_, handle(window),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
    const auto blurRegion = atoms_[AtomName::KdeBlurBehindRegion];
    if (blursBehindWindows()) {
        setBlurRegion(connection_, handle(window), blurRegion, area.size());
    } else {
        xcb_delete_property(connection_, handle(window), blurRegion);
    }
}

// Moves a mapped window. Window managers keep a full-screen window on its monitor, so the full-screen state
// is removed during the move. Without a window manager, only the geometry counts.
void X11WindowSystem::move(QWindow& window, QScreen& screen) {
    window.setWindowStates(Qt::WindowNoState);
    window.setScreen(&screen);
    place(window, screen);
    window.setWindowStates(Qt::WindowFullScreen);
}

bool X11WindowSystem::eventFilter(QObject* watched, QEvent* event) {
    // The window is mapped, so window managers have placed it.
    if (event->type() == QEvent::Expose && watched == window_ && window_->isExposed()) {
        reportPosition(*window_);
    }
    return QObject::eventFilter(watched, event);
}

// Some window managers move a window into a frame, move the frame to the requested place, and send no event.
// Qt may have read the position in between, and would open menus there. So this sends the ConfigureNotify
// event to Qt.
void X11WindowSystem::reportPosition(QWindow& window) const {
    const auto id = handle(window);
    const XcbReply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
        connection_, xcb_translate_coordinates(connection_, id, root_, 0, 0), nullptr));
    const QRect known = window.handle()->geometry();
    if (!origin || known.topLeft() == QPoint(origin->dst_x, origin->dst_y)) {
        return;
    }
    // Every event is sent as 32 bytes, even if its struct is smaller.
    union {
        xcb_configure_notify_event_t event;
        std::array<char, 32> bytes;
    } message{};
    message.event.response_type = XCB_CONFIGURE_NOTIFY;
    message.event.event = id;
    message.event.window = id;
    message.event.x = origin->dst_x;
    message.event.y = origin->dst_y;
    message.event.width = static_cast<std::uint16_t>(known.width());
    message.event.height = static_cast<std::uint16_t>(known.height());
    xcb_send_event(connection_, 0, id, XCB_EVENT_MASK_STRUCTURE_NOTIFY, message.bytes.data());
    xcb_flush(connection_);
}

// Window managers refuse the focus to a window if the user has used another window later. The launcher is
// shown right after the user's action, so if the action's time is unknown, the current time is used.
void X11WindowSystem::noteUserTime() {
    // Zero is CurrentTime, not a time.
    const auto time = static_cast<std::uint32_t>(std::exchange(userTime_, std::nullopt).value_or(UserTime{}));
    QX11Info::setAppTime(time != XCB_CURRENT_TIME ? time : QX11Info::getTimestamp());
    if (!startupId_.isEmpty()) {
        // Qt broadcasts that this start is complete, which ends the busy pointer.
        QX11Info::setNextStartupId(startupId_.toUtf8());
        startupId_.clear();
    }
}

void X11WindowSystem::giveFocusBack() {
    if (!earlierFocus_) {
        return;
    }
    const XcbReply<xcb_generic_error_t> refusal(
        xcb_request_check(connection_, xcb_set_input_focus_checked(connection_, XCB_INPUT_FOCUS_POINTER_ROOT,
                                                                   *earlierFocus_, XCB_CURRENT_TIME)));
    if (refusal) {
        // The earlier window is gone.
        setFocus(XCB_INPUT_FOCUS_POINTER_ROOT);
    }
}

// A compositing manager owns a selection named after the screen.
bool X11WindowSystem::blendsWindows() const {
    constexpr std::string_view name = "_NET_WM_CM_S0";
    const XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 1, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE) {
        return false;
    }
    const XcbReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection_, xcb_get_selection_owner(connection_, atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

// The root window keeps the property of a dead compositing manager, so a living one is required, too.
bool X11WindowSystem::blursBehindWindows() const {
    return blendsWindows() &&
           understandsBlurRegion(connection_, root_, atoms_[AtomName::KdeBlurBehindRegion]);
}

// If no client has the focus, a window manager keeps the focus on its own window, or on none.
bool X11WindowSystem::nobodyHasFocus() const {
    const auto managers = windowProperty(connection_, root_, atoms_[AtomName::SupportingWmCheck]);
    const auto owner = focusOwner();
    if (!managers || !owner) {
        return false;
    }
    const auto clientOf = [mask = xcb_get_setup(connection_)->resource_id_mask](xcb_window_t window) {
        return window & ~mask;
    };
    return *owner == XCB_INPUT_FOCUS_NONE || *owner == XCB_INPUT_FOCUS_POINTER_ROOT || *owner == root_ ||
           clientOf(*owner) == clientOf(*managers);
}

// The root window keeps the property of a dead window manager, so the window that it names must have the same
// property.
bool X11WindowSystem::hasWindowManager() const {
    const auto property = atoms_[AtomName::SupportingWmCheck];
    const auto check = windowProperty(connection_, root_, property);
    return check && windowProperty(connection_, *check, property) == check;
}

std::optional<xcb_window_t> X11WindowSystem::focusOwner() const {
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply ? std::optional(reply->focus) : std::nullopt;
}

// Errors are ignored: the window may not be mapped yet.
void X11WindowSystem::setFocus(xcb_window_t owner) {
    const auto request =
        xcb_set_input_focus_checked(connection_, XCB_INPUT_FOCUS_POINTER_ROOT, owner, XCB_CURRENT_TIME);
    xcb_discard_reply(connection_, request.sequence);
    xcb_flush(connection_);
}

void X11WindowSystem::askForState(xcb_window_t window, bool wanted, AtomName first, AtomName second) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atoms_[AtomName::State];
    message.data.data32[0] = wanted ? 1 : 0;
    message.data.data32[1] = atoms_[first];
    message.data.data32[2] = atoms_[second];
    message.data.data32[3] = sourceApplication;
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection_);
}

} // namespace amberquill::desktop
