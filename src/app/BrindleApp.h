#pragma once

namespace brindle {

/// The program: takes its place as the one instance of the session, attaches the delegate and runs the main loop.
class BrindleApp {
public:
    /// Returns the process's exit code when the main loop has ended.
    static int run(int argc, char** argv);
};

}  // namespace brindle
