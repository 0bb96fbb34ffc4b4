#include "AlertPump.h"

#include "SampleModel.h"

#include <Pegasus/Common/CIMIndication.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/OperationContext.h>

#include <iostream>

AlertPump::AlertPump() : _running(false), _handler(nullptr) {}

AlertPump::~AlertPump() { stop(); }

void AlertPump::start(IndicationResponseHandler& handler) {
    std::lock_guard<std::mutex> lock(_mutex);
    if (_running) {
        return;
    }
    _handler = &handler;
    _running = true;
    _thread = std::thread(&AlertPump::run, this);
}

void AlertPump::stop() {
    {
        std::lock_guard<std::mutex> lock(_mutex);
        if (!_running) {
            return;
        }
        _running = false;
    }
    _wake.notify_all();
    _thread.join();
    std::lock_guard<std::mutex> lock(_mutex);
    _queue.clear();
    _handler = nullptr;
}

bool AlertPump::post(const String& message, Uint16 severity,
                     const Array<CIMObjectPath>& subscriptions) {
    {
        std::lock_guard<std::mutex> lock(_mutex);
        if (!_running) {
            return false;
        }
        _queue.push_back(Alert{message, severity, subscriptions});
    }
    _wake.notify_one();
    return true;
}

void AlertPump::run() {
    std::unique_lock<std::mutex> lock(_mutex);
    for (;;) {
        _wake.wait(lock, [this] { return !_running || !_queue.empty(); });
        if (!_running) {
            return;
        }
        Alert alert = _queue.front();
        _queue.pop_front();
        IndicationResponseHandler* handler = _handler;
        lock.unlock();

        try {
            CIMIndication indication = alertIndication(alert.message, alert.severity);
            if (alert.subscriptions.size() == 0) {
                handler->deliver(indication);
            } else {
                OperationContext context;
                context.insert(SubscriptionInstanceNamesContainer(alert.subscriptions));
                handler->deliver(context, indication);
            }
        } catch (const Exception& e) {
            std::cerr << "ConformanceProvider: alert not delivered: " << e.getMessage()
                      << std::endl;
        }

        lock.lock();
    }
}
