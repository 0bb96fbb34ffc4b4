// The provider as a CIM server runs it, started once per fuzzing process on
// the simulator's demo cluster and the sample RAID inventory, with the
// warnings and errors formatted but discarded (tracing every token would
// slow the runs a hundredfold).
#ifndef VEXA_FUZZ_STARTEDPROVIDER_H
#define VEXA_FUZZ_STARTEDPROVIDER_H

#include <Pegasus/Provider/CIMOMHandle.h>

#include <qzsim/SimControl.h>

#include <cstdlib>

#include "cimProvider.h"

inline VexaProvider& startedProvider() {
    static VexaProvider* provider = [] {
        setenv("QZSIM_LOG_FILE", "/dev/null", 1);
        setenv("VEXA_INVENTORY_DIR", VEXA_SAMPLE_INVENTORY_DIR, 1);
        qzsim::reset();
        qzsim::setLogLevel(1);
        VexaProvider* started = new VexaProvider();
        Pegasus::CIMOMHandle cimom;
        started->initialize(cimom);
        // Terminated before the library's own objects go at exit, as a server
        // does: a thread still waiting for events would hold up their end.
        std::atexit([] { startedProvider().terminate(); });
        return started;
    }();
    return *provider;
}

#endif
