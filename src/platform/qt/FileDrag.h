#pragma once

#include <string_view>

class QPixmap;

namespace brindle {

/// Lets the user drop the file at that path, shown as `picture`, into any program: as its address and nothing else.
/// Call it while the mouse button is down. It returns after the drop, or at once when nothing can be dragged; other
/// events are delivered meanwhile, so that the caller may be gone by then.
void dragFile(std::string_view path, const QPixmap& picture);

}  // namespace brindle
