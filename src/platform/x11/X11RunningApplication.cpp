#include "platform/x11/X11RunningApplication.h"

#include <utility>

#include "platform/x11/X11Workspace.h"

namespace brindle {

X11RunningApplication::X11RunningApplication(X11Workspace* workspace, xcb_window_t window,
                                             std::shared_ptr<const bool> isGone, X11ApplicationFacts facts)
    : workspace_(workspace), window_(window), isGone_(std::move(isGone)), facts_(std::move(facts)) {}

X11RunningApplication::~X11RunningApplication() = default;

bool X11RunningApplication::activate() {
    return workspace_ && !isTerminated() && workspace_->activate(*this);
}

}  // namespace brindle
