// Members of a cluster model that the format takes as free text although the
// provider knows only a few values of each.
#ifndef QZSIM_TOOLS_UNLISTEDVALUES_H
#define QZSIM_TOOLS_UNLISTEDVALUES_H

#include <string>
#include <vector>

// One line per value that is not among the known ones, with its JSON path
// and the values that are known. Empty for a file that is not JSON: the
// loader reports that better.
std::vector<std::string> unlistedValues(const std::string& modelPath);

#endif
