#include "support/PasteboardContract.h"
#include "support/SimulatedTest.h"

namespace brindle {
namespace {

class SimulatedWorld final : public PasteboardWorld {
public:
    explicit SimulatedWorld(test::SimulatedPlatform& sim) : sim_(sim) {}

    Pasteboard& pasteboard() override { return sim_.clipboard; }
    void copyAsOther(const std::string& text) override { sim_.clipboard.copy(text); }
    void copyImageAsOther() override { sim_.clipboard.copy(std::nullopt); }
    std::optional<std::string> pasteAsOther() override {
        const auto& content = sim_.clipboard.content();
        return content ? std::optional(content->string()) : std::nullopt;
    }
    void settle(const std::function<bool()>& /*until*/) override { sim_.queue.run(); }

private:
    test::SimulatedPlatform& sim_;
};

using SimulatedPasteboardTest = test::SimulatedTest;

TEST_F(SimulatedPasteboardTest, KeepsTheContractOfEveryPasteboard) {
    SimulatedWorld world(sim);
    checkPasteboardContract(world);
}

}  // namespace
}  // namespace brindle
