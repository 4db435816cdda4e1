#include "model/StoredForm.h"

#include <rapidjson/writer.h>

#include <cstddef>

#include "base/Unicode.h"
#include "model/JsonText.h"
#include "model/StoredKeys.h"

namespace brindle {

namespace {

/// What the writer writes to. The function below belongs to the writer of this type, which no other file has.
struct Output final : JsonText {};

}  // namespace

}  // namespace brindle

/// All of a string at once, which is several times as fast as by characters.
template <>
inline bool rapidjson::Writer<brindle::Output>::ScanWriteUnescapedString(StringStream& stream, std::size_t length) {
    os_->putEscaped({stream.src_, length - stream.Tell()});
    stream.src_ += length - stream.Tell();
    return false;
}

namespace brindle {

namespace {

using rapidjson::SizeType;

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

    Output json_;
    rapidjson::Writer<Output> writer_{json_};
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

}  // namespace brindle
