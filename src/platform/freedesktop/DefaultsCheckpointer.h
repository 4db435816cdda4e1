#pragma once

#include <atomic>
#include <string>
#include <thread>

namespace brindle {

/// Carries the write-ahead log over into the database's file on a thread and a connection of its own: a text of 64 MiB
/// takes as long there as its own write. What is only in the log is on the disk as well.
class DefaultsCheckpointer {
public:
    explicit DefaultsCheckpointer(std::string path) : path_(std::move(path)) {}
    DefaultsCheckpointer(const DefaultsCheckpointer&) = delete;
    DefaultsCheckpointer& operator=(const DefaultsCheckpointer&) = delete;
    ~DefaultsCheckpointer();  ///< waits for the one under way

    /// Begins one unless one is under way, and returns at once. Main thread.
    void begin();

private:
    void checkpoint();

    std::string path_;
    std::thread thread_;
    std::atomic<bool> isUnderWay_ = false;
};

}  // namespace brindle
