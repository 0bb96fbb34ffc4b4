#include "Names.h"

#include <cctype>

namespace vexa::schema::detail {

std::string foldCase(const std::string& name) {
    std::string folded = name;
    for (char& c : folded) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return folded;
}

} // namespace vexa::schema::detail
