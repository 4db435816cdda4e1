#pragma once

#include <string>

#include "base/Date.h"
#include "base/Uuid.h"

namespace brindle {

/// A list that the user made. Names need not be unique.
struct CustomList {
    Uuid id;
    std::string name;
    Date createdAt;

    friend bool operator==(const CustomList&, const CustomList&) = default;
};

}  // namespace brindle
