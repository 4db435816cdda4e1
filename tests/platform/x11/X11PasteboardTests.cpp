#include "platform/x11/X11Pasteboard.h"

#include <gmock/gmock.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "base/Log.h"
#include "platform/x11/X11TestPeer.h"
#include "support/PasteboardContract.h"

namespace brindle {
namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::Contains;
using testing::Not;

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
    /// Properties left over on windows of the pasteboard.
    int strayProperties() {
        auto* x = peer_.connection().get();
        const XcbPointer<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(x, xcb_query_tree(x, peer_.connection().root()), nullptr));
        const auto* windows = xcb_query_tree_children(tree.get());
        int found = 0;
        for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
            const XcbPointer<xcb_list_properties_reply_t> properties(
                xcb_list_properties_reply(x, xcb_list_properties(x, windows[i]), nullptr));
            for (int j = 0; properties && j < properties->atoms_len; ++j)
                found += peer_.connection()
                             .atomName(xcb_list_properties_atoms(properties.get())[j])
                             .starts_with("BRINDLE_SELECTION_");
        }
        return found;
    }

    TestPeer peer_;
    std::unique_ptr<X11Connection> connection_ = X11Connection::open();
    std::unique_ptr<X11Pasteboard> pasteboard_;
};

class X11World final : public PasteboardWorld {
public:
    X11World(X11Pasteboard& pasteboard, TestPeer& peer) : pasteboard_(pasteboard), peer_(peer) {}
    Pasteboard& pasteboard() override { return pasteboard_; }
    void copyAsOther(const std::string& text) override { peer_.own({{"UTF8_STRING", TestAnswer::text(text)}}); }
    void copyImageAsOther() override { peer_.own({{"image/png", TestAnswer::text("\x89PNG", "image/png")}}); }
    std::optional<std::string> pasteAsOther() override { return peer_.paste(); }
    void settle(const std::function<bool()>& until) override { await(until); }

private:
    X11Pasteboard& pasteboard_;
    TestPeer& peer_;
};

TEST_F(X11PasteboardTest, KeepsTheContract) {
    X11World world(*pasteboard_, peer_);
    checkPasteboardContract(world);
}

TEST_F(X11PasteboardTest, ReadsWhatIsThereAtTheStart) {
    peer_.own({{"UTF8_STRING", TestAnswer::text("from before")}});
    pasteboard_.reset();
    pasteboard_ = std::make_unique<X11Pasteboard>(*connection_);
    EXPECT_EQ(pasteboard_->changeCount(), 0);
    EXPECT_TRUE(counts(1));
    EXPECT_EQ(text(), "from before");
}

TEST_F(X11PasteboardTest, GetsFromEveryKindOfOwnerWhatThereIsToGet) {
    struct Case {
        const char* name;
        TestAnswers answers;
        const char* expected;
    };
    const auto utf8 = [](const char* text) { return TestAnswer::text(text); };
    const TestAnswer refusal{TestAnswer::Way::refuse, {}, {}, {}, {}, 0};
    const std::string chunk(3000, 'x');
    using End = TestAnswer::End;
    const std::vector<Case> cases = {
        {"answers nothing", {{"TARGETS", TestAnswer::stillness()}, {"UTF8_STRING", utf8("x")}}, "(none)"},
        {"refuses everything", {{"TARGETS", refusal}}, "(none)"},
        {"knows no TARGETS", {{"TARGETS", refusal}, {"UTF8_STRING", utf8("plain")}}, "plain"},
        {"knows no TARGETS nor UTF-8",
         {{"TARGETS", refusal}, {"STRING", TestAnswer::text("caf\xE9", "STRING")}},
         "café"},
        {"lists its targets as something else",
         {{"TARGETS", TestAnswer::text("abc", "STRING")}, {"UTF8_STRING", utf8("plain")}},
         "plain"},
        {"has a better target than the first",
         {{"STRING", TestAnswer::text("worse", "STRING")}, {"UTF8_STRING", utf8("better")}},
         "better"},
        {"refuses what it offers", {{"UTF8_STRING", refusal}, {"STRING", TestAnswer::text("old", "STRING")}}, "old"},
        {"gives the wrong type",
         {{"UTF8_STRING", TestAnswer::text("1234", "INTEGER")}, {"STRING", TestAnswer::text("old", "STRING")}},
         "old"},
        {"gives another text type than asked for", {{"UTF8_STRING", TestAnswer::text("caf\xE9", "STRING")}}, "café"},
        {"says no encoding", {{"text/plain", TestAnswer::text("caf\xE9", "text/plain")}}, "café"},
        {"is ill-formed", {{"UTF8_STRING", utf8("a\xFF\xE2\x82z")}}, "a\uFFFD\uFFFDz"},
        {"is a secret", {{"UTF8_STRING", utf8("pw")}, {"x-kde-passwordManagerHint", utf8("secret")}}, "(none)"},
        {"is no secret", {{"UTF8_STRING", utf8("pw")}, {"x-kde-passwordManagerHint", utf8("public")}}, "pw"},
        {"does not say its secret",
         {{"UTF8_STRING", utf8("pw")}, {"x-kde-passwordManagerHint", TestAnswer::stillness()}},
         "(none)"},
        {"marks it and refuses to say as what",
         {{"UTF8_STRING", utf8("pw")}, {"x-kde-passwordManagerHint", refusal}},
         "(none)"},
        {"is an image", {{"image/png", TestAnswer::text("\x89PNG", "image/png")}}, "(none)"},
        {"sends in chunks", {{"UTF8_STRING", TestAnswer::inChunks({"a\xE2", "\x82", "\xAC z"})}}, "a€ z"},
        {"sends no chunks at all", {{"UTF8_STRING", TestAnswer::inChunks({})}}, ""},
        {"lies about the size", {{"UTF8_STRING", TestAnswer::inChunks({"ab", "cd"}, End::finish, 0xFFFFFFFF)}}, "abcd"},
        {"stops half-way", {{"UTF8_STRING", TestAnswer::inChunks({chunk, chunk}, End::stop)}}, "(none)"},
        {"drips for ever", {{"UTF8_STRING", TestAnswer::inChunks({"drip"}, End::goOn)}}, "(none)"},
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
    EXPECT_TRUE(await([&] { return strayProperties() == 0; }));
}

TEST_F(X11PasteboardTest, KeepsNulBytes) {
    peer_.own({{"UTF8_STRING", TestAnswer::text("a\0b\0"s)}});
    EXPECT_TRUE(counts(1));
    EXPECT_EQ(text(), "a\0b\0"s);
}

TEST_F(X11PasteboardTest, RefusesATextBeyondTheLimitWithOneLineThatDoesNotQuoteIt) {
    std::vector<std::string> lines;
    setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    const std::string limit(testLimits.largestText, 'y');
    peer_.own({{"UTF8_STRING", TestAnswer::inChunks({limit})}});
    EXPECT_TRUE(counts(1));
    EXPECT_EQ(text(), limit);
    peer_.own({{"UTF8_STRING", TestAnswer::inChunks({limit, "y"})}});
    EXPECT_TRUE(counts(2));
    EXPECT_EQ(text(), "(none)");
    setLogSink({});
    EXPECT_THAT(lines, testing::ElementsAre("A text of more than 4 MiB on the clipboard is left out."));
}

TEST_F(X11PasteboardTest, CountsOnceWhenTheOwnerDiesInTheMiddle) {
    TestPeer owner;
    owner.own({{"UTF8_STRING", TestAnswer::inChunks({"half"}, TestAnswer::End::stop)}});
    ASSERT_TRUE(await([&] { return owner.requestsSeen == 2; }));
    owner.die();
    EXPECT_TRUE(counts(1));
    EXPECT_EQ(text(), "(none)");
    expectNothingElseArrived(1);
}

TEST_F(X11PasteboardTest, TurnsFromAHungOwnerToTheNextAtOnceAndIgnoresItsLateAnswer) {
    TestPeer hung;
    hung.own({{"TARGETS", TestAnswer::stillness()}});
    ASSERT_TRUE(await([&] { return hung.requestsSeen == 1; }));
    peer_.own({{"UTF8_STRING", TestAnswer::text("next")}});
    EXPECT_TRUE(counts(1));
    EXPECT_EQ(text(), "next");
    hung.answerHeldRequests();
    expectNothingElseArrived(1);
    EXPECT_TRUE(await([&] { return strayProperties() == 0; }));
}

TEST_F(X11PasteboardTest, ComesThroughAThousandChangesOfOwner) {
    pasteboard_.reset();  // with the limits of real life: the other program is busy
    pasteboard_ = std::make_unique<X11Pasteboard>(*connection_);
    peer_.answers = {{"UTF8_STRING", TestAnswer::text("flicker")}};
    for (int i = 0; i < 1000; ++i) {
        peer_.own();
        peer_.drop();
    }
    peer_.own({{"UTF8_STRING", TestAnswer::text("steady")}});
    EXPECT_TRUE(await([&] { return text() == "steady"; }));
    expectNothingElseArrived(pasteboard_->changeCount());
    EXPECT_TRUE(await([&] { return strayProperties() == 0; }));
}

TEST_F(X11PasteboardTest, EndsAReadWhenItWritesItself) {
    peer_.own({{"TARGETS", TestAnswer::stillness()}});
    ASSERT_TRUE(await([&] { return peer_.requestsSeen == 1; }));
    pasteboard_->clearContents();
    pasteboard_->setString("ours");
    peer_.answerHeldRequests();
    EXPECT_EQ(pasteboard_->changeCount(), 1);
    EXPECT_EQ(peer_.paste(), "ours");
    EXPECT_EQ(text(), "ours");
    expectNothingElseArrived(1);
}

TEST_F(X11PasteboardTest, IgnoresNewsOfWhatHappenedBeforeItsOwnWrite) {
    peer_.own({{"UTF8_STRING", TestAnswer::text("overtaken")}});
    (void)peer_.connection().atomName(XCB_ATOM_STRING);  // the server has done it, we have not read of it
    pasteboard_->clearContents();
    pasteboard_->setString("ours");
    EXPECT_EQ(peer_.paste(), "ours");
    EXPECT_EQ(pasteboard_->changeCount(), 1);
    expectNothingElseArrived(1);
}

TEST_F(X11PasteboardTest, TakesTheSelectionOnceForClearingAndSetting) {
    auto watcher = X11Connection::open();
    int changes = 0;
    const auto xfixes = watcher->firstEvent(xcb_xfixes_id);
    const auto notices = watcher->onEvent(xfixes, [&](const auto&) { ++changes; });
    xcb_discard_reply(watcher->get(), xcb_xfixes_query_version(watcher->get(), 1, 0).sequence);
    xcb_xfixes_select_selection_input(watcher->get(), watcher->root(), watcher->atom("CLIPBOARD"), 1);
    (void)watcher->atomName(XCB_ATOM_STRING);
    pasteboard_->clearContents();
    pasteboard_->setString("one");
    EXPECT_EQ(peer_.paste(), "one");
    EXPECT_TRUE(await([&] { return changes > 0; }));
    EXPECT_EQ(changes, 1);
    pasteboard_->clearContents();
    EXPECT_TRUE(await([&] { return changes > 1; })) << "a clearing alone becomes real at the end of the turn";
    EXPECT_EQ(peer_.paste(), std::nullopt);
    pasteboard_->setString("two");
    EXPECT_EQ(pasteboard_->changeCount(), 2);
    EXPECT_EQ(peer_.paste(), "two");
}

TEST_F(X11PasteboardTest, ServesEveryTextTarget) {
    pasteboard_->clearContents();
    pasteboard_->setString("café €");
    EXPECT_EQ(peer_.paste("UTF8_STRING"), "café €");
    EXPECT_EQ(peer_.paste("text/plain;charset=utf-8"), "café €");
    EXPECT_EQ(peer_.paste("text/plain"), "café €");
    EXPECT_EQ(peer_.paste("TEXT"), "café €");
    EXPECT_EQ(peer_.paste("STRING"), "caf\xE9 ?");
    EXPECT_EQ(peer_.paste("image/png"), std::nullopt);
    EXPECT_EQ(peer_.paste("TIMESTAMP")->size(), 4U);
    EXPECT_THAT(*peer_.askForAtoms("TARGETS"), AllOf(Contains("UTF8_STRING"), Contains("STRING"), Contains("TARGETS")));
    pasteboard_->clearContents();
    EXPECT_TRUE(await([&] { return !peer_.paste().has_value(); }));
    EXPECT_THAT(*peer_.askForAtoms("TARGETS"), Not(Contains("UTF8_STRING")));
}

TEST_F(X11PasteboardTest, ServesALargeTextToManyAtOnceAndOneWhoStopsHindersNobody) {
    std::string large;
    while (large.size() < (std::size_t{5} << 20U))
        large += "0123456789 é€😀 ";
    pasteboard_->clearContents();
    pasteboard_->setString(large);
    TestPeer stopped;
    TestPeer first;
    TestPeer second;
    stopped.ask("UTF8_STRING", "CLIPBOARD", TestPeer::Taking::nothing);
    first.ask("UTF8_STRING", "CLIPBOARD", TestPeer::Taking::everything);
    second.ask("UTF8_STRING", "CLIPBOARD", TestPeer::Taking::everything);
    ASSERT_TRUE(await([&] { return stopped.arrived() && first.arrived() && second.arrived(); }));
    peer_.own({{"UTF8_STRING", TestAnswer::text("somebody else's")}});  // a transfer under way goes on
    EXPECT_TRUE(await([&] { return first.isAnswered() && second.isAnswered(); }));
    EXPECT_TRUE(first.arrived() == large);
    EXPECT_TRUE(second.arrived() == large);
}

TEST_F(X11PasteboardTest, ServesSeveralTargetsAtOnce) {
    pasteboard_->setString("café");
    auto& x = peer_.connection();
    const std::array pairs = {x.atom("UTF8_STRING"), x.atom("FIRST"),    x.atom("image/png"),
                              x.atom("SECOND"),      x.atom("MULTIPLE"), x.atom("THIRD")};
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, peer_.window(), x.atom("TEST_ANSWER"), x.atom("ATOM_PAIR"), 32,
                        pairs.size(), pairs.data());
    EXPECT_THAT(*peer_.askForAtoms("MULTIPLE"),
                testing::ElementsAre("UTF8_STRING", "FIRST", "image/png", "", "MULTIPLE", ""));
    EXPECT_EQ(x.property(peer_.window(), x.atom("FIRST"), x.atom("UTF8_STRING")), "café");
}

TEST_F(X11PasteboardTest, ServesTheTextThatAnOwnerLeavesBehindAsTheSameChange) {
    const auto own = [this](TestPeer& owner, TestAnswers answers, std::int64_t count) {
        owner.own(std::move(answers));
        EXPECT_TRUE(counts(count));
    };
    const TestAnswers secret = {{"UTF8_STRING", TestAnswer::text("pw")},
                                {"x-kde-passwordManagerHint", TestAnswer::text("secret")}};
    auto ended = std::make_unique<TestPeer>();
    own(*ended, {{"UTF8_STRING", TestAnswer::text("left")}, {"text/html", TestAnswer::text("<b>")}}, 1);
    EXPECT_EQ(peer_.askForAtoms("TARGETS")->size(), 2U) << "a living owner keeps its clipboard";
    ended->die();
    EXPECT_TRUE(await([&] { return peer_.paste() == "left"; }));
    EXPECT_EQ(pasteboard_->changeCount(), 1);
    TestPeer manager;
    own(manager, secret, 2);
    manager.die();
    EXPECT_TRUE(counts(3));
    EXPECT_EQ(peer_.paste(), std::nullopt);
    TestPeer heir;
    own(heir, {{"UTF8_STRING", TestAnswer::text("first")}}, 4);
    heir.die();
    peer_.own({{"UTF8_STRING", TestAnswer::text("successor")}});
    EXPECT_TRUE(counts(5));
    EXPECT_EQ(peer_.connection().selectionOwner(peer_.connection().atom("CLIPBOARD")), peer_.window());
}

TEST_F(X11PasteboardTest, LendsPrimaryForAMoment) {
    pasteboard_->lendPrimary("lent");
    EXPECT_EQ(peer_.paste("UTF8_STRING", "PRIMARY"), "lent");
    pasteboard_->returnPrimary();
    EXPECT_EQ(peer_.paste("UTF8_STRING", "PRIMARY"), std::nullopt);
    pasteboard_->lendPrimary("lent again");
    TestPeer user;
    user.answers = {{"UTF8_STRING", TestAnswer::text("selected meanwhile")}};
    user.own("PRIMARY");
    (void)user.connection().atomName(XCB_ATOM_STRING);
    pasteboard_->returnPrimary();
    EXPECT_EQ(peer_.paste("UTF8_STRING", "PRIMARY"), "selected meanwhile");
    EXPECT_EQ(pasteboard_->changeCount(), 0);
}

TEST(X11SelectionServerTest, DropsARequestorThatTakesNothing) {
    const auto connection = X11Connection::open();
    TestPeer stopped;
    X11SelectionServer server(*connection, 0.1);
    const auto requests = connection->onEvent(XCB_SELECTION_REQUEST, [&](const auto& event) {
        server.handleRequest(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    });
    const auto properties = connection->onEvent(XCB_PROPERTY_NOTIFY, [&](const auto& event) {
        server.handleProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    });
    const auto isWatched = [&] {
        auto* x = connection->get();
        const XcbPointer<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, stopped.window()), nullptr));
        return reply && reply->your_event_mask != 0;
    };
    server.own(connection->atom("CLIPBOARD"), std::string(std::size_t{2} << 20U, 'z'));
    stopped.ask("UTF8_STRING", "CLIPBOARD", TestPeer::Taking::nothing);
    ASSERT_TRUE(await([&] { return stopped.arrived().has_value(); }));
    EXPECT_TRUE(isWatched());
    EXPECT_TRUE(await([&] { return !isWatched(); }));
    stopped.takeProperty();
    EXPECT_EQ(stopped.paste("image/png"), std::nullopt);  // served after the removal was
    EXPECT_FALSE(stopped.hasProperty()) << "no chunk follows";
}

}  // namespace
}  // namespace brindle
