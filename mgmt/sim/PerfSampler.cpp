#include "PerfSampler.h"

#include <algorithm>
#include <sys/time.h>

namespace qzsim {

namespace {

template <typename T>
T grow(ClusterModel& model, T rate) {
    return static_cast<T>(static_cast<double>(rate) * model.jitter());
}

void advance(ClusterModel& model, FsPerfCounters& c, const FsPerfCounters& r) {
    c.bytesRead += grow(model, r.bytesRead);
    c.bytesCache += grow(model, r.bytesCache);
    c.bytesWritten += grow(model, r.bytesWritten);
    c.reads += grow(model, r.reads);
    c.caches += grow(model, r.caches);
    c.writes += grow(model, r.writes);
    c.openCalls += grow(model, r.openCalls);
    c.closeCalls += grow(model, r.closeCalls);
    c.readCalls += grow(model, r.readCalls);
    c.writeCalls += grow(model, r.writeCalls);
    c.readdirCalls += grow(model, r.readdirCalls);
    c.inodesWritten += grow(model, r.inodesWritten);
    c.inodesRead += grow(model, r.inodesRead);
    c.inodesDeleted += grow(model, r.inodesDeleted);
    c.inodesCreated += grow(model, r.inodesCreated);
    c.statCacheHit += grow(model, r.statCacheHit);
    c.statCacheMiss += grow(model, r.statCacheMiss);
}

void add(FsPerfCounters& sum, const FsPerfCounters& c) {
    sum.bytesRead += c.bytesRead;
    sum.bytesCache += c.bytesCache;
    sum.bytesWritten += c.bytesWritten;
    sum.reads += c.reads;
    sum.caches += c.caches;
    sum.writes += c.writes;
    sum.openCalls += c.openCalls;
    sum.closeCalls += c.closeCalls;
    sum.readCalls += c.readCalls;
    sum.writeCalls += c.writeCalls;
    sum.readdirCalls += c.readdirCalls;
    sum.inodesWritten += c.inodesWritten;
    sum.inodesRead += c.inodesRead;
    sum.inodesDeleted += c.inodesDeleted;
    sum.inodesCreated += c.inodesCreated;
    sum.statCacheHit += c.statCacheHit;
    sum.statCacheMiss += c.statCacheMiss;
}

// Now, but strictly after the previous sample so that two samples in the
// same microsecond still differ.
void stamp(unsigned long long* sec, unsigned long long* usec) {
    struct timeval now;
    gettimeofday(&now, nullptr);
    unsigned long long s = static_cast<unsigned long long>(now.tv_sec);
    unsigned long long u = static_cast<unsigned long long>(now.tv_usec);
    if (s < *sec || (s == *sec && u <= *usec)) {
        s = *sec;
        u = *usec + 1;
        if (u >= 1000000) {
            ++s;
            u = 0;
        }
    }
    *sec = s;
    *usec = u;
}

} // namespace

FsPerfCounters sumCounters(const SimFilesystem& fs) {
    FsPerfCounters sum;
    for (const SimNodePerf& node : fs.nodePerf) {
        add(sum, node.counters);
    }
    return sum;
}

void sampleFilesystem(ClusterModel& model, SimFilesystem& fs) {
    for (SimNodePerf& node : fs.nodePerf) {
        advance(model, node.counters, node.rates);
    }
    unsigned long long prevSec = fs.lastSampleSec;
    stamp(&model.perfSampleSec, &model.perfSampleUsec);
    fs.lastSampleSec = model.perfSampleSec;
    fs.lastSampleUsec = model.perfSampleUsec;
    unsigned long long elapsed = prevSec == 0 ? 0 : fs.lastSampleSec - prevSec;
    fs.duration = static_cast<unsigned int>(std::max<unsigned long long>(elapsed, 1));
}

void samplePool(ClusterModel& model, SimPool& pool) {
    for (SimDisk& disk : pool.disks) {
        DiskInfoData& d = disk.info;
        const DiskPerfRates& r = disk.rates;
        unsigned int reads = grow(model, r.readOps);
        unsigned int writes = grow(model, r.writeOps);
        double readTime = r.readTime * model.jitter();
        double writeTime = r.writeTime * model.jitter();
        d.readOps += reads;
        d.writeOps += writes;
        d.bytesRead += grow(model, r.bytesRead);
        d.bytesWritten += grow(model, r.bytesWritten);
        d.readTime += readTime;
        d.writeTime += writeTime;
        if (reads > 0) {
            double perOp = readTime / reads;
            d.longestReadTime = std::max(d.longestReadTime, perOp * 1.8);
            d.shortestReadTime =
                d.shortestReadTime == 0 ? perOp * 0.4 : std::min(d.shortestReadTime, perOp * 0.4);
        }
        if (writes > 0) {
            double perOp = writeTime / writes;
            d.longestWriteTime = std::max(d.longestWriteTime, perOp * 1.8);
            d.shortestWriteTime =
                d.shortestWriteTime == 0 ? perOp * 0.4 : std::min(d.shortestWriteTime, perOp * 0.4);
        }
    }
    stamp(&pool.info.perfSampleSec, &pool.info.perfSampleUsec);
}

} // namespace qzsim
