#include "platform/x11/X11Pasteboard.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "base/Log.h"
#include "platform/x11/X11TestPeer.h"
#include "support/PasteboardContract.h"

namespace brindle {
namespace {

using namespace std::string_literals;

/// Short, so that the tests of owners who do not answer are.
constexpr X11ReadLimits testLimits{.deadline = 0.15, .longestRead = 0.6, .largestText = std::size_t{4} << 20U};

class X11PasteboardTest : public testing::Test {
protected:
    X11PasteboardTest() {
        peer_.drop();
        pasteboard_ = std::make_unique<X11Pasteboard>(*connection_, testLimits);
    }

    std::string text() { return pasteboard_->string() ? pasteboard_->string()->string() : "(none)"; }
    bool counts(std::int64_t count) {
        return await([&] { return pasteboard_->changeCount() >= count; }) && pasteboard_->changeCount() == count;
    }
    /// After another program's copy has arrived, everything before it has.
    void expectNothingElseArrived(std::int64_t count) {
        peer_.own({{"UTF8_STRING", TestAnswer::text("marker")}});
        EXPECT_TRUE(counts(count + 1)) << pasteboard_->changeCount();
        EXPECT_EQ(text(), "marker");
    }
    TestPeer peer_;
    std::unique_ptr<X11Connection> connection_ = X11Connection::open();
    std::unique_ptr<X11Pasteboard> pasteboard_;
};

TEST_F(X11PasteboardTest, KeepsTheContract) {
    checkPasteboardContract({.pasteboard = *pasteboard_,
                             .copyAsOther =
                                 [this](auto& text) {
                                     peer_.own({{"UTF8_STRING", TestAnswer::text(text)}});
                                 },
                             .copyImageAsOther =
                                 [this] {
                                     peer_.own({{"image/png", TestAnswer::text("\x89PNG", "image/png")}});
                                 },
                             .pasteAsOther = [this] { return peer_.paste(); },
                             .settle = [](auto& until) { await(until); }});
}

TEST_F(X11PasteboardTest, GetsFromEveryKindOfOwnerWhatThereIsToGet) {
    struct Case {
        const char* name;
        TestAnswers answers;
        std::string expected;
    };
    using Way = TestAnswer::Way;
    const auto utf8 = [](const char* text) { return TestAnswer::text(text); };
    const auto old = TestAnswer::text("caf\xE9", "STRING");
    const TestAnswer refusal{Way::refusal};
    const std::string chunk(3000, 'x');
    const auto hint = "x-kde-passwordManagerHint";
    const std::vector<Case> cases = {
        {"refuses everything", {{"TARGETS", refusal}}, "(none)"},
        {"knows no TARGETS", {{"TARGETS", refusal}, {"UTF8_STRING", utf8("plain")}}, "plain"},
        {"knows no TARGETS nor UTF-8", {{"TARGETS", refusal}, {"STRING", old}}, "café"},
        {"lists its targets as text", {{"TARGETS", old}, {"UTF8_STRING", utf8("plain")}}, "plain"},
        {"has a better target", {{"STRING", old}, {"UTF8_STRING", utf8("better")}}, "better"},
        {"refuses what it offers", {{"UTF8_STRING", refusal}, {"STRING", old}}, "café"},
        {"gives a wrong type", {{"UTF8_STRING", TestAnswer::text("1234", "INTEGER")}, {"STRING", old}}, "café"},
        {"gives another text type", {{"UTF8_STRING", old}}, "café"},
        {"says no encoding", {{"text/plain", TestAnswer::text("caf\xE9", "text/plain")}}, "café"},
        {"is ill-formed", {{"UTF8_STRING", TestAnswer::text("a\xFF\xE2\x82z\0"s)}}, "a\uFFFD\uFFFDz\0"s},
        {"is no secret", {{"UTF8_STRING", utf8("pw")}, {hint, utf8("public")}}, "pw"},
        {"does not say its secret", {{"UTF8_STRING", utf8("pw")}, {hint, {Way::silence}}}, "(none)"},
        {"refuses to say its secret", {{"UTF8_STRING", utf8("pw")}, {hint, refusal}}, "(none)"},
        {"sends chunks", {{"UTF8_STRING", {Way::chunks, "UTF8_STRING", {"a\xE2", "\x82", "\xAC z"}}}}, "a€ z"},
        {"sends no chunks at all", {{"UTF8_STRING", {Way::chunks}}}, ""},
        {"stops half-way", {{"UTF8_STRING", {Way::chunksThenSilence, "UTF8_STRING", {chunk, chunk}}}}, "(none)"},
        {"takes the clipboard again each time", {{"TARGETS", {Way::taking}}}, "(none)"},
        {"drips for ever", {{"UTF8_STRING", {Way::chunksForEver, "UTF8_STRING", {"drip"}}}}, "(none)"},
    };
    std::int64_t count = 0;
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        TestPeer owner;
        owner.own(each.answers);
        EXPECT_TRUE(counts(++count)) << pasteboard_->changeCount();
        EXPECT_EQ(text(), each.expected);
        owner.drop();
        EXPECT_TRUE(counts(++count));
        EXPECT_EQ(text(), "(none)");
    }
}

TEST_F(X11PasteboardTest, RefusesATextBeyondTheLimitWithOneLineThatDoesNotQuoteIt) {
    std::vector<std::string> lines;
    setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    const std::string limit(testLimits.largestText, 'y');
    peer_.own({{"UTF8_STRING", {TestAnswer::Way::chunks, "UTF8_STRING", {limit}}}});
    EXPECT_TRUE(counts(1));
    EXPECT_EQ(text(), limit);
    peer_.own({{"UTF8_STRING", {TestAnswer::Way::chunks, "UTF8_STRING", {limit, "y"}}}});
    EXPECT_TRUE(counts(2));
    EXPECT_EQ(text(), "(none)");
    setLogSink({});
    EXPECT_THAT(lines, testing::ElementsAre("A text of more than 4 MiB on the clipboard is left out."));
}

TEST_F(X11PasteboardTest, TurnsFromAHungOwnerToTheNextAtOnceAndIgnoresItsLateAnswer) {
    TestPeer hung;
    hung.own({{"TARGETS", {TestAnswer::Way::silence}}});
    ASSERT_TRUE(await([&] { return hung.requestsSeen == 1; }));
    peer_.own({{"UTF8_STRING", TestAnswer::text("next")}});
    EXPECT_TRUE(counts(1));
    EXPECT_EQ(text(), "next");
    hung.answerHeldRequests();
    expectNothingElseArrived(1);
}

TEST_F(X11PasteboardTest, ServesEveryTextTarget) {
    pasteboard_->clearContents();
    pasteboard_->setString("café €");
    for (const char* target : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT"})
        EXPECT_EQ(peer_.paste(target), "café €");
    EXPECT_EQ(peer_.paste("STRING"), "caf\xE9 ?");
    EXPECT_EQ(peer_.paste("image/png"), std::nullopt);
    EXPECT_EQ(peer_.paste("TIMESTAMP")->size(), 4U);
    const auto listed = peer_.paste("TARGETS").value_or("");
    for (const char* target : {"UTF8_STRING", "STRING", "TARGETS"}) {
        const xcb_atom_t atom = peer_.connection().atom(target);
        EXPECT_NE(listed.find({reinterpret_cast<const char*>(&atom), sizeof atom}), std::string::npos) << target;
    }
}

TEST_F(X11PasteboardTest, ServesTheTextThatAnOwnerLeavesBehindAsTheSameChangeButNoSecret) {
    auto ended = std::make_unique<TestPeer>();
    ended->own({{"UTF8_STRING", TestAnswer::text("left")}, {"text/html", TestAnswer::text("<b>")}});
    EXPECT_TRUE(counts(1));
    EXPECT_EQ(peer_.paste("TARGETS")->size(), 2 * sizeof(xcb_atom_t)) << "a living owner keeps its clipboard";
    ended->die();
    EXPECT_TRUE(await([&] { return peer_.paste() == "left"; }));
    EXPECT_EQ(pasteboard_->changeCount(), 1);
    TestPeer manager;
    manager.own({{"UTF8_STRING", TestAnswer::text("pw")}, {"x-kde-passwordManagerHint", TestAnswer::text("secret")}});
    EXPECT_TRUE(counts(2));
    manager.die();
    EXPECT_TRUE(counts(3));
    EXPECT_EQ(peer_.paste(), std::nullopt);
}

TEST_F(X11PasteboardTest, LendsPrimaryUntilTheUserSelectsSomething) {
    pasteboard_->lendPrimary("lent");
    EXPECT_EQ(peer_.paste("UTF8_STRING", "PRIMARY"), "lent");
    TestPeer user;
    user.answers = {{"UTF8_STRING", TestAnswer::text("selected meanwhile")}};
    user.own("PRIMARY");
    (void)user.connection().atomName(XCB_ATOM_STRING);
    pasteboard_->returnPrimary();
    EXPECT_EQ(peer_.paste("UTF8_STRING", "PRIMARY"), "selected meanwhile");
    EXPECT_EQ(pasteboard_->changeCount(), 0);
}

TEST_F(X11PasteboardTest, ServesALargeTextToManyAtOnceAlsoWhenItIsReplacedMeanwhile) {
    std::string large;
    while (large.size() < (std::size_t{5} << 20U))
        large += "0123456789 é€😀 ";
    pasteboard_->clearContents();
    pasteboard_->setString(large);
    TestPeer first;
    TestPeer second;
    first.ask();
    second.ask();
    ASSERT_TRUE(await([&] { return first.arrived() && second.arrived(); }));
    peer_.own({{"UTF8_STRING", TestAnswer::text("somebody else's")}});  // a transfer under way goes on
    EXPECT_TRUE(await([&] { return first.isAnswered() && second.isAnswered(); }));
    EXPECT_TRUE(first.arrived() == large);
    EXPECT_TRUE(second.arrived() == large);
}

}  // namespace
}  // namespace brindle
