// Every decoder entry point on arbitrary bytes: success or RequestError are
// the only acceptable outcomes, so any other exception aborts the run.
#include <vexa/cimxml/Codec.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

using namespace vexa::cimxml;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view body(reinterpret_cast<const char*>(data), size);
    try {
        const Request request = decodeRequest(body);
        for (const RawParameter& parameter : request.parameters) {
            for (Pegasus::CIMType type :
                 {Pegasus::CIMTYPE_STRING, Pegasus::CIMTYPE_SINT16, Pegasus::CIMTYPE_REAL32,
                  Pegasus::CIMTYPE_REFERENCE, Pegasus::CIMTYPE_INSTANCE}) {
                try {
                    convertParameter(parameter, type, parameter.value.texts.size() > 1);
                } catch (const RequestError&) {
                }
            }
        }
    } catch (const RequestError&) {
    }
    try {
        decodeExportIndication(body);
    } catch (const RequestError&) {
    }
    decodeExportResponse(body);
    return 0;
}
