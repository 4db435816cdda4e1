#include "model/StoredForm.h"

// Long texts are read sixteen bytes at a time.
#ifdef __SSE2__
#define RAPIDJSON_SSE2
#endif
#include <rapidjson/reader.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <charconv>
#include <cstddef>
#include <functional>
#include <span>
#include <unordered_map>
#include <utility>
#include <variant>

#include "base/Unicode.h"
#include "model/StoredKeys.h"

namespace brindle {

namespace {

using rapidjson::SizeType;

constexpr std::size_t readAhead = 16;  // bytes that the parser may look at behind the end

/// An array, an object, a number beyond a double or a text with half a surrogate pair.
struct Unusable {};

/// What an object has under one key; nothing when it is missing or null.
using Value = std::variant<std::monostate, bool, double, std::string, Unusable>;
using Values = std::array<Value, itemKeys.size()>;

/// Takes an array of objects apart and hands each object's values under the known keys to `take`, which says whether
/// they will do; an object that has one of them twice will not. Whatever stands under other keys is passed over.
class ObjectsHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, ObjectsHandler> {
public:
    ObjectsHandler(std::span<const std::string_view> keys, std::function<bool(Values&)> take)
        : keys_(keys), take_(std::move(take)), current_(keys.size()) {}

    // The names are the parser's.
    bool Null() { return put({}); }
    bool Bool(bool flag) { return put(flag); }
    bool RawNumber(const char* digits, SizeType length, bool /*copy*/) {
        double number = 0;
        const auto read = std::from_chars(digits, digits + length, number);
        return read.ec == std::errc() ? put(number) : put(Unusable());
    }
    bool String(const char* text, SizeType length, bool /*copy*/) {
        const std::string_view view(text, length);
        if (!isWanted())
            return put({});
        // All of it was well formed. Only an escape brings half a surrogate pair in, and that begins with this byte.
        const bool isSound = view.find('\xED') == view.npos || unicode::isWellFormed(view);
        return isSound ? put(std::string(view)) : put(Unusable());
    }
    bool StartArray() { return open(outermost); }
    bool EndArray(SizeType /*count*/) {
        --depth_;
        return true;
    }
    bool StartObject() {
        if (depth_ == outermost + 1) {
            values_.fill({});
            seen_.reset();
        }
        return open(outermost + 1);
    }
    bool EndObject(SizeType /*count*/) { return --depth_ != outermost + 1 || take_(values_); }
    bool Key(const char* name, SizeType length, bool /*copy*/) {
        if (depth_ != withinObject)
            return true;
        current_ = std::find(keys_.begin(), keys_.end(), std::string_view(name, length)) - keys_.begin();
        const bool isRepeated = isWanted() && seen_.test(current_);
        if (isWanted())
            seen_.set(current_);
        return !isRepeated;
    }

private:
    static constexpr std::size_t outermost = 0;
    static constexpr std::size_t withinObject = 2;

    [[nodiscard]] bool isWanted() const { return depth_ == withinObject && current_ < keys_.size(); }

    bool put(Value value) {
        if (isWanted())
            values_[current_] = std::move(value);
        return depth_ >= withinObject;
    }

    /// An array belongs outermost and an object within it; deeper ones are values.
    bool open(std::size_t place) {
        if (depth_ != place && !put(Unusable()))
            return false;
        ++depth_;
        return true;
    }

    std::span<const std::string_view> keys_;
    std::function<bool(Values&)> take_;
    Values values_;
    std::bitset<itemKeys.size()> seen_;  // the keys of the object so far
    std::size_t current_;
    std::size_t depth_ = outermost;  // arrays and objects that are open
};

/// JSON has no control characters in a text, but the parser's quick way through one lets these pass. Without a way out
/// of the loop the compiler looks at many at once.
bool hasControlPassedOver(std::string_view json) {
    unsigned char found = 0;
    for (const char character : json)
        found |= static_cast<unsigned char>(character >= 0x1A && character <= 0x1F);
    return found != 0;
}

/// Iterative, so that depth costs heap and not stack; in place, so that a long text is not gathered on the side.
bool read(std::string json, ObjectsHandler& handler) {
    constexpr unsigned flags =
        rapidjson::kParseIterativeFlag | rapidjson::kParseInsituFlag | rapidjson::kParseNumbersAsStringsFlag;
    if (!unicode::isWellFormed(json) || hasControlPassedOver(json))
        return false;
    const std::size_t size = json.size();
    json.append(readAhead, '\0');
    rapidjson::InsituStringStream stream(json.data());
    rapidjson::Reader reader;
    // The parser takes a NUL for the end of the text; there may be more behind it.
    return !reader.Parse<flags>(stream, handler).IsError() && stream.Tell() == size;
}

template <typename Record>
std::optional<std::vector<Record>> decode(std::string json, std::span<const std::string_view> keys,
                                          std::optional<Record> (*make)(Values&)) {
    std::vector<Record> records;
    ObjectsHandler handler(keys, [&records, make](Values& values) {
        auto record = make(values);
        if (record)
            records.push_back(std::move(*record));
        return record.has_value();
    });
    if (!read(std::move(json), handler))
        return std::nullopt;
    return records;
}

bool isAbsent(const Value& value) {
    return std::holds_alternative<std::monostate>(value);
}

std::optional<Uuid> uuid(const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text ? Uuid::parse(*text) : std::nullopt;
}

std::optional<ItemType> itemType(const Value& value) {
    const auto* raw = std::get_if<std::string>(&value);
    return raw ? itemTypeFromRawValue(*raw) : std::nullopt;
}

std::optional<ClipboardItem> makeItem(Values& values) {
    const auto id = uuid(values[idKey]);
    auto* const content = std::get_if<std::string>(&values[contentKey]);
    const auto type = itemType(values[typeKey]);
    const auto* const date = std::get_if<double>(&values[dateKey]);
    auto* const sourceApp = std::get_if<std::string>(&values[sourceAppKey]);
    const auto* const isPinned = std::get_if<bool>(&values[isPinnedKey]);
    const auto listId = uuid(values[listIdKey]);
    if (!id || !content || !type || !date || !isPinned || (!sourceApp && !isAbsent(values[sourceAppKey])) ||
        (!listId && !isAbsent(values[listIdKey])))
        return std::nullopt;
    ClipboardItem item{*id, std::move(*content), *type, Date{*date}, std::nullopt, *isPinned, listId};
    if (sourceApp)
        item.sourceApp = std::move(*sourceApp);
    return item;
}

/// A few applications are behind all entries: each one's name is kept once.
void shareSourceApps(std::vector<ClipboardItem>& items) {
    std::unordered_map<std::string_view, SharedText> names;
    for (ClipboardItem& item : items) {
        if (item.sourceApp)
            item.sourceApp = names.try_emplace(item.sourceApp->view(), *item.sourceApp).first->second;
    }
}

std::optional<CustomList> makeList(Values& values) {
    const auto id = uuid(values[listIdentityKey]);
    auto* const name = std::get_if<std::string>(&values[nameKey]);
    const auto* const createdAt = std::get_if<double>(&values[createdAtKey]);
    if (!id || !name || !createdAt)
        return std::nullopt;
    return CustomList{*id, std::move(*name), Date{*createdAt}};
}

}  // namespace

std::optional<std::vector<ClipboardItem>> decodeHistory(std::string json) {
    auto items = decode<ClipboardItem>(std::move(json), itemKeys, makeItem);
    if (items)
        shareSourceApps(*items);
    return items;
}

std::optional<std::vector<CustomList>> decodeLists(std::string json) {
    return decode<CustomList>(std::move(json), listKeys, makeList);
}

}  // namespace brindle
