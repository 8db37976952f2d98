#include "system/screenpixels.h"

#include <QGuiApplication>

#include <cstdlib>
#include <xcb/xcb.h>

std::optional<QSize> primaryScreenPixels()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // The root window spans all screens.
    if (!x11 || !x11->connection() || QGuiApplication::screens().size() != 1)
        return std::nullopt;
    xcb_connection_t *connection = x11->connection();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_get_geometry_reply_t *reply =
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, root), nullptr);
    if (!reply)
        return std::nullopt;
    const QSize size(reply->width, reply->height);
    std::free(reply);
    return size;
}
