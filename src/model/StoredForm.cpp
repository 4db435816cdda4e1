#include "model/StoredForm.h"

// Long texts are read and written sixteen bytes at a time.
#ifdef __SSE2__
#define RAPIDJSON_SSE2
#include <emmintrin.h>
#endif
#include <rapidjson/reader.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <array>
#include <bit>
#include <bitset>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <variant>

#include "base/Unicode.h"

namespace brindle {

namespace {

using rapidjson::SizeType;

constexpr std::size_t readAhead = 16;  // bytes that the parser may look at behind the end

enum ItemKey : std::size_t { idKey, contentKey, typeKey, dateKey, sourceAppKey, isPinnedKey, listIdKey };
constexpr std::array<std::string_view, 7> itemKeys = {"id",        "content",  "type",  "date",
                                                      "sourceApp", "isPinned", "listId"};

enum ListKey : std::size_t { listIdentityKey, nameKey, createdAtKey };
constexpr std::array<std::string_view, 3> listKeys = {"id", "name", "createdAt"};

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
        return unicode::isWellFormed(view) ? put(std::string(view)) : put(Unusable());
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

std::optional<CustomList> makeList(Values& values) {
    const auto id = uuid(values[listIdentityKey]);
    auto* const name = std::get_if<std::string>(&values[nameKey]);
    const auto* const createdAt = std::get_if<double>(&values[createdAtKey]);
    if (!id || !name || !createdAt)
        return std::nullopt;
    return CustomList{*id, std::move(*name), Date{*createdAt}};
}

bool needsEscape(char character) {
    return static_cast<unsigned char>(character) < ' ' || character == '"' || character == '\\';
}

/// How many bytes at the start of the text need no escape.
std::size_t plainLength(std::string_view text) {
    std::size_t at = 0;
#ifdef __SSE2__
    const __m128i lastControl = _mm_set1_epi8(' ' - 1);
    const __m128i quote = _mm_set1_epi8('"');
    const __m128i backslash = _mm_set1_epi8('\\');
    for (; at + sizeof(__m128i) <= text.size(); at += sizeof(__m128i)) {
        const __m128i piece = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
        const __m128i isControl = _mm_cmpeq_epi8(_mm_min_epu8(piece, lastControl), piece);
        const __m128i isMarked = _mm_or_si128(_mm_cmpeq_epi8(piece, quote), _mm_cmpeq_epi8(piece, backslash));
        const auto found = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isControl, isMarked)));
        if (found != 0)
            return at + static_cast<std::size_t>(std::countr_zero(found));
    }
#endif
    while (at < text.size() && !needsEscape(text[at]))
        ++at;
    return at;
}

/// What the writer writes to.
class JsonText {
public:
    using Ch = char;  // the name is the writer's, like those of the operations

    void Put(char character) { text_.push_back(character); }
    void Flush() {}

    void append(std::string_view piece) { text_.append(piece); }
    void reserve(std::size_t size) { text_.reserve(size); }
    std::string take() { return std::move(text_); }

private:
    std::string text_;
};

}  // namespace

}  // namespace brindle

/// Whatever needs no escape goes out in one piece, which is several times as fast as by characters.
template <>
inline bool rapidjson::Writer<brindle::JsonText>::ScanWriteUnescapedString(StringStream& stream, std::size_t length) {
    const std::string_view rest(stream.src_, length - stream.Tell());
    const std::size_t plain = brindle::plainLength(rest);
    os_->append(rest.substr(0, plain));
    stream.src_ += plain;
    return plain < rest.size();
}

namespace brindle {

namespace {

class RecordWriter {
public:
    /// `expected`: about how many bytes there will be; memory that is not written to costs nothing.
    explicit RecordWriter(std::size_t expected) { json_.reserve(expected); }

    void beginArray() { writer_.StartArray(); }
    void beginObject() { writer_.StartObject(); }
    void endObject() { writer_.EndObject(); }
    std::string endArray() {
        writer_.EndArray();
        return json_.take();
    }

    void put(std::string_view key, std::string_view text) {
        writeKey(key);
        writeString(text);
    }
    /// One ill-formed text would make all of the blob unreadable, so none is written.
    void put(std::string_view key, const SharedText& text) {
        if (text.isWellFormed())
            put(key, text.view());
        else
            put(key, std::string_view(unicode::repaired(text.string())));
    }
    void put(std::string_view key, const Uuid& id) { put(key, std::string_view(id.text())); }
    void put(std::string_view key, Date date) {
        writeKey(key);
        writer_.Double(date.seconds);
    }
    void put(std::string_view key, bool flag) {
        writeKey(key);
        writer_.Bool(flag);
    }

private:
    void writeKey(std::string_view key) { writer_.Key(key.data(), static_cast<SizeType>(key.size())); }
    void writeString(std::string_view text) { writer_.String(text.data(), static_cast<SizeType>(text.size())); }

    JsonText json_;
    rapidjson::Writer<JsonText> writer_{json_};
};

constexpr std::size_t recordSize = 256;  // bytes of a stored record beside its text

std::size_t expectedSize(const ClipboardItem& item) {
    return recordSize + item.content.view().size() * 9 / 8;
}

std::size_t expectedSize(const CustomList& list) {
    return recordSize + list.name.size();
}

void write(RecordWriter& writer, const ClipboardItem& item) {
    writer.put(itemKeys[idKey], item.id);
    writer.put(itemKeys[contentKey], item.content);
    writer.put(itemKeys[typeKey], rawValue(item.type));
    writer.put(itemKeys[dateKey], item.date);
    if (item.sourceApp)
        writer.put(itemKeys[sourceAppKey], *item.sourceApp);
    writer.put(itemKeys[isPinnedKey], item.isPinned);
    if (item.listId)
        writer.put(itemKeys[listIdKey], *item.listId);
}

void write(RecordWriter& writer, const CustomList& list) {
    writer.put(listKeys[listIdentityKey], list.id);
    writer.put(listKeys[nameKey], SharedText(list.name));
    writer.put(listKeys[createdAtKey], list.createdAt);
}

template <typename Record>
std::string encode(const std::vector<Record>& records) {
    std::size_t expected = 2;
    for (const Record& record : records)
        expected += expectedSize(record);
    RecordWriter writer(expected);
    writer.beginArray();
    for (const Record& record : records) {
        writer.beginObject();
        write(writer, record);
        writer.endObject();
    }
    return writer.endArray();
}

}  // namespace

std::string encodeHistory(const std::vector<ClipboardItem>& history) {
    return encode(history);
}

std::string encodeLists(const std::vector<CustomList>& lists) {
    return encode(lists);
}

std::optional<std::vector<ClipboardItem>> decodeHistory(std::string json) {
    return decode<ClipboardItem>(std::move(json), itemKeys, makeItem);
}

std::optional<std::vector<CustomList>> decodeLists(std::string json) {
    return decode<CustomList>(std::move(json), listKeys, makeList);
}

}  // namespace brindle
