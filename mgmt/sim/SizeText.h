#ifndef QZSIM_SIZE_TEXT_H
#define QZSIM_SIZE_TEXT_H

#include <string>

namespace qzsim {

// Reads "4096", "512K", "64M", "4G" or "1T" (suffix in either case) as bytes.
bool parseSize(const std::string& text, unsigned long long* bytes);
// Reads a plain unsigned decimal number.
bool parseUnsigned(const std::string& text, unsigned long long* value);

} // namespace qzsim

#endif
