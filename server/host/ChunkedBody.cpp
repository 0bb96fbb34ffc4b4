#include "vexa/host/ChunkedBody.h"

#include <cstdio>
#include <string>

namespace vexa::host {

void ChunkedBody::send(std::string_view bytes) {
    if (!sink_.write(bytes.data(), bytes.size())) {
        throw ClientGone();
    }
}

void ChunkedBody::write(std::string_view text) {
    if (text.empty()) {
        return; // an empty chunk would end the body
    }
    char size[24];
    int length = std::snprintf(size, sizeof size, "%zx\r\n", text.size());
    send(std::string_view(size, static_cast<size_t>(length)));
    send(text);
    send("\r\n");
}

void ChunkedBody::end(const httplib::Headers& trailer) {
    std::string last = "0\r\n";
    for (const auto& field : trailer) {
        last += field.first + ": " + field.second + "\r\n";
    }
    last += "\r\n";
    send(last);
}

} // namespace vexa::host
