#include "bench/Desk.h"

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "model/StoredForm.h"
#include "views/render/DemoHistory.h"

namespace brindle::bench {

namespace {

/// Keeps what it was made with and forgets every write.
class ForgetfulStore final : public DefaultsStore {
public:
    ForgetfulStore(std::string history, std::int64_t limit) : history_(std::move(history)), limit_(limit) {}

    std::optional<std::string> data(std::string_view key) const override {
        return key == "BrindleHistory" ? std::optional(history_) : std::nullopt;
    }
    std::optional<std::string> string(std::string_view /*key*/) const override { return std::nullopt; }
    std::int64_t integer(std::string_view /*key*/) const override { return limit_; }
    bool boolean(std::string_view /*key*/) const override { return false; }
    void setData(std::string_view /*key*/, std::string_view /*bytes*/) override {}
    void setString(std::string_view /*key*/, std::string_view /*text*/) override {}
    void setInteger(std::string_view /*key*/, std::int64_t /*number*/) override {}
    void setBoolean(std::string_view /*key*/, bool /*flag*/) override {}
    Subscription onChange(std::function<void(std::string_view)> /*observer*/) override { return {}; }

private:
    std::string history_;
    std::int64_t limit_;
};

}  // namespace

std::string text(std::size_t number, std::size_t bytes) {
    static constexpr std::string_view prose =
        "The quick brown fox said \"no\" to the lazy dog and went home by way of the old café;\n\tit was late. ";
    std::string result = std::to_string(number) + ' ';
    while (result.size() < bytes)
        result += prose;
    result.resize(bytes, '.');
    while (!result.empty() && static_cast<unsigned char>(result.back()) >= 0x80)
        result.back() = '.';
    return result;
}

std::vector<ClipboardItem> entries(std::size_t count, std::size_t bytes, bool arePinned) {
    std::vector<ClipboardItem> items;
    items.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        ClipboardItem item;
        item.id = Uuid::generate();
        item.content = text(number, bytes);
        item.date = Date{700'000'000.25 + static_cast<double>(number)};
        item.sourceApp = "code";
        item.isPinned = arePinned;
        items.push_back(std::move(item));
    }
    return items;
}

Platform::Platform(Storing storing, const std::vector<ClipboardItem>& history) {
    test::installDemoImages(*this);
    const auto limit = static_cast<std::int64_t>(history.size()) + 1;
    if (storing == Storing::nowhere) {
        store_ = std::make_unique<ForgetfulStore>(encodeHistory(history), limit);
        return;
    }
    std::string pattern = (std::filesystem::temp_directory_path() / "brindle-bench-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    store_ = std::make_unique<SqliteDefaultsStore>(folder_);
    store_->setInteger("maxClipboardItems", limit);
    store_->setData("BrindleHistory", encodeHistory(history));
}

Platform::~Platform() {
    store_.reset();
    if (!folder_.empty())
        std::filesystem::remove_all(folder_);
}

}  // namespace brindle::bench
