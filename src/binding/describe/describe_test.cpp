// SPDX-License-Identifier: MIT
// The generated files against the copies that were looked at and committed. `cmake --build --preset release --target
// update_api` writes those anew.

#include "binding/describe/describe.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "binding/describe/wording.h"
#include "binding/entry_table.h"

namespace binding {
namespace {

std::string committed(const std::string &path) {
    std::ifstream file(ORVANEL_SOURCE_DIR "/" + path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

TEST(Describe, TheStubIsTheCommittedOne) {
    EXPECT_EQ(describeStub(), committed("src/binding/describe/golden/_Orvanel.pyi"));
}

TEST(Describe, TheReferenceIsTheCommittedOne) {
    EXPECT_EQ(describeReference(), committed("docs/api.md"));
}

TEST(Describe, TheErrorTextsAreTheCommittedOnes) {
    EXPECT_EQ(describeErrorTexts(), committed("src/binding/describe/golden/error_texts.txt"));
}

TEST(Describe, EveryRowTellsItsArgumentsAndItsMeaning) {
    for (const Entry &entry : entryTable()) {
        const std::vector<std::string> names = argumentNames(entry);
        EXPECT_EQ(names.size(), entry.arguments.size()) << entry.name;
        EXPECT_EQ(std::set(names.begin(), names.end()).size(), names.size()) << entry.name;
        const std::string meaning = entry.meaning;
        EXPECT_GT(meaning.size(), 10U) << entry.name;
        EXPECT_TRUE(meaning.ends_with('.')) << entry.name;
        EXPECT_EQ(meaning.find_first_of("\n\"\\"), std::string::npos) << entry.name;
    }
}

TEST(Describe, NamesAreUnique) {
    std::set<std::string> names;
    for (const Entry &entry : entryTable())
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
    EXPECT_EQ(names.size(), 84U);
}

} // namespace
} // namespace binding
