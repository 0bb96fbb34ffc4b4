// What the server adds around the provider: fan-out over served classes,
// property trimming, error mapping and typed method parameters. Driven with
// decoded requests against a recording provider and a small schema.
#include <vexa/host/CimXmlEndpoint.h>
#include <vexa/host/OperationDispatcher.h>
#include <vexa/host/ServedClasses.h>

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Provider/ProviderException.h>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>

PEGASUS_USING_PEGASUS;
using namespace vexa::host;
using vexa::cimxml::RawParameter;
using vexa::cimxml::RawValue;
using vexa::cimxml::Request;

namespace {

const char* const TEST_MOF = R"(
class Test_Base {
    [Key] string Name;
    string BaseProp;
};
class Test_Served : Test_Base {
    string Extra;
};
class Test_Unserved : Test_Base {
};
class Test_Service {
    [Key] string Name;
    [Static] uint32 DoIt([IN] uint64 N, [IN] boolean B, [IN] string S,
                         [IN (false), OUT] string Message, [IN (false), OUT] string Empty);
};
[Association] class Test_Link {
    [Key] Test_Base REF Left;
    [Key] Test_Base REF Right;
};
[Association] class Test_ServiceLink {
    [Key] Test_Service REF Service;
    [Key] Test_Service REF Other;
};
instance of PG_ProviderCapabilities {
    ProviderModuleName = "M"; ProviderName = "TestProvider"; CapabilityID = "1";
    ClassName = "Test_Served"; Namespaces = { "root/cimv2" }; ProviderType = { 2 };
};
instance of PG_ProviderCapabilities {
    ProviderModuleName = "M"; ProviderName = "TestProvider"; CapabilityID = "2";
    ClassName = "Test_Link"; Namespaces = { "root/cimv2" }; ProviderType = { 2, 3 };
};
instance of PG_ProviderCapabilities {
    ProviderModuleName = "M"; ProviderName = "TestProvider"; CapabilityID = "3";
    ClassName = "Test_ServiceLink"; Namespaces = { "root/cimv2" }; ProviderType = { 3 };
};
instance of PG_ProviderCapabilities {
    ProviderModuleName = "M"; ProviderName = "TestProvider"; CapabilityID = "4";
    ClassName = "Test_Service"; Namespaces = { "root/cimv2" }; ProviderType = { 5 };
};
instance of PG_ProviderCapabilities {
    ProviderModuleName = "M"; ProviderName = "SomeoneElse"; CapabilityID = "5";
    ClassName = "Test_Unserved"; Namespaces = { "root/cimv2" }; ProviderType = { 2 };
};
)";

CIMObjectPath path(const char* className, const char* name) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), String(name), CIMKeyBinding::STRING));
    return CIMObjectPath(String(), CIMNamespaceName(), CIMName(className), keys);
}

CIMInstance servedInstance(const char* name) {
    CIMInstance instance{CIMName("Test_Served")};
    instance.addProperty(CIMProperty(CIMName("Name"), CIMValue(String(name))));
    instance.addProperty(CIMProperty(CIMName("BaseProp"), CIMValue(String("base"))));
    instance.addProperty(CIMProperty(CIMName("Extra"), CIMValue(String("extra"))));
    instance.setPath(path("Test_Served", name));
    return instance;
}

// A provider that records what it is asked and answers as each test says.
class RecordingProvider : public CIMInstanceProvider,
                          public CIMAssociationProvider,
                          public CIMMethodProvider {
public:
    std::vector<std::string> calls; // "operation class"
    CIMObjectPath lastPath;
    Array<CIMParamValue> lastParameters;
    std::function<void(InstanceResponseHandler&)> answerInstances;
    std::function<void(MethodResultResponseHandler&)> answerMethod;

    void initialize(CIMOMHandle&) override {}
    void terminate() override {}

    void getInstance(const OperationContext&, const CIMObjectPath& reference, const Boolean,
                     const Boolean, const CIMPropertyList&,
                     InstanceResponseHandler& handler) override {
        record("getInstance", reference);
        handler.processing();
        if (answerInstances) {
            answerInstances(handler);
        }
        handler.complete();
    }
    void enumerateInstances(const OperationContext&, const CIMObjectPath& reference, const Boolean,
                            const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        record("enumerateInstances", reference);
        handler.processing();
        if (answerInstances) {
            answerInstances(handler);
        }
        handler.complete();
    }
    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath& reference,
                                ObjectPathResponseHandler& handler) override {
        record("enumerateInstanceNames", reference);
        handler.processing();
        handler.deliver(path("Test_Served", "a"));
        handler.complete();
    }
    void modifyInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        const Boolean, const CIMPropertyList&, ResponseHandler&) override {
        calls.push_back("modifyInstance");
    }
    void createInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        ObjectPathResponseHandler&) override {
        calls.push_back("createInstance");
    }
    void deleteInstance(const OperationContext&, const CIMObjectPath&, ResponseHandler&) override {
        calls.push_back("deleteInstance");
    }
    void associators(const OperationContext&, const CIMObjectPath& objectName,
                     const CIMName& associationClass, const CIMName&, const String&, const String&,
                     const Boolean, const Boolean, const CIMPropertyList&,
                     ObjectResponseHandler& handler) override {
        record("associators", objectName, associationClass);
        handler.processing();
        handler.deliver(CIMObject(servedInstance("far")));
        handler.complete();
    }
    void associatorNames(const OperationContext&, const CIMObjectPath& objectName,
                         const CIMName& associationClass, const CIMName&, const String&,
                         const String&, ObjectPathResponseHandler& handler) override {
        record("associatorNames", objectName, associationClass);
        handler.processing();
        handler.deliver(path("Test_Served", "far"));
        handler.complete();
    }
    void references(const OperationContext&, const CIMObjectPath&, const CIMName&, const String&,
                    const Boolean, const Boolean, const CIMPropertyList&,
                    ObjectResponseHandler&) override {
        throw CIMNotSupportedException("references are not served");
    }
    void referenceNames(const OperationContext&, const CIMObjectPath&, const CIMName&,
                        const String&, ObjectPathResponseHandler&) override {
        throw CIMNotSupportedException("references are not served");
    }
    void invokeMethod(const OperationContext&, const CIMObjectPath& reference,
                      const CIMName& methodName, const Array<CIMParamValue>& inParameters,
                      MethodResultResponseHandler& handler) override {
        record("invokeMethod " + std::string((const char*)methodName.getString().getCString()),
               reference);
        lastParameters = inParameters;
        handler.processing();
        if (answerMethod) {
            answerMethod(handler);
        }
        handler.complete();
    }

private:
    void record(const std::string& operation, const CIMObjectPath& reference,
                const CIMName& extra = CIMName()) {
        std::string call =
            operation + " " + (const char*)reference.getClassName().getString().getCString();
        if (!extra.isNull()) {
            call += " " + std::string((const char*)extra.getString().getCString());
        }
        calls.push_back(call);
        lastPath = reference;
    }
};

class DispatcherTest : public ::testing::Test {
protected:
    DispatcherTest() {
        schema.loadText(TEST_MOF, "test.mof");
        served = std::make_unique<ServedClasses>(
            ServedClasses::fromRegistration(schema, "TestProvider"));
        ProviderInterfaces interfaces;
        interfaces.instances = &provider;
        interfaces.associations = &provider;
        interfaces.methods = &provider;
        dispatcher =
            std::make_unique<OperationDispatcher>(interfaces, schema, *served, "node7.example");
        caller.hostInAnswer = "cim.example";
    }

    Request request(const char* operation) {
        Request r;
        r.messageId = "4711";
        r.methodName = operation;
        r.nameSpace = "root/cimv2";
        return r;
    }
    std::string answer(const Request& r) { return dispatcher->answer(r, caller); }

    vexa::schema::SchemaRepository schema;
    std::unique_ptr<ServedClasses> served;
    RecordingProvider provider;
    std::unique_ptr<OperationDispatcher> dispatcher;
    Caller caller;
};

std::string code(int status) { return "CODE=\"" + std::to_string(status) + "\""; }

TEST_F(DispatcherTest, ASuperclassRequestCallsTheProviderForEachServedSubclass) {
    Request r = request("EnumerateInstanceNames");
    r.className = CIMName("Test_Base");
    std::string xml = answer(r);
    // Test_Unserved is someone else's; Test_Link is no Test_Base.
    EXPECT_EQ(provider.calls, (std::vector<std::string>{"enumerateInstanceNames Test_Served"}));
    EXPECT_EQ(provider.lastPath.getHost(), String("node7.example"));
    EXPECT_EQ(provider.lastPath.getNameSpace(), CIMNamespaceName("root/cimv2"));
    EXPECT_NE(xml.find("CLASSNAME=\"Test_Served\""), std::string::npos) << xml;

    provider.calls.clear();
    r.className = CIMName("Test_Unserved");
    xml = answer(r);
    EXPECT_TRUE(provider.calls.empty());
    EXPECT_EQ(xml.find("ERROR"), std::string::npos) << xml;
}

TEST_F(DispatcherTest, ShallowEnumerationAndPropertyListsTrimWhatTheProviderDelivers) {
    provider.answerInstances = [](InstanceResponseHandler& handler) {
        handler.deliver(servedInstance("a"));
    };
    Request r = request("EnumerateInstances");
    r.className = CIMName("Test_Base");
    r.deepInheritance = false;
    std::string xml = answer(r);
    EXPECT_NE(xml.find("NAME=\"BaseProp\""), std::string::npos) << xml;
    EXPECT_EQ(xml.find("NAME=\"Extra\""), std::string::npos) << xml;

    r.deepInheritance = true;
    Array<CIMName> names;
    names.append(CIMName("extra"));
    r.propertyList = CIMPropertyList(names);
    xml = answer(r);
    EXPECT_NE(xml.find("NAME=\"Extra\""), std::string::npos) << xml;
    EXPECT_EQ(xml.find("NAME=\"BaseProp\""), std::string::npos) << xml;
    // The key stays in the instance name.
    EXPECT_NE(xml.find("KEYBINDING NAME=\"Name\""), std::string::npos) << xml;
}

TEST_F(DispatcherTest, GetInstanceAnswersNotFoundAndMapsProviderExceptions) {
    Request r = request("GetInstance");
    r.instanceName = path("Test_Served", "missing");
    EXPECT_NE(answer(r).find(code(CIM_ERR_NOT_FOUND)), std::string::npos);

    provider.answerInstances = [](InstanceResponseHandler&) {
        throw CIMAccessDeniedException("not for you");
    };
    std::string xml = answer(r);
    EXPECT_NE(xml.find(code(CIM_ERR_ACCESS_DENIED)), std::string::npos) << xml;
    EXPECT_NE(xml.find("not for you"), std::string::npos) << xml;

    provider.answerInstances = [](InstanceResponseHandler&) {
        throw std::runtime_error("disk on fire");
    };
    xml = answer(r);
    EXPECT_NE(xml.find(code(CIM_ERR_FAILED)), std::string::npos) << xml;
    EXPECT_NE(xml.find("disk on fire"), std::string::npos) << xml;

    provider.answerInstances = [](InstanceResponseHandler&) { throw 42; };
    EXPECT_NE(answer(r).find("Unknown error."), std::string::npos);

    provider.answerInstances = [](InstanceResponseHandler& handler) {
        handler.deliver(servedInstance("a"));
        handler.deliver(servedInstance("b"));
    };
    xml = answer(r);
    EXPECT_NE(xml.find(code(CIM_ERR_FAILED)), std::string::npos) << xml;
    EXPECT_NE(xml.find("Too many objects delivered."), std::string::npos) << xml;
}

TEST_F(DispatcherTest, RefusesWhatIsNotServedWithoutAskingTheProvider) {
    Request r = request("EnumerateInstances");
    r.className = CIMName("Test_Served");
    r.nameSpace = "root/other";
    EXPECT_NE(answer(r).find(code(CIM_ERR_INVALID_NAMESPACE)), std::string::npos);
    r.nameSpace = "/ROOT/CIMV2";
    EXPECT_EQ(answer(r).find("ERROR"), std::string::npos);

    r.className = CIMName("No_Such_Class");
    EXPECT_NE(answer(r).find(code(CIM_ERR_INVALID_CLASS)), std::string::npos);

    for (const char* operation : {"CreateInstance", "ModifyInstance", "DeleteInstance", "ExecQuery",
                                  "OpenEnumerateInstances", "NoSuchOperation"}) {
        std::string xml = answer(request(operation));
        EXPECT_NE(xml.find(code(CIM_ERR_NOT_SUPPORTED)), std::string::npos) << operation;
    }
    EXPECT_EQ(provider.calls, (std::vector<std::string>{"enumerateInstances Test_Served"}));
}

TEST_F(DispatcherTest, AssociationRequestsGoToEachAssociationTheObjectCanTakePart) {
    Request r = request("AssociatorNames");
    r.instanceName = path("Test_Served", "near");
    std::string xml = answer(r);
    EXPECT_EQ(provider.calls, (std::vector<std::string>{"associatorNames Test_Served Test_Link"}));
    // Association answers name the host the client used.
    EXPECT_NE(xml.find("<HOST>cim.example</HOST>"), std::string::npos) << xml;

    provider.calls.clear();
    r.methodName = "Associators";
    r.assocClass = CIMName("Test_ServiceLink");
    xml = answer(r);
    EXPECT_TRUE(provider.calls.empty());

    r.methodName = "ReferenceNames";
    r.resultClass = CIMName();
    xml = answer(r);
    EXPECT_NE(xml.find(code(CIM_ERR_NOT_SUPPORTED)), std::string::npos) << xml;
    EXPECT_NE(xml.find("references are not served"), std::string::npos) << xml;
}

TEST_F(DispatcherTest, MethodParametersGetTheirDeclaredTypes) {
    provider.answerMethod = [](MethodResultResponseHandler& handler) {
        Array<CIMParamValue> out;
        out.append(CIMParamValue(String("Message"), CIMValue(String("done")), true));
        out.append(CIMParamValue(String("Empty"), CIMValue(CIMTYPE_STRING, false), true));
        handler.deliverParamValue(out);
        handler.deliver(CIMValue(Uint32(4096)));
    };
    Request r = request("doit");
    r.extrinsic = true;
    r.target = CIMObjectPath(String(), CIMNamespaceName(), CIMName("Test_Service"));
    RawParameter n{"n", RawValue{}};
    n.value.shape = RawValue::Shape::Scalar;
    n.value.texts = {"18446744073709551615"};
    RawParameter b{"B", RawValue{}};
    b.value.shape = RawValue::Shape::Scalar;
    b.value.texts = {"true"};
    r.parameters = {n, b};
    std::string xml = answer(r);
    ASSERT_EQ(provider.calls, (std::vector<std::string>{"invokeMethod DoIt Test_Service"}));
    ASSERT_EQ(provider.lastParameters.size(), 2u);
    EXPECT_EQ(provider.lastParameters[0].getParameterName(), String("N"));
    EXPECT_EQ(provider.lastParameters[0].getValue(), CIMValue(Uint64(18446744073709551615ull)));
    EXPECT_EQ(provider.lastParameters[1].getValue(), CIMValue(true));
    EXPECT_NE(xml.find("4096"), std::string::npos) << xml;
    EXPECT_NE(xml.find("done"), std::string::npos) << xml;
    // A null out-parameter is left out, not sent empty.
    EXPECT_EQ(xml.find("\"Empty\""), std::string::npos) << xml;

    provider.calls.clear();
    r.parameters[0].value.texts = {"many"};
    EXPECT_NE(answer(r).find(code(CIM_ERR_INVALID_PARAMETER)), std::string::npos);
    r.parameters = {b, b};
    EXPECT_NE(answer(r).find(code(CIM_ERR_INVALID_PARAMETER)), std::string::npos);
    r.parameters = {RawParameter{"Z", RawValue{}}};
    EXPECT_NE(answer(r).find(code(CIM_ERR_INVALID_PARAMETER)), std::string::npos);
    r.parameters.clear();
    r.methodName = "Undone";
    EXPECT_NE(answer(r).find(code(CIM_ERR_METHOD_NOT_FOUND)), std::string::npos);
    r.methodName = "DoIt";
    r.target = CIMObjectPath(String(), CIMNamespaceName(), CIMName("Test_Served"));
    EXPECT_NE(answer(r).find(code(CIM_ERR_METHOD_NOT_FOUND)), std::string::npos);
    EXPECT_TRUE(provider.calls.empty());
}

} // namespace

TEST_F(DispatcherTest, AStreamedEnumerationThatFailsMidwayKeepsWhatWasSentAndEndsWithTheError) {
    CIMInstance cached = servedInstance("a");
    provider.answerInstances = [&cached](InstanceResponseHandler& handler) {
        handler.deliver(cached);
        throw CIMException(CIM_ERR_FAILED, "the cluster went away");
    };
    Request r = request("EnumerateInstances");
    r.className = CIMName("Test_Served");
    Array<CIMName> names;
    names.append(CIMName("Extra"));
    r.propertyList = CIMPropertyList(names);
    std::string body;
    StreamOutcome outcome = dispatcher->stream(
        r, caller, [&body](std::string_view text) { body.append(text); }, 1);
    EXPECT_EQ(outcome.status, CIM_ERR_FAILED);
    EXPECT_EQ(outcome.description, "the cluster went away");
    EXPECT_NE(body.find("</VALUE.NAMEDINSTANCE></IRETURNVALUE><ERROR CODE=\"1\" "
                        "DESCRIPTION=\"the cluster went away\">"),
              std::string::npos)
        << body;
    // The answer leaves out what the PropertyList does not name; the
    // provider's own instance keeps it.
    EXPECT_EQ(body.find("BaseProp"), std::string::npos) << body;
    EXPECT_EQ(cached.getPropertyCount(), 3u);
}

namespace {

// What the server sends for `request` on a fresh loopback connection, read
// until it closes.
std::string sendAndRead(int port, const std::string& request) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    inet_pton(AF_INET, "127.0.0.1", &address.sin_addr);
    std::string answer;
    if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        send(fd, request.data(), request.size(), 0) == static_cast<ssize_t>(request.size())) {
        char buffer[4096];
        for (ssize_t n; (n = recv(fd, buffer, sizeof buffer, 0)) > 0;) {
            answer.append(buffer, static_cast<size_t>(n));
        }
    }
    close(fd);
    return answer;
}

// A raw chunked body taken apart: the data, how many chunks carried it,
// and the trailer after the last chunk.
struct Dechunked {
    std::string body;
    int chunks = 0;
    std::string trailer;
};

Dechunked dechunk(const std::string& raw) {
    Dechunked result;
    for (size_t pos = 0; pos < raw.size();) {
        size_t endOfSize = raw.find("\r\n", pos);
        size_t size = std::stoul(raw.substr(pos, endOfSize - pos), nullptr, 16);
        pos = endOfSize + 2;
        if (size == 0) {
            result.trailer = raw.substr(pos);
            break;
        }
        result.body += raw.substr(pos, size);
        result.chunks++;
        pos += size + 2;
    }
    return result;
}

} // namespace

TEST_F(DispatcherTest, ALargeEnumerationGoesOutInChunksWithItsOutcomeInTheTrailer) {
    // Set by this thread, read by the server's: the socket orders the two,
    // but only an atomic says so to the thread sanitizer.
    std::atomic<bool> failAtEnd{false};
    provider.answerInstances = [&failAtEnd](InstanceResponseHandler& handler) {
        for (int i = 0; i < 40; i++) {
            handler.deliver(servedInstance(("n" + std::to_string(i)).c_str()));
        }
        if (failAtEnd) {
            throw CIMException(CIM_ERR_FAILED, "disk gone");
        }
    };
    EndpointSettings settings;
    settings.chunkBytes = 1024;
    CimXmlEndpoint endpoint(*dispatcher, settings);
    httplib::Server http;
    endpoint.install(http);
    int port = http.bind_to_any_port("127.0.0.1");
    std::thread serving([&http] { http.listen_after_bind(); });
    while (!http.is_running()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const std::string body =
        R"(<?xml version="1.0" encoding="utf-8" ?><CIM CIMVERSION="2.0" DTDVERSION="2.0">)"
        R"(<MESSAGE ID="4711" PROTOCOLVERSION="1.0"><SIMPLEREQ>)"
        R"(<IMETHODCALL NAME="EnumerateInstances"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/>)"
        R"(<NAMESPACE NAME="cimv2"/></LOCALNAMESPACEPATH><IPARAMVALUE NAME="ClassName">)"
        R"(<CLASSNAME NAME="Test_Served"/></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)";
    auto post = [&](const std::string& version) {
        std::string answer =
            sendAndRead(port, "POST /cimom " + version +
                                  "\r\nHost: 127.0.0.1\r\nCIMOperation: MethodCall\r\n"
                                  "CIMMethod: EnumerateInstances\r\nCIMObject: root%2Fcimv2\r\n"
                                  "TE: trailers\r\nConnection: close\r\nContent-Length: " +
                                  std::to_string(body.size()) + "\r\n\r\n" + body);
        size_t headersEnd = answer.find("\r\n\r\n");
        EXPECT_NE(headersEnd, std::string::npos) << answer;
        return std::make_pair(answer.substr(0, headersEnd), answer.substr(headersEnd + 4));
    };

    auto [headers, raw] = post("HTTP/1.1");
    EXPECT_NE(headers.find("Transfer-Encoding: chunked"), std::string::npos) << headers;
    Dechunked streamed = dechunk(raw);
    EXPECT_GT(streamed.chunks, 3);
    EXPECT_EQ(streamed.trailer, "CIMStatusCode: 0\r\n\r\n");
    // HTTP/1.0 knows no chunks: the same answer arrives whole.
    auto [wholeHeaders, whole] = post("HTTP/1.0");
    EXPECT_NE(wholeHeaders.find("Content-Length: "), std::string::npos) << wholeHeaders;
    EXPECT_EQ(streamed.body, whole);
    EXPECT_NE(whole.find("Name\"><KEYVALUE VALUETYPE=\"string\">n39<"), std::string::npos);

    failAtEnd = true;
    Dechunked failed = dechunk(post("HTTP/1.1").second);
    EXPECT_EQ(failed.trailer, "CIMStatusCode: 1\r\nCIMStatusCodeDescription: disk%20gone\r\n"
                              "CIMStatusDescription: disk%20gone\r\n\r\n");
    EXPECT_NE(failed.body.find("</IRETURNVALUE><ERROR CODE=\"1\""), std::string::npos);
    http.stop();
    serving.join();
}
