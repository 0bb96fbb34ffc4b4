// The cluster-model loader on arbitrary text: it either builds a model or
// reports a problem naming the place; no other outcome (an escaping
// exception, a crash) is acceptable.
#include "ModelLoader.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    qzsim::ClusterModel model;
    std::string error;
    if (!qzsim::loadModel(text, "fuzz.json", &model, &error) &&
        error.compare(0, 10, "fuzz.json:") != 0) {
        std::fprintf(stderr, "problem without its source: %s\n", error.c_str());
        std::abort();
    }
    return 0;
}
