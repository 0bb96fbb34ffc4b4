// The server's own work per request: decoding what wbemcli sends and
// encoding an enumeration answer of growing size, whole and streamed.
#include <benchmark/benchmark.h>

#include <Pegasus/Common/CIMProperty.h>

#include <vexa/cimxml/Codec.h>

#include <string>

PEGASUS_USING_PEGASUS;
using namespace vexa::cimxml;

namespace {

const char* const GET_INSTANCE_BODY =
    R"(<?xml version="1.0" encoding="utf-8"?>)"
    R"(<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="4711" PROTOCOLVERSION="1.0">)"
    R"(<SIMPLEREQ><IMETHODCALL NAME="GetInstance"><LOCALNAMESPACEPATH>)"
    R"(<NAMESPACE NAME="root"></NAMESPACE><NAMESPACE NAME="cimv2"></NAMESPACE>)"
    R"(</LOCALNAMESPACEPATH><IPARAMVALUE NAME="InstanceName">)"
    R"(<INSTANCENAME CLASSNAME="KOR_VEXA_Node">)"
    R"(<KEYBINDING NAME="CreationClassName"><KEYVALUE VALUETYPE="string">KOR_VEXA_Node</KEYVALUE>)"
    R"(</KEYBINDING><KEYBINDING NAME="Name"><KEYVALUE VALUETYPE="string">demo+node1</KEYVALUE>)"
    R"(</KEYBINDING></INSTANCENAME></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)";

void decodeGetInstance(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(decodeRequest(GET_INSTANCE_BODY));
}

// A node-like instance: a dozen strings and numbers and a one-element array.
CIMInstance nodeInstance(int n) {
    CIMInstance node(CIMName("KOR_VEXA_Node"));
    const String name = String("bench+n") + String(std::to_string(n).c_str());
    node.addProperty(CIMProperty(CIMName("CreationClassName"), CIMValue(String("KOR_VEXA_Node"))));
    node.addProperty(CIMProperty(CIMName("Name"), CIMValue(name)));
    for (const char* text : {"vexaNodeIP", "vexaNodePlatform", "vexaNodeStatus", "vexaNodeType"})
        node.addProperty(CIMProperty(CIMName(text), CIMValue(String("value & <text>"))));
    for (const char* number : {"vexaNodeFailureCount", "vexaNodeThreadWait", "vexaNodeMaxMbps"})
        node.addProperty(CIMProperty(CIMName(number), CIMValue(Uint32(4096))));
    node.addProperty(CIMProperty(CIMName("vexaNodePagePool"), CIMValue(Uint64(4294967296ULL))));
    Array<Uint16> status;
    status.append(2);
    node.addProperty(CIMProperty(CIMName("OperationalStatus"), CIMValue(status)));
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("CreationClassName"), String("KOR_VEXA_Node"),
                              CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("Name"), name, CIMKeyBinding::STRING));
    node.setPath(
        CIMObjectPath(String(), CIMNamespaceName("root/cimv2"), CIMName("KOR_VEXA_Node"), keys));
    return node;
}

void encodeEnumeration(benchmark::State& state) {
    Array<CIMInstance> instances;
    for (int n = 0; n < state.range(0); n++)
        instances.append(nodeInstance(n));
    Request request;
    request.messageId = "1";
    request.methodName = "EnumerateInstances";
    request.nameSpace = "root/cimv2";
    size_t bytes = 0;
    for (auto _ : state) {
        std::string body = encodeNamedInstances(request, instances);
        bytes = body.size();
        benchmark::DoNotOptimize(body);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
    state.counters["answerBytes"] = static_cast<double>(bytes);
}

// The same answer as the server sends it: streamed in pieces of the
// default size to a receiver that only counts them.
void streamEnumeration(benchmark::State& state) {
    Array<CIMInstance> instances;
    for (int n = 0; n < state.range(0); n++)
        instances.append(nodeInstance(n));
    Request request;
    request.messageId = "1";
    request.methodName = "EnumerateInstances";
    request.nameSpace = "root/cimv2";
    size_t bytes = 0;
    for (auto _ : state) {
        bytes = 0;
        AnswerStream answer(request, [&bytes](std::string_view text) { bytes += text.size(); });
        for (Uint32 i = 0; i < instances.size(); i++)
            answer.addNamedInstance(instances[i]);
        answer.finish();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

} // namespace

BENCHMARK(decodeGetInstance)->Unit(benchmark::kMicrosecond);
BENCHMARK(encodeEnumeration)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(streamEnumeration)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
