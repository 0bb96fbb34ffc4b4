#ifndef QZSIM_DEMO_MODEL_H
#define QZSIM_DEMO_MODEL_H

namespace qzsim {

// examples/clusters/demo.json, embedded at build time.
const char* demoModelJson();

} // namespace qzsim

#endif
