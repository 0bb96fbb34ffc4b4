// Base64 as HTTP Basic credentials use it (RFC 4648 alphabet, padded).
#ifndef VEXA_HOST_BASE64_H
#define VEXA_HOST_BASE64_H

#include <optional>
#include <string>

namespace vexa::host {

std::string base64Encode(const std::string& bytes);
// Empty optional for text that is not base64.
std::optional<std::string> base64Decode(const std::string& text);

} // namespace vexa::host

#endif
