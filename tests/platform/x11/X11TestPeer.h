#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Await.h"
#include "platform/x11/X11Connection.h"

namespace brindle {

/// What another program answers to one target.
struct TestAnswer {
    enum class Way { refuse, stayStill, give, giveInChunks };
    enum class End { finish, stop, goOn };

    Way way = Way::give;
    std::string type;
    std::string bytes;
    std::vector<std::string> chunks;
    End end = End::finish;
    std::uint32_t sizeHint = 0;

    static TestAnswer text(std::string bytes, std::string type = "UTF8_STRING") {
        return {Way::give, std::move(type), std::move(bytes), {}, End::finish, 0};
    }
    static TestAnswer inChunks(std::vector<std::string> chunks, End end = End::finish, std::uint32_t sizeHint = 0) {
        return {Way::giveInChunks, "UTF8_STRING", {}, std::move(chunks), end, sizeHint};
    }
    static TestAnswer stillness() { return {Way::stayStill, {}, {}, {}, End::finish, 0}; }
};

using TestAnswers = std::map<std::string, TestAnswer>;

/// Another program on the same display, driven by the test. It refuses the targets that it has no answer for. TARGETS
/// is answered with the names of the answers unless it has an answer of its own.
class TestPeer {
public:
    TestPeer();

    TestAnswers answers;
    int requestsSeen = 0;

    void own(const char* selection = "CLIPBOARD");
    void own(TestAnswers next) {
        answers = std::move(next);
        own();
    }
    void drop();                ///< leaves the selection without an owner
    void answerHeldRequests();  ///< answers now what it stood still for
    void die();

    /// Asks the owner; the text when it has arrived, or none after a refusal.
    std::optional<std::string> paste(const std::string& target = "UTF8_STRING", const char* selection = "CLIPBOARD");
    /// Asks the owner; `arrived` keeps growing while it answers. A reader that does not take stops at the first piece.
    enum class Taking { everything, nothing };
    void ask(const std::string& target, const char* selection, Taking taking);
    std::optional<std::vector<std::string>> askForAtoms(const std::string& target);
    [[nodiscard]] bool isAnswered() const { return isAnswered_; }
    [[nodiscard]] const std::optional<std::string>& arrived() const { return arrived_; }
    [[nodiscard]] bool hasProperty();
    void takeProperty();

    [[nodiscard]] X11Connection& connection() { return *connection_; }
    [[nodiscard]] xcb_window_t window() const { return window_; }

private:
    struct Sending {
        xcb_window_t requestor;
        xcb_atom_t property;
        TestAnswer answer;
        std::size_t sent = 0;
    };
    void handleRequest(const xcb_selection_request_event_t& request);
    void answer(const xcb_selection_request_event_t& request, const TestAnswer& answer);
    void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);
    void put(xcb_window_t window, xcb_atom_t property, const std::string& type, const std::string& bytes);
    void sendNextChunk(Sending& sending);
    void handleProperty(const xcb_property_notify_event_t& change);
    void handleNotify(const xcb_selection_notify_event_t& notice);
    [[nodiscard]] std::string targetList();

    std::unique_ptr<X11Connection> connection_;
    xcb_window_t window_;
    std::vector<Sending> sendings_;
    std::vector<xcb_selection_request_event_t> held_;
    Taking taking_ = Taking::everything;
    bool isAnswered_ = false;
    bool isChunked_ = false;
    std::optional<std::string> arrived_;
    std::vector<Subscription> events_;
};

}  // namespace brindle
