#pragma once

#include <string>
#include <vector>

#include "corridor/Corridor.h"

namespace vantor {

/// What is to be said of nodes that go forth and back as they stand, with an order that does not; empty for others.
std::string OrderRemark(const std::vector<CorridorNode>& nodes);

}  // namespace vantor
