#pragma once

#include <sqlite3.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace brindle {

/// Becomes SQLite's way to the disk and keeps account of what a disk with a write cache would hold: what was synced,
/// and of the rest any part. At the chosen operation the power fails; the program does not notice and goes on.
class PowerCut {
public:
    PowerCut(int operation, unsigned seed);
    PowerCut(const PowerCut&) = delete;
    PowerCut& operator=(const PowerCut&) = delete;
    ~PowerCut();

    [[nodiscard]] bool hasHappened() const { return operation_ <= 0; }
    /// Puts the files into that folder as they were found when the power was back.
    void restore(const std::string& folder) const;

    // From here on for the functions that SQLite calls.
    struct Change {
        sqlite3_int64 offset;
        std::string bytes;  ///< none: the file was cut there
    };
    struct Disk {
        std::string synced;
        std::vector<Change> cached;
    };
    void change(const std::string& name, Change change);
    void sync(const std::string& name);
    void remove(const std::string& name);
    sqlite3_vfs* below() const { return below_; }

private:
    void count();

    int operation_;  // how many are still to come
    std::mt19937 random_;
    std::map<std::string, Disk> disks_;
    std::map<std::string, std::string> found_;
    sqlite3_vfs* below_ = sqlite3_vfs_find(nullptr);
    sqlite3_vfs above_;
};

}  // namespace brindle
