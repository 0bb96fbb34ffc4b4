// The class names the provider defines, read from its source, so that a
// class added there and forgotten in the schema or the registration fails
// the tests that use this list.
#ifndef VEXA_TESTS_SCHEMA_PROVIDERCLASSNAMES_H
#define VEXA_TESTS_SCHEMA_PROVIDERCLASSNAMES_H

#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

inline std::vector<std::string> providerClassNames() {
    std::ifstream in(VEXA_PROVIDER_CLASS_NAMES);
    std::stringstream text;
    text << in.rdbuf();
    std::string source = text.str();
    std::vector<std::string> names;
    std::regex constant("CIMName\\s+[A-Z_0-9]+\\(\"([A-Za-z_0-9]+)\"\\)");
    for (auto it = std::sregex_iterator(source.begin(), source.end(), constant);
         it != std::sregex_iterator(); ++it) {
        names.push_back((*it)[1]);
    }
    return names;
}

#endif
