// SPDX-License-Identifier: MIT
#pragma once

// What is generated from the entry table. Each function gives a whole file.

#include <string>

namespace binding {

/// The type stub _Orvanel.pyi.
std::string describeStub();

/// The API reference docs/api.md.
std::string describeReference();

/// Every text that an entry can raise, one a line, line breaks written as \n.
std::string describeErrorTexts();

/// The table as JSON, for tests that make their cases from it.
std::string describeTable();

} // namespace binding
