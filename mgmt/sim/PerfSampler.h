#ifndef QZSIM_PERF_SAMPLER_H
#define QZSIM_PERF_SAMPLER_H

#include "SimModel.h"

namespace qzsim {

// Takes a new performance sample: counters grow by their rates (with some
// jitter) and the sampling time moves to now, always strictly forward.
void sampleFilesystem(ClusterModel& model, SimFilesystem& fs);
void samplePool(ClusterModel& model, SimPool& pool);

// The cluster-wide counters of a file system: the sum of its node records.
FsPerfCounters sumCounters(const SimFilesystem& fs);

} // namespace qzsim

#endif
