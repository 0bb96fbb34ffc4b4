// Stopping the refresh and event threads: the refresh thread's sleep is cut
// short, the event stream is ended, and both are waited for, each within a
// bound, so that the server's terminate() returns with nothing of ours
// running.
#include "cimProvider.h"

#include <qzantras/EventsHandler.h>
#include <qzantras/ts_log.h>

#include <pthread.h>
#include <time.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "processFlags.h"
#include "refreshSleep.h"

namespace {

// A pass under way finishes before the refresh thread looks at KeepRunning
// again; on a large cluster that can take a while, but not this long.
const int THREAD_STOP_LIMIT_SECONDS = 60;

std::mutex refreshSleepMutex;
std::condition_variable refreshSleepWake;

// Joins the thread, or gives up after the limit and lets it go: a thread that
// cannot be stopped must not block the server's shutdown for ever.
void joinWithin(pthread_t thread, const char* what) {
    struct timespec deadline;
    clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_sec += THREAD_STOP_LIMIT_SECONDS;
    if (pthread_timedjoin_np(thread, 0, &deadline) != 0) {
        ts_log(2, "VexaProvider::stopThreads", "%s thread did not stop within %d s; left running\n",
               what, THREAD_STOP_LIMIT_SECONDS);
        pthread_detach(thread);
    }
}

} // namespace

void sleepUntilNextRefresh(unsigned seconds) {
    std::unique_lock<std::mutex> lock(refreshSleepMutex);
    refreshSleepWake.wait_for(lock, std::chrono::seconds(seconds),
                              [] { return loadFlag(KeepRunning) == 0; });
}

void VexaProvider::wakeRefreshThread() {
    std::lock_guard<std::mutex> lock(refreshSleepMutex);
    refreshSleepWake.notify_all();
}

void VexaProvider::joinEventThread() {
    if (eventThreadJoinable) {
        eventThreadJoinable = false;
        joinWithin(eventThreadId, "event");
    }
}

void VexaProvider::stopThreads() {
    if (refreshThreadJoinable) {
        refreshThreadJoinable = false;
        storeFlag(KeepRunning, 0);
        wakeRefreshThread();
        joinWithin(refreshThreadId, "refresh");
    }
    // The refresh thread is gone, so nothing restarts event intake now.
    if (eventThreadJoinable) {
        EventsHandler::term();
        joinEventThread();
        storeFlag(NeedEventHandler, false);
    }
}
