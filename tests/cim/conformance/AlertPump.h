// Delivers alerts from a thread of its own, through the indication handler
// the server gave to enableIndications().
#ifndef CONFORMANCE_ALERT_PUMP_H
#define CONFORMANCE_ALERT_PUMP_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Common/String.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

PEGASUS_USING_PEGASUS;

class AlertPump {
public:
    AlertPump();
    ~AlertPump();
    AlertPump(const AlertPump&) = delete;
    AlertPump& operator=(const AlertPump&) = delete;

    void start(IndicationResponseHandler& handler);
    // Returns only when the delivering thread has finished, so the server
    // may release the handler afterwards.
    void stop();

    // Queues an alert for the subscriptions given (all of them when empty).
    // False when indications are not enabled.
    bool post(const String& message, Uint16 severity, const Array<CIMObjectPath>& subscriptions);

private:
    struct Alert {
        String message;
        Uint16 severity;
        Array<CIMObjectPath> subscriptions;
    };

    void run();

    std::mutex _mutex;
    std::condition_variable _wake;
    std::deque<Alert> _queue;
    bool _running;
    IndicationResponseHandler* _handler;
    std::thread _thread;
};

#endif
