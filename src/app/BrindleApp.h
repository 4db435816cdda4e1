#pragma once

namespace brindle {

/// The program: takes its place as the one instance of the session, attaches the delegate and runs the main loop.
class BrindleApp {
public:
    /// Takes the program's arguments, of which only its name counts. Returns the process's exit code when the main loop
    /// has ended.
    static int run(char** argv);
};

}  // namespace brindle
