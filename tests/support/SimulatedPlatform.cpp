#include "support/SimulatedPlatform.h"

#include "base/Log.h"

namespace brindle::test {

SimulatedPlatform::SimulatedPlatform() {
    setPlatform(this);
    setLogSink([this](std::string_view line) { journal.add("log " + std::string(line)); });
}

SimulatedPlatform::~SimulatedPlatform() {
    queue.advance(2);  // what lives as long as the process ends its timed steps
    setLogSink({});
    setPlatform(nullptr);
}

}  // namespace brindle::test
