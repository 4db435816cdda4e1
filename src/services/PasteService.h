#pragma once

#include <functional>

namespace brindle {

/// Pastes what is on the pasteboard into the application that was in front before Brindle. Main thread; one sequence
/// of timed steps at a time.
class PasteService {
public:
    PasteService() = delete;

    /// Returns at once; the key chord follows 0.11 s later or as soon as the target is frontmost, at most about 1.3 s
    /// later. Does nothing while an earlier call holds the lock (until 0.05 s after its post, 1 s at most).
    static void paste();

    /// Runs the step at once, or while a sequence is under way, 0.05 s after its chord has gone out: for what would
    /// come in front of its target and take the chord.
    static void afterPaste(std::function<void()> step);
};

}  // namespace brindle
