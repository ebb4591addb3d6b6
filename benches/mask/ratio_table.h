// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

namespace bench {

/// Median seconds by benchmark name, "contender/shape/size".
using Medians = std::map<std::string, double>;

/// Prints what the system promises about masks next to what was measured. Rows that were filtered out are left out.
void printRatios(const Medians &medians);

} // namespace bench
