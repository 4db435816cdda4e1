#pragma once

#include <gmock/gmock.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "base/Log.h"

namespace brindle {

/// A folder of the test's own; it goes with the test.
class Scratch {
public:
    Scratch() : path_(testing::TempDir() + "/brindle-XXXXXX") { ::mkdtemp(path_.data()); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch() { std::filesystem::remove_all(path_); }

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string operator/(const std::string& name) const { return path_ + '/' + name; }

    std::string write(const std::string& name, const std::string& content) const {
        const auto file = *this / name;
        std::filesystem::create_directories(std::filesystem::path(file).parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }

private:
    std::string path_;
};

inline std::string read(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// What the program logs meanwhile.
class LogLines {
public:
    LogLines() {
        setLogSink([this](std::string_view line) { lines.emplace_back(line); });
    }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;
    ~LogLines() { setLogSink({}); }

    std::vector<std::string> lines;
};

}  // namespace brindle
