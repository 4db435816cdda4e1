#include "platform/freedesktop/PowerCut.h"

#include <filesystem>
#include <fstream>
#include <new>

namespace brindle {

namespace {

struct File {
    sqlite3_file base;
    PowerCut* power;
    const std::string* name;  // none for what does not survive anyway
    sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

File& of(sqlite3_file* file) {
    return *reinterpret_cast<File*>(file);
}

/// The functions that only hand on.
template <auto Method>
struct Below;
template <typename... Arguments, int (*sqlite3_io_methods::*Method)(sqlite3_file*, Arguments...)>
struct Below<Method> {
    static int call(sqlite3_file* file, Arguments... arguments) {
        auto* const real = of(file).real();
        return (real->pMethods->*Method)(real, arguments...);
    }
};

int write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
    if (of(file).name != nullptr)
        of(file).power->change(*of(file).name, {offset, {static_cast<const char*>(bytes), std::size_t(count)}});
    return of(file).real()->pMethods->xWrite(of(file).real(), bytes, count, offset);
}

int truncate(sqlite3_file* file, sqlite3_int64 size) {
    if (of(file).name != nullptr)
        of(file).power->change(*of(file).name, {size, {}});
    return of(file).real()->pMethods->xTruncate(of(file).real(), size);
}

int sync(sqlite3_file* file, int /*flags*/) {  // the real disk need not be bothered
    if (of(file).name != nullptr)
        of(file).power->sync(*of(file).name);
    return SQLITE_OK;
}

int unmapShared(sqlite3_file* file, int deletes) {
    return of(file).real()->pMethods->xShmUnmap(of(file).real(), deletes);
}

void barrier(sqlite3_file* file) {
    of(file).real()->pMethods->xShmBarrier(of(file).real());
}

int close(sqlite3_file* file) {
    const int code = of(file).real()->pMethods->xClose(of(file).real());
    delete of(file).name;
    return code;
}

using Io = sqlite3_io_methods;
const Io methods = {2,
                    close,
                    Below<&Io::xRead>::call,
                    write,
                    truncate,
                    sync,
                    Below<&Io::xFileSize>::call,
                    Below<&Io::xLock>::call,
                    Below<&Io::xUnlock>::call,
                    Below<&Io::xCheckReservedLock>::call,
                    Below<&Io::xFileControl>::call,
                    Below<&Io::xSectorSize>::call,
                    [](sqlite3_file* /*file*/) { return 0; },
                    Below<&Io::xShmMap>::call,
                    Below<&Io::xShmLock>::call,
                    barrier,
                    unmapShared,
                    nullptr,
                    nullptr};

PowerCut& powerOf(sqlite3_vfs* vfs) {
    return *static_cast<PowerCut*>(vfs->pAppData);
}

int open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    auto& power = powerOf(vfs);
    auto* const made = new (file) File{{nullptr}, &power, nullptr};
    const int code = power.below()->xOpen(power.below(), name, made->real(), flags, outFlags);
    if (code != SQLITE_OK)
        return code;
    if (name != nullptr)
        made->name = new std::string(std::filesystem::path(name).filename());
    made->base.pMethods = &methods;
    return code;
}

int removeFile(sqlite3_vfs* vfs, const char* name, int syncsFolder) {
    auto& power = powerOf(vfs);
    power.remove(std::filesystem::path(name).filename());
    return power.below()->xDelete(power.below(), name, syncsFolder);
}

void apply(std::string& content, const PowerCut::Change& change) {
    const auto offset = static_cast<std::size_t>(change.offset);
    if (change.bytes.empty()) {
        content.resize(offset);
        return;
    }
    content.resize(std::max(content.size(), offset + change.bytes.size()));
    content.replace(offset, change.bytes.size(), change.bytes);
}

}  // namespace

PowerCut::PowerCut(int operation, unsigned seed) : operation_(operation), random_(seed), above_(*below_) {
    above_.zName = "power cut";
    above_.szOsFile = static_cast<int>(sizeof(File)) + below_->szOsFile;
    above_.pAppData = this;
    above_.xOpen = open;
    above_.xDelete = removeFile;
    sqlite3_vfs_register(&above_, 1);
}

PowerCut::~PowerCut() {
    sqlite3_vfs_unregister(&above_);
    sqlite3_vfs_register(below_, 1);
}

void PowerCut::count() {
    if (--operation_ != 0)
        return;
    // The cache was on its way to the disk, in any order, in sectors.
    constexpr std::size_t sector = 512;
    for (const auto& [name, disk] : disks_) {
        auto content = disk.synced;
        for (const auto& each : disk.cached) {
            if (each.bytes.empty() && random_() % 2 == 0)
                apply(content, each);
            for (std::size_t at = 0; at < each.bytes.size(); at += sector) {
                if (random_() % 2 == 0)
                    apply(content, {each.offset + static_cast<sqlite3_int64>(at), each.bytes.substr(at, sector)});
            }
        }
        found_[name] = std::move(content);
    }
}

void PowerCut::change(const std::string& name, Change change) {
    disks_[name].cached.push_back(std::move(change));
    count();
}

void PowerCut::sync(const std::string& name) {
    count();
    auto& disk = disks_[name];
    for (const auto& each : disk.cached)
        apply(disk.synced, each);
    disk.cached.clear();
}

void PowerCut::remove(const std::string& name) {
    count();
    disks_.erase(name);
}

void PowerCut::restore(const std::string& folder) const {
    for (const auto& [name, content] : found_)
        std::ofstream(folder + '/' + name, std::ios::binary) << content;
}

}  // namespace brindle
