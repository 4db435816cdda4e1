#include "platform/x11/X11Panel.h"

#include <QRect>
#include <QRgb>
#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Windows.h"

namespace brindle::x11 {

namespace {

constexpr std::size_t pixelSize = 4;       // bytes, at the depths that screens have
constexpr std::size_t sampleDistance = 7;  // pixels
constexpr int middleGray = 128;

/// On the screen, in pixels; empty when the window is gone or not shown.
QRect frameOf(X11Connection& connection, xcb_window_t window) {
    if (!isShown(connection, window))
        return {};
    auto* server = connection.get();
    const auto sizeCookie = xcb_get_geometry(server, window);
    const auto placeCookie = xcb_translate_coordinates(server, window, connection.root(), 0, 0);
    const XcbPointer<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(server, sizeCookie, nullptr));
    const XcbPointer<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(server, placeCookie, nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

QRect largestPanel(X11Connection& connection) {
    QRect largest;
    for (const auto window :
         connection.property32(connection.root(), connection.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW)) {
        if (!isDock(connection, window))
            continue;
        const QRect frame = frameOf(connection, window);
        if (frame.width() * frame.height() > largest.width() * largest.height())
            largest = frame;
    }
    return largest & frameOf(connection, connection.root());
}

/// How bright what the screen shows there is, a value for each pixel looked at; empty when that cannot be read.
std::vector<int> brightness(X11Connection& connection, QRect place) {
    const auto cookie =
        xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, connection.root(),
                      static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()),
                      static_cast<std::uint16_t>(place.width()), static_cast<std::uint16_t>(place.height()), ~0U);
    const XcbPointer<xcb_get_image_reply_t> image(xcb_get_image_reply(connection.get(), cookie, nullptr));
    std::vector<int> found;
    if (!image || image->depth < 24)
        return found;
    const auto* bytes = xcb_get_image_data(image.get());
    const auto length = static_cast<std::size_t>(xcb_get_image_data_length(image.get()));
    for (std::size_t at = 0; at + pixelSize <= length; at += sampleDistance * pixelSize) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, bytes + at, pixelSize);
        found.push_back(qGray(pixel));
    }
    return found;
}

}  // namespace

std::optional<ColorScheme> panelScheme(X11Connection& connection) {
    const QRect panel = largestPanel(connection);
    if (panel.isEmpty())
        return std::nullopt;
    auto seen = brightness(connection, panel);
    if (seen.empty())
        return std::nullopt;
    // Titles and icons are the lesser part of a panel: the one in the middle is its ground.
    const auto middle = seen.begin() + static_cast<std::ptrdiff_t>(seen.size() / 2);
    std::nth_element(seen.begin(), middle, seen.end());
    return *middle < middleGray ? ColorScheme::dark : ColorScheme::light;
}

}  // namespace brindle::x11
