// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace hostkit {

/// A file that cannot be read or written, or that is not what it should be. The text is a whole clause that names the
/// file. Python sees an IOError; wrong arguments are std::invalid_argument and become a ValueError.
class MediaError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A name in single quotes, as all messages show it.
inline std::string inQuotes(const std::string &name) {
    return "'" + name + "'";
}

/// A size in pixels, as all messages show it.
inline std::string sizeText(long long width, long long height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

} // namespace hostkit
