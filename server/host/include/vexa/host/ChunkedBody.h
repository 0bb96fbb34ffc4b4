// An HTTP/1.1 body in chunked transfer coding, written to httplib's sink
// by our own hand rather than by httplib's chunked provider, which cannot
// end with trailer fields: a streamed CIM answer reports its outcome there.
#ifndef VEXA_HOST_CHUNKEDBODY_H
#define VEXA_HOST_CHUNKEDBODY_H

#include <httplib.h>

#include <stdexcept>
#include <string_view>

namespace vexa::host {

// The client stopped reading (or the write timed out): the answer cannot
// be delivered, and whoever produces it should stop.
class ClientGone : public std::runtime_error {
public:
    ClientGone() : std::runtime_error("the client went away while its answer was sent") {}
};

class ChunkedBody {
public:
    explicit ChunkedBody(httplib::DataSink& sink) : sink_(sink) {}

    // One chunk; nothing for empty text. Throws ClientGone.
    void write(std::string_view text);
    // The last chunk, with the trailer fields given. Throws ClientGone.
    void end(const httplib::Headers& trailer = {});

private:
    void send(std::string_view bytes);

    httplib::DataSink& sink_;
};

} // namespace vexa::host

#endif
