// The refresh cycle: cache passes and the thread that has the management
// library reload the cluster's configuration between them.
#include "cimProvider.h"

#include <qzantras/ts_log.h>

#include <pthread.h>
#include <unistd.h>

#include "processFlags.h"

PEGASUS_USING_PEGASUS;

// Seconds between two wake-ups of the refresh thread.
static const unsigned REFRESH_THREAD_SLEEP_SECONDS = 180;
// getDaemonState() value telling that the file-system daemon is down.
static const int DAEMON_NOT_RUNNING = 1;

int VexaProvider::buildAllVexaInstanceList(int) { return 0; }

void* VexaProvider::refreshThread(void*) {
    while (loadFlag(KeepRunning) != 0) {
        ts_log(0, "VexaProvider::refreshThread", "Going to sleep!\n");
        sleep(REFRESH_THREAD_SLEEP_SECONDS);
        ts_log(0, "VexaProvider::refreshThread", "Enter refresh state.\n");

        // The provider may have been terminated while the thread slept.
        VexaProvider* provider = loadFlag(theVexaProvider);
        if (provider == 0 || provider->pollingHandler == 0) {
            continue;
        }
        if (provider->pollingHandler->getDaemonState() == DAEMON_NOT_RUNNING) {
            ts_log(0, "VexaProvider::refreshThread", "daemon is not running...back to sleep\n");
            continue;
        }
        if (loadFlag(NeedEventHandler)) {
            ts_log(0, "VexaProvider::refreshThread", "init event handler\n");
            provider->initEventHandler();
            storeFlag(NeedEventHandler, false);
        }
        ts_log(0, "VexaProvider::refreshThread", "refresh global node list\n");

        // Provider lock first, polling lock second, as everywhere else.
        provider->getWriteLock();
        provider->pollingHandler->getPollingLock();
        provider->pollingHandler->refreshClusterRecipe(1);
        provider->pollingHandler->releasePollingLock();
        provider->releaseLock();
        ts_log(0, "VexaProvider::refreshThread", "Exit refresh thread.\n");
    }
    pthread_exit(0);
    return 0;
}
