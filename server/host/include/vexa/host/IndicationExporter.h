// Delivery of the provider's indications to the configured listeners as
// CIM-XML ExportIndication requests.
//
// The exporter is the IndicationResponseHandler the server hands to
// enableIndications. deliver() encodes the indication once and queues it for
// every listener; each listener has its own bounded queue and sender thread,
// so a listener that is slow or down never holds up the provider's thread or
// the other listeners. A delivery is tried a bounded number of times, then
// dropped; drops are logged with a running count.
#ifndef VEXA_HOST_INDICATIONEXPORTER_H
#define VEXA_HOST_INDICATIONEXPORTER_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMIndication.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>

#include <httplib.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vexa/host/ListenerUrl.h"

namespace vexa::host {

struct ExportSettings {
    size_t queueCapacity = 1000; // indications waiting per listener
    int attempts = 3;            // tries per indication and listener
    std::chrono::milliseconds retryDelay{500};
    std::chrono::seconds timeout{5}; // connect, read and write
};

struct ListenerCounts {
    std::string url;
    uint64_t delivered = 0;
    uint64_t failed = 0;  // given up after every attempt failed
    uint64_t dropped = 0; // never tried: queue full, or still queued at shutdown
};

class IndicationExporter : public Pegasus::IndicationResponseHandler {
public:
    explicit IndicationExporter(const std::vector<ListenerUrl>& listeners,
                                const ExportSettings& settings = ExportSettings());
    ~IndicationExporter() override;
    IndicationExporter(const IndicationExporter&) = delete;
    IndicationExporter& operator=(const IndicationExporter&) = delete;

    void processing() override {}
    // disableIndications calls this: later deliveries are ignored.
    void complete() override;

    void deliver(const Pegasus::CIMIndication& indication) override;
    void deliver(const Pegasus::Array<Pegasus::CIMIndication>& indications) override;
    // Subscriptions are not told apart: every listener gets every indication.
    void deliver(const Pegasus::OperationContext& context,
                 const Pegasus::CIMIndication& indication) override;
    void deliver(const Pegasus::OperationContext& context,
                 const Pegasus::Array<Pegasus::CIMIndication>& indications) override;

    // Gives the senders up to `drain` to empty their queues, then stops them
    // and drops what is left. A sender not
    // ended `giveUpAfter` from the call is left running, detached: only for
    // a process about to end, as the exporter must then never be destroyed.
    // Safe to call twice.
    void stop(std::chrono::milliseconds drain,
              std::chrono::milliseconds giveUpAfter = std::chrono::milliseconds::max());

    std::vector<ListenerCounts> counts() const;

private:
    struct Listener;
    void send(Listener& listener);
    void sendQueued(Listener& listener, httplib::Client& client);

    ExportSettings settings_;
    std::vector<std::unique_ptr<Listener>> listeners_;
    std::atomic<bool> accepting_{true};
    std::atomic<uint64_t> nextMessageId_{1};
};

} // namespace vexa::host

#endif
