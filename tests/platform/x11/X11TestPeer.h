#pragma once

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
    enum class Way { whole, chunks, chunksThenSilence, chunksForEver, silence, refusal, taking };

    Way way = Way::whole;
    std::string type = "UTF8_STRING";
    std::vector<std::string> pieces = {};

    static TestAnswer text(std::string bytes, std::string type = "UTF8_STRING") {
        return {Way::whole, std::move(type), {std::move(bytes)}};
    }
};

using TestAnswers = std::map<std::string, TestAnswer>;

/// Another program on the same display, driven by the test. It refuses the targets that it has no answer for, answers
/// TARGETS with the names of the answers unless it has one of its own, and lies about the size of what it sends in
/// chunks.
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
    void answerHeldRequests();  ///< answers now what it was silent to
    void die();

    /// Asks the owner; `arrived` grows until it has answered, and is none after a refusal.
    void ask(const std::string& target = "UTF8_STRING", const char* selection = "CLIPBOARD");
    std::optional<std::string> paste(const std::string& target = "UTF8_STRING", const char* selection = "CLIPBOARD");
    [[nodiscard]] bool isAnswered() const { return isAnswered_; }
    [[nodiscard]] const std::optional<std::string>& arrived() const { return arrived_; }

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
    void answer(const xcb_selection_request_event_t& request, const TestAnswer& given);
    void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);
    void put(xcb_window_t window, xcb_atom_t property, const std::string& type, const std::string& bytes);
    void sendNextChunk(Sending& sending);
    void handleProperty(const xcb_property_notify_event_t& change);
    void handleNotify(const xcb_selection_notify_event_t& notice);
    void takeProperty();

    std::unique_ptr<X11Connection> connection_;
    xcb_window_t window_;
    std::vector<Sending> sendings_;
    std::vector<xcb_selection_request_event_t> held_;
    bool isAnswered_ = false;
    bool isChunked_ = false;
    std::optional<std::string> arrived_;
    std::vector<Subscription> events_;
};

}  // namespace brindle
