#include "model/StoredForm.h"

#include <gmock/gmock.h>

#include <string>

#include "base/Unicode.h"

namespace brindle {
namespace {

using ::testing::ElementsAre;
using namespace std::string_literals;

const std::string idText = "0123ABCD-89EF-4000-8000-0123456789AB";
const Uuid id = *Uuid::parse(idText);

ClipboardItem entry(std::string content) {
    return {id, std::move(content), ItemType::text, Date{1.5}, std::nullopt, false, std::nullopt};
}

/// An entry as it is stored, with `change` behind its keys and in place of that which it gives anew.
std::string stored(const std::string& change) {
    std::string entry;
    for (const std::string& each : {R"(,"id":")" + idText + '"', R"(,"content":"abc")"s, R"(,"type":"text")"s,
                                    R"(,"date":1.5)"s, R"(,"isPinned":false)"s}) {
        if (!change.starts_with(each.substr(0, each.find(':') + 1)))
            entry += each;
    }
    return "[{" + (entry + change).substr(1) + "}]";
}

TEST(StoredFormTest, LeavesOutWhatIsAbsent) {
    EXPECT_EQ(encodeHistory({}), "[]");
    EXPECT_EQ(encodeHistory({entry("abc")}), stored(""));
    EXPECT_EQ(encodeLists({{id, "Work", Date{2}}}), R"([{"id":")" + idText + R"(","name":"Work","createdAt":2.0}])");
}

TEST(StoredFormTest, EveryFieldAndTheOrderComeBack) {
    ClipboardItem full{Uuid::generate(),  "line\n\"quoted\" \u2028 é 🙂 \x01\0 end"s,
                       ItemType::image,   Date{-0.1},
                       "org.example.App", true,
                       Uuid::generate()};
    const std::vector<ClipboardItem> history = {full, entry(""), entry("second")};
    EXPECT_EQ(decodeHistory(encodeHistory(history)), history);
    const std::vector<CustomList> lists = {{Uuid::generate(), "b", Date{3}}, {Uuid::generate(), "", Date{0}}};
    EXPECT_EQ(decodeLists(encodeLists(lists)), lists);
    EXPECT_EQ(decodeHistory(encodeHistory({entry("a\xFF"s)})), std::vector{entry("a\xEF\xBF\xBD")});
}

TEST(StoredFormTest, ReadsWhatAnotherWriterMayHaveWritten) {
    EXPECT_EQ(decodeHistory(" \n[ ]\t"), std::vector<ClipboardItem>());
    const std::string deep = R"(,"more":)" + std::string(1000000, '[') + std::string(1000000, ']');
    for (const auto& change : {
             ""s,
             R"(,"sourceApp":null,"listId":null)"s,
             R"(,"other":{"id":[{"date":"x"}],"content":null},"":[],"\u0000":1e300)"s,
             deep,
         })
        EXPECT_EQ(decodeHistory(stored(change)), std::vector{entry("abc")}) << change.substr(0, 80);
    EXPECT_EQ(decodeHistory(stored(R"(,"date":0)"))->front().date.unixTime(), Date::referenceInUnixTime);
    EXPECT_EQ(decodeHistory(stored(R"(,"id":"0123abcd-89ef-4000-8000-0123456789ab")"))->front().id, id);
    EXPECT_EQ(decodeHistory(stored(R"(,"content":"\ud83d\ude42")"))->front().content.string(), "🙂");
}

TEST(StoredFormTest, OneFaultAnywhereMakesAllOfItUnreadable) {
    const std::string good = stored("").substr(1, stored("").size() - 2);
    for (const auto& json : {
             ""s,
             "null"s,
             "[1]"s,
             "[" + good + ",]",
             "[" + good + "]\0x"s,
             "[" + good + ",{}]",
             std::string(1000000, '['),
             stored(R"(,"id":"0123")"),
             stored(R"(,"content":null)"),
             stored(R"(,"content":"\ud800")"),
             stored(",\"content\":\"\xFF\""),
             stored(",\"content\":\"a\nb\""),
             stored(",\"content\":\"long enough to go the quick way \x1B a\""),
             stored(",\"other\":\"\xFF\""),
             stored(R"(,"type":"Text")"),
             stored(R"(,"date":"1.5")"),
             stored(R"(,"date":1e400)"),
             stored(R"(,"date":)" + std::string(100000, '9')),
             stored(R"(,"listId":"")"),
             stored(R"(,"isPinned":0)"),
             stored(R"(,"listId":null,"listId":null)"),
         })
        EXPECT_FALSE(decodeHistory(json)) << json.substr(0, 160);
}

TEST(StoredFormTest, EveryKeyOfARecordIsRequiredAndEveryCutIsNoticed) {
    const auto isHistory = [](const std::string& json) { return decodeHistory(json).has_value(); };
    const auto areLists = [](const std::string& json) { return decodeLists(json).has_value(); };
    const std::string history = stored("");
    const std::string lists = encodeLists({{id, "é", Date{1}}});
    for (const char* key : {"id", "content", "type", "date", "isPinned", "name", "createdAt"}) {
        for (std::string json : {history, lists}) {
            if (const auto at = json.find("\""s + key + "\":"); at != std::string::npos)
                json.insert(at + 1, "x");
            else
                continue;
            EXPECT_FALSE(isHistory(json) || areLists(json)) << json;
        }
    }
    for (std::size_t length = 0; length < history.size(); ++length)
        EXPECT_FALSE(isHistory(history.substr(0, length))) << length;
    for (std::size_t length = 0; length < lists.size(); ++length)
        EXPECT_FALSE(areLists(lists.substr(0, length))) << length;
}

}  // namespace
}  // namespace brindle
