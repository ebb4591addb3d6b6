// SPDX-License-Identifier: MIT
#pragma once

namespace binding {

/// Registers the types and makes the module _Orvanel. A Python error is pending afterwards when that failed.
void initialiseModule();

} // namespace binding
