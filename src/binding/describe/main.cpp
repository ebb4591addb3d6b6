// SPDX-License-Identifier: MIT
// Writes one of the files that are generated from the entry table: orvanel_describe stub|reference|errors|table FILE

#include <fstream>
#include <iostream>
#include <map>
#include <string>

#include "binding/describe/describe.h"

int main(int count, char **arguments) {
    const std::map<std::string, std::string (*)()> kinds = {{"stub", binding::describeStub},
                                                            {"reference", binding::describeReference},
                                                            {"errors", binding::describeErrorTexts},
                                                            {"table", binding::describeTable}};
    if (count != 3 || !kinds.contains(arguments[1])) {
        std::cerr << "usage: orvanel_describe stub|reference|errors|table FILE\n";
        return 2;
    }
    std::ofstream file(arguments[2], std::ios::binary);
    file << kinds.at(arguments[1])();
    file.close();
    if (!file) {
        std::cerr << arguments[2] << " could not be written\n";
        return 1;
    }
    return 0;
}
