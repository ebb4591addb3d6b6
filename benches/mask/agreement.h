// SPDX-License-Identifier: MIT
#pragma once

namespace bench {

/// Has every contender draw every shape at 1080p and compares with the direct encoder: rules about edges differ by a
/// pixel here and there, so pixels may differ along the outline and nowhere else. False, with a line that says who,
/// when somebody drew something else.
bool everybodyDrewTheSame();

} // namespace bench
