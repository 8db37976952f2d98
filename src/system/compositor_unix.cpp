#include "system/compositor.h"

#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

/// The caller has to free replies of the X server.
struct FreeReply
{
    void operator()(void *reply) const { std::free(reply); }
};

} // namespace

bool desktopBlendsWindows()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection())
        return true; // no X server, or no screen at all
    // Source: Extended Window Manager Hints 1.5, "Compositing Managers": one owns this selection.
    constexpr char kSelection[] = "_NET_WM_CM_S0";
    xcb_connection_t *connection = x11->connection();
    const std::unique_ptr<xcb_intern_atom_reply_t, FreeReply> atom(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, sizeof kSelection - 1, kSelection), nullptr));
    if (!atom)
        return true;
    const std::unique_ptr<xcb_get_selection_owner_reply_t, FreeReply> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom),
                                      nullptr));
    return owner && owner->owner != XCB_NONE;
}
