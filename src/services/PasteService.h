#pragma once

namespace brindle {

/// Pastes what is on the pasteboard into the application that was in front before Brindle. Main thread; one sequence
/// of timed steps at a time.
class PasteService {
public:
    PasteService() = delete;

    /// Returns at once; the key chord follows 0.11 s later or as soon as the target is frontmost, at most about 1.3 s
    /// later. Does nothing while an earlier call holds the lock (until 0.05 s after its post, 1 s at most).
    static void paste();
};

}  // namespace brindle
