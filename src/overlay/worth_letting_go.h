// SPDX-License-Identifier: MIT
#pragma once

// When work is worth letting the interpreter lock go for, by an entry that need not: below, switching costs others more
// than waiting does.

#include <cstddef>

/// Points copied or freed in one call.
inline constexpr std::size_t kBytesWorthLettingGo = std::size_t{1} << 20;
/// How many are got ready to be copied before others get a turn.
inline constexpr std::size_t kBytesBetweenTurns = std::size_t{16} << 20;
/// Bytes of a surface that is drawn upon, of which a mask's tint covers a good part.
inline constexpr std::size_t kPictureWorthLettingGo = std::size_t{1} << 24;
