#include "vexa/host/IndicationExporter.h"

#include <vexa/cimxml/Codec.h>

#include <httplib.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "vexa/host/ListenerQueue.h"
#include "vexa/host/ProviderLibrary.h"
#include "vexa/host/ServerLog.h"

PEGASUS_USING_PEGASUS;

namespace vexa::host {

namespace {

// Drops are logged the first time and then every this many times, so that a
// listener that stays down does not flood the log.
constexpr uint64_t DROP_LOG_INTERVAL = 100;

bool shouldLog(uint64_t count) { return count == 1 || count % DROP_LOG_INTERVAL == 0; }

} // namespace

struct IndicationExporter::Listener {
    Listener(const ListenerUrl& address, size_t capacity) : url(address), queue(capacity) {}

    ListenerUrl url;
    ListenerQueue queue;
    std::thread sender;

    std::mutex stopMutex;
    std::condition_variable stopSignal;
    bool stopping = false;
    bool senderEnded = false;

    std::atomic<uint64_t> delivered{0};
    std::atomic<uint64_t> failed{0};
    std::atomic<uint64_t> dropped{0};
};

IndicationExporter::IndicationExporter(const std::vector<ListenerUrl>& listeners,
                                       const ExportSettings& settings)
    : settings_(settings) {
    for (const ListenerUrl& url : listeners) {
        listeners_.push_back(std::make_unique<Listener>(url, settings_.queueCapacity));
    }
    for (auto& listener : listeners_) {
        Listener* target = listener.get();
        listener->sender = std::thread([this, target] { send(*target); });
    }
}

IndicationExporter::~IndicationExporter() { stop(std::chrono::milliseconds(0)); }

void IndicationExporter::complete() { accepting_ = false; }

void IndicationExporter::deliver(const CIMIndication& indication) {
    if (!accepting_ || listeners_.empty()) {
        return;
    }
    std::string messageId = std::to_string(nextMessageId_++);
    std::string body;
    try {
        body = cimxml::encodeExportIndication(messageId, indication);
    } catch (...) {
        logLine("cannot encode an indication of class " +
                std::string((const char*)indication.getClassName().getString().getCString()) +
                ": " + currentExceptionText());
        return;
    }
    for (auto& listener : listeners_) {
        if (!listener->queue.push(body)) {
            uint64_t dropped = ++listener->dropped;
            if (shouldLog(dropped)) {
                logLine("indication for " + loggable(listener->url.text) +
                        " dropped: its queue is full (" + std::to_string(dropped) +
                        " dropped so far)");
            }
        }
    }
}

void IndicationExporter::deliver(const Array<CIMIndication>& indications) {
    for (Uint32 i = 0; i < indications.size(); ++i) {
        deliver(indications[i]);
    }
}

void IndicationExporter::deliver(const OperationContext&, const CIMIndication& indication) {
    deliver(indication);
}

void IndicationExporter::deliver(const OperationContext&, const Array<CIMIndication>& indications) {
    deliver(indications);
}

void IndicationExporter::send(Listener& listener) {
    // httplib::Client::stop() would cut a request in flight, but from another
    // thread it unlocks a mutex it never locked (ThreadSanitizer); a sender
    // that does not end in time is left to the process's end instead.
    httplib::Client client(listener.url.host, listener.url.port);
    sendQueued(listener, client);
    std::lock_guard<std::mutex> lock(listener.stopMutex);
    listener.senderEnded = true;
    listener.stopSignal.notify_all();
}

void IndicationExporter::sendQueued(Listener& listener, httplib::Client& client) {
    client.set_connection_timeout(settings_.timeout);
    client.set_read_timeout(settings_.timeout);
    client.set_write_timeout(settings_.timeout);
    client.set_keep_alive(true);
    client.set_tcp_nodelay(true);
    const httplib::Headers headers = {{"CIMExport", "MethodRequest"},
                                      {"CIMExportMethod", "ExportIndication"},
                                      {"CIMProtocolVersion", "1.0"}};

    std::string body;
    while (true) {
        if (!listener.queue.pop(body)) {
            return;
        }
        std::string problem;
        bool sent = false;
        int attempts = 0;
        for (int attempt = 1; attempt <= settings_.attempts && !sent; ++attempt) {
            if (attempt > 1) {
                std::unique_lock<std::mutex> lock(listener.stopMutex);
                if (listener.stopSignal.wait_for(lock, settings_.retryDelay,
                                                 [&] { return listener.stopping; })) {
                    break;
                }
            }
            attempts = attempt;
            httplib::Result result =
                client.Post(listener.url.path, headers, body, "application/xml; charset=\"utf-8\"");
            if (!result) {
                problem = "no answer (" + httplib::to_string(result.error()) + " error)";
            } else if (result->status != 200) {
                problem = "HTTP status " + std::to_string(result->status);
            } else if (result->get_header_value("CIMExport") != "MethodResponse") {
                problem = "the answer is not a CIM export response";
            } else if (result->body.find("<ERROR") != std::string::npos) {
                problem = "the listener answered with an error";
            } else {
                sent = true;
            }
        }
        if (sent) {
            ++listener.delivered;
        } else {
            uint64_t failed = ++listener.failed;
            if (shouldLog(failed)) {
                logLine("cannot deliver an indication to " + loggable(listener.url.text) + ": " +
                        problem + "; given up after " + std::to_string(attempts) +
                        (attempts == 1 ? " attempt (" : " attempts (") + std::to_string(failed) +
                        " given up so far)");
            }
        }
        listener.queue.finished();
    }
}

void IndicationExporter::stop(std::chrono::milliseconds drain,
                              std::chrono::milliseconds giveUpAfter) {
    accepting_ = false;
    auto deadline = std::chrono::steady_clock::now() + drain;
    for (auto& listener : listeners_) {
        while (std::chrono::steady_clock::now() < deadline && !listener->queue.drained()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    for (auto& listener : listeners_) {
        {
            std::lock_guard<std::mutex> lock(listener->stopMutex);
            listener->stopping = true;
        }
        listener->stopSignal.notify_all();
        size_t left = listener->queue.clear();
        listener->dropped += left;
        listener->queue.close();
    }
    bool waitForever = giveUpAfter == std::chrono::milliseconds::max();
    auto giveUp = std::chrono::steady_clock::now() +
                  (waitForever ? std::chrono::milliseconds(0) : giveUpAfter);
    for (auto& listener : listeners_) {
        if (!listener->sender.joinable()) {
            continue;
        }
        if (!waitForever) {
            std::unique_lock<std::mutex> lock(listener->stopMutex);
            if (!listener->stopSignal.wait_until(lock, giveUp,
                                                 [&] { return listener->senderEnded; })) {
                // Still connecting to a listener that does not answer; the
                // process is about to end and takes the thread with it.
                listener->sender.detach();
                continue;
            }
        }
        listener->sender.join();
    }
}

std::vector<ListenerCounts> IndicationExporter::counts() const {
    std::vector<ListenerCounts> all;
    for (const auto& listener : listeners_) {
        ListenerCounts counts;
        counts.url = listener->url.text;
        counts.delivered = listener->delivered;
        counts.failed = listener->failed;
        counts.dropped = listener->dropped;
        all.push_back(counts);
    }
    return all;
}

} // namespace vexa::host
