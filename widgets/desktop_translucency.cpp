// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/desktop_translucency.h"

#include <QGuiApplication>

#if defined(QUILLORA_HAS_XCB) && QT_CONFIG(xcb)
#include <QByteArray>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#endif

namespace {

struct Answers
{
    std::optional<bool> pretended;
    std::optional<bool> last;
};

Answers &answers()
{
    static Answers answers;
    return answers;
}

#if defined(QUILLORA_HAS_XCB) && QT_CONFIG(xcb)

struct Free
{
    void operator()(void *memory) const { std::free(memory); }
};

/// The number of the screen that the display variable names.
int screenNumber()
{
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) != 0) {
        std::free(host);
    }
    return screen;
}

/// A compositing manager owns a selection that is named after its screen.
bool isComposited(xcb_connection_t *connection)
{
    const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(screenNumber());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 1, static_cast<uint16_t>(name.size()), name.constData()),
        nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE) {
        return false;
    }
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom),
                                      nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

#endif

bool askDesktop()
{
#if defined(QUILLORA_HAS_XCB) && QT_CONFIG(xcb)
    // The platform without a screen has this interface too, but nothing behind it.
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 != nullptr && x11->connection() != nullptr) {
        return isComposited(x11->connection());
    }
#endif
    // Windows, macOS and Wayland always compose the windows of their desktops.
    return true;
}

} // namespace

bool DesktopTranslucency::ask()
{
    Answers &known = answers();
    known.last = known.pretended ? *known.pretended : askDesktop();
    return *known.last;
}

bool DesktopTranslucency::isShown()
{
    const std::optional<bool> last = answers().last;
    return last ? *last : ask();
}

void DesktopTranslucency::pretend(std::optional<bool> shown)
{
    answers() = {shown, std::nullopt};
}
