// The provider as a CIM server runs it, started once per fuzzing process on
// the simulator's demo cluster, with every log line formatted but discarded.
#ifndef VEXA_FUZZ_STARTEDPROVIDER_H
#define VEXA_FUZZ_STARTEDPROVIDER_H

#include <Pegasus/Provider/CIMOMHandle.h>

#include <qzsim/SimControl.h>

#include <cstdlib>

#include "cimProvider.h"

inline VexaProvider& startedProvider() {
    static VexaProvider* provider = [] {
        setenv("QZSIM_LOG_FILE", "/dev/null", 1);
        qzsim::reset();
        qzsim::setLogLevel(0);
        VexaProvider* started = new VexaProvider();
        Pegasus::CIMOMHandle cimom;
        started->initialize(cimom);
        return started;
    }();
    return *provider;
}

#endif
