#include "support/PasteboardContract.h"
#include "support/SimulatedTest.h"

namespace brindle {

using SimulatedPasteboardTest = test::SimulatedTest;

TEST_F(SimulatedPasteboardTest, KeepsTheContractOfEveryPasteboard) {
    checkPasteboardContract({.pasteboard = sim.clipboard,
                             .copyAsOther = [this](auto& text) { sim.clipboard.copy(text); },
                             .copyImageAsOther = [this] { sim.clipboard.copy(std::nullopt); },
                             .pasteAsOther =
                                 [this] {
                                     const auto& content = sim.clipboard.content();
                                     return content ? std::optional(content->string()) : std::nullopt;
                                 },
                             .settle = [this](auto&) { sim.queue.run(); }});
}

}  // namespace brindle
