#pragma once

#include <gmock/gmock.h>

#include "support/SimulatedPlatform.h"

namespace brindle::test {

/// A test on a simulated desktop of its own.
class SimulatedTest : public ::testing::Test {
protected:
    SimulatedPlatform sim;
};

}  // namespace brindle::test
