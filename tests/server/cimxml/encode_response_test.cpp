#include "CodecTestSupport.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

#include <set>
#include <stdexcept>
#include <vector>

using namespace cimxml_test;
using namespace vexa::cimxml;
using namespace Pegasus;

namespace {

const std::string declaration = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n";

Request requestFor(const char* method, bool extrinsic = false) {
    Request request;
    request.messageId = "1001";
    request.methodName = method;
    request.extrinsic = extrinsic;
    request.nameSpace = "root/cimv2";
    return request;
}

std::string intrinsicAnswer(const char* method, const std::string& result) {
    return declaration +
           "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1001\" "
           "PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE NAME=\"" +
           method + "\"><IRETURNVALUE>" + result +
           "</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>\n";
}

// Names of the elements written self-closing: wbemcli accepts that only for
// NAMESPACE, CLASSNAME and ERROR.
std::set<std::string> selfClosing(const std::string& xml) {
    std::set<std::string> names;
    for (size_t end = xml.find("/>"); end != std::string::npos; end = xml.find("/>", end + 2)) {
        const size_t start = xml.rfind('<', end);
        names.insert(xml.substr(start + 1, xml.find_first_of(" />", start + 1) - start - 1));
    }
    return names;
}

CIMInstance sampleInstance() {
    CIMInstance instance(CIMName("Test_Class"));
    instance.addProperty(CIMProperty(CIMName("Name"), CIMValue(String("abc"))));
    instance.addProperty(CIMProperty(CIMName("Size"), CIMValue(Uint64(18446744073709551615ULL))));
    instance.addProperty(CIMProperty(CIMName("Enabled"), CIMValue(Boolean(true))));
    instance.addProperty(CIMProperty(CIMName("Ratio"), CIMValue(Real64(1.5))));
    instance.addProperty(CIMProperty(CIMName("Created"),
                                     CIMValue(CIMDateTime(String("20240102030405.123456+060")))));
    instance.addProperty(
        CIMProperty(CIMName("Note"), CIMValue(String("a & b <c> \"q\" \xC3\xA9"))));
    instance.addProperty(CIMProperty(CIMName("Empty"), CIMValue(String(""))));
    instance.addProperty(CIMProperty(CIMName("Missing"), CIMValue(CIMTYPE_UINT32, false)));
    Array<Uint16> codes;
    codes.append(1);
    codes.append(2);
    instance.addProperty(CIMProperty(CIMName("Codes"), CIMValue(codes)));
    instance.addProperty(CIMProperty(CIMName("NoCodes"), CIMValue(Array<Uint16>())));
    instance.addProperty(CIMProperty(CIMName("NullCodes"), CIMValue(CIMTYPE_UINT16, true)));
    instance.addProperty(CIMProperty(
        CIMName("Parent"), CIMValue(CIMObjectPath(String("root/cimv2:Test_Class.Name=\"def\""))), 0,
        CIMName("Test_Class")));
    instance.addProperty(CIMProperty(CIMName("Initial"), CIMValue(Char16('x'))));
    instance.setPath(CIMObjectPath(String("Test_Class.Name=\"abc\"")));
    return instance;
}

const std::string sampleInstanceXml =
    "<INSTANCE CLASSNAME=\"Test_Class\">"
    "<PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>abc</VALUE></PROPERTY>"
    "<PROPERTY NAME=\"Size\" TYPE=\"uint64\"><VALUE>18446744073709551615</VALUE></PROPERTY>"
    "<PROPERTY NAME=\"Enabled\" TYPE=\"boolean\"><VALUE>TRUE</VALUE></PROPERTY>"
    "<PROPERTY NAME=\"Ratio\" TYPE=\"real64\"><VALUE>1.5000000000000000e+00</VALUE></PROPERTY>"
    "<PROPERTY NAME=\"Created\" TYPE=\"datetime\"><VALUE>20240102030405.123456+060</VALUE>"
    "</PROPERTY>"
    "<PROPERTY NAME=\"Note\" TYPE=\"string\"><VALUE>a &amp; b &lt;c&gt; &quot;q&quot; "
    "\xC3\xA9</VALUE></PROPERTY>"
    "<PROPERTY NAME=\"Empty\" TYPE=\"string\"><VALUE></VALUE></PROPERTY>"
    "<PROPERTY NAME=\"Missing\" TYPE=\"uint32\"></PROPERTY>"
    "<PROPERTY.ARRAY NAME=\"Codes\" TYPE=\"uint16\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE>2</"
    "VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"
    "<PROPERTY.ARRAY NAME=\"NoCodes\" TYPE=\"uint16\"><VALUE.ARRAY></VALUE.ARRAY></"
    "PROPERTY.ARRAY>"
    "<PROPERTY.ARRAY NAME=\"NullCodes\" TYPE=\"uint16\"></PROPERTY.ARRAY>"
    "<PROPERTY.REFERENCE NAME=\"Parent\" REFERENCECLASS=\"Test_Class\"><VALUE.REFERENCE>"
    "<LOCALINSTANCEPATH><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE "
    "NAME=\"cimv2\"/></LOCALNAMESPACEPATH><INSTANCENAME CLASSNAME=\"Test_Class\"><KEYBINDING "
    "NAME=\"Name\"><KEYVALUE VALUETYPE=\"string\">def</KEYVALUE></KEYBINDING></INSTANCENAME>"
    "</LOCALINSTANCEPATH></VALUE.REFERENCE></PROPERTY.REFERENCE>"
    "<PROPERTY NAME=\"Initial\" TYPE=\"char16\"><VALUE>x</VALUE></PROPERTY>"
    "</INSTANCE>";

} // namespace

TEST(EncodeInstances, GetInstanceAnswerInTheFormBothClientsPrint) {
    const std::string answer = encodeInstance(requestFor("GetInstance"), sampleInstance());
    EXPECT_EQ(answer, intrinsicAnswer("GetInstance", sampleInstanceXml));
    EXPECT_EQ(selfClosing(answer), (std::set<std::string>{"NAMESPACE"}));
}

TEST(EncodeInstances, EnumerationsAndEmptyResults) {
    Array<CIMInstance> instances;
    instances.append(sampleInstance());
    EXPECT_EQ(encodeNamedInstances(requestFor("EnumerateInstances"), instances),
              intrinsicAnswer("EnumerateInstances",
                              "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"Test_Class\">"
                              "<KEYBINDING NAME=\"Name\"><KEYVALUE VALUETYPE=\"string\">abc</"
                              "KEYVALUE></KEYBINDING></INSTANCENAME>" +
                                  sampleInstanceXml + "</VALUE.NAMEDINSTANCE>"));
    // wbemcli fails on <IRETURNVALUE/>.
    EXPECT_EQ(encodeNamedInstances(requestFor("EnumerateInstances"), Array<CIMInstance>()),
              intrinsicAnswer("EnumerateInstances", ""));

    Array<CIMObjectPath> names;
    names.append(CIMObjectPath(String("Test_Other.Id=7,Primary=TRUE")));
    names.append(CIMObjectPath(String("Singleton")));
    EXPECT_EQ(encodeInstanceNames(requestFor("EnumerateInstanceNames"), names),
              intrinsicAnswer("EnumerateInstanceNames",
                              "<INSTANCENAME CLASSNAME=\"Test_Other\"><KEYBINDING "
                              "NAME=\"Id\"><KEYVALUE VALUETYPE=\"numeric\">7</KEYVALUE></"
                              "KEYBINDING><KEYBINDING NAME=\"Primary\"><KEYVALUE "
                              "VALUETYPE=\"boolean\">TRUE</KEYVALUE></KEYBINDING></"
                              "INSTANCENAME><INSTANCENAME CLASSNAME=\"Singleton\"></"
                              "INSTANCENAME>"));
}

TEST(EncodeInstances, AssociationResultsCarryAFullInstancePathWithAHost) {
    setDefaultHost("server1.example.com");
    CIMInstance instance(CIMName("Test_Class"));
    instance.addProperty(CIMProperty(CIMName("Name"), CIMValue(String("abc"))));
    instance.setPath(CIMObjectPath(String("Test_Class.Name=\"abc\"")));
    Array<CIMObject> objects;
    objects.append(CIMObject(instance));
    const std::string path =
        "<INSTANCEPATH><NAMESPACEPATH><HOST>server1.example.com</HOST><LOCALNAMESPACEPATH>"
        "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>"
        "</NAMESPACEPATH><INSTANCENAME CLASSNAME=\"Test_Class\"><KEYBINDING NAME=\"Name\">"
        "<KEYVALUE VALUETYPE=\"string\">abc</KEYVALUE></KEYBINDING></INSTANCENAME>"
        "</INSTANCEPATH>";
    EXPECT_EQ(encodeObjectsWithPath(requestFor("Associators"), objects),
              intrinsicAnswer("Associators",
                              "<VALUE.OBJECTWITHPATH>" + path +
                                  "<INSTANCE CLASSNAME=\"Test_Class\"><PROPERTY NAME=\"Name\" "
                                  "TYPE=\"string\"><VALUE>abc</VALUE></PROPERTY></INSTANCE>"
                                  "</VALUE.OBJECTWITHPATH>"));
    Array<CIMObjectPath> paths;
    paths.append(instance.getPath());
    EXPECT_EQ(encodeObjectPaths(requestFor("AssociatorNames"), paths),
              intrinsicAnswer("AssociatorNames", "<OBJECTPATH>" + path + "</OBJECTPATH>"));
    // A path's own host wins over the default.
    paths[0].setHost("node7");
    EXPECT_NE(encodeObjectPaths(requestFor("ReferenceNames"), paths).find("<HOST>node7</HOST>"),
              std::string::npos);
}

TEST(EncodeInstances, EmbeddedInstancesAreEscapedOnceMore) {
    CIMInstance source(CIMName("Test_Class"));
    source.addProperty(CIMProperty(CIMName("Note"), CIMValue(String("R&D"))));
    CIMInstance indication(CIMName("CIM_InstModification"));
    indication.addProperty(CIMProperty(CIMName("SourceInstance"), CIMValue(CIMObject(source))));
    indication.addProperty(CIMProperty(CIMName("Embedded"), CIMValue(source)));
    const std::string answer = encodeInstance(requestFor("GetInstance"), indication);
    const std::string escaped =
        "<VALUE>&lt;INSTANCE CLASSNAME=&quot;Test_Class&quot;&gt;&lt;PROPERTY "
        "NAME=&quot;Note&quot; TYPE=&quot;string&quot;&gt;&lt;VALUE&gt;R&amp;amp;D&lt;/"
        "VALUE&gt;&lt;/PROPERTY&gt;&lt;/INSTANCE&gt;</VALUE>";
    EXPECT_NE(answer.find("<PROPERTY NAME=\"SourceInstance\" TYPE=\"string\" "
                          "EmbeddedObject=\"object\">" +
                          escaped + "</PROPERTY>"),
              std::string::npos)
        << answer;
    EXPECT_NE(answer.find("<PROPERTY NAME=\"Embedded\" TYPE=\"string\" "
                          "EmbeddedObject=\"instance\">"),
              std::string::npos);
    EXPECT_EQ(answer.find("EMBEDDEDOBJECT"), std::string::npos);
}

TEST(EncodeInstances, TextThatWouldBreakTheDocumentIsReplaced) {
    CIMInstance instance(CIMName("Test_Class"));
    instance.addProperty(CIMProperty(CIMName("Raw"), CIMValue(String("a\x01"
                                                                     "b\tc"))));
    instance.addProperty(CIMProperty(CIMName("Nul"), CIMValue(Char16(0))));
    const std::string answer = encodeInstance(requestFor("GetInstance"), instance);
    EXPECT_NE(answer.find("<VALUE>a\xEF\xBF\xBD"
                          "b\tc</VALUE>"),
              std::string::npos);
    EXPECT_NE(answer.find("<VALUE>\xEF\xBF\xBD</VALUE>"), std::string::npos);
}

TEST(EncodeInstances, InstanceNamesRoundTripThroughTheDecoder) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Label"), String("a\"b\\c & <d>  "), CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("Count"), String("-12"), CIMKeyBinding::NUMERIC));
    keys.append(CIMKeyBinding(CIMName("On"), String("FALSE"), CIMKeyBinding::BOOLEAN));
    keys.append(CIMKeyBinding(CIMName("Owner"), String("root/cimv2:Test_Class.Name=\"x\",Num=5"),
                              CIMKeyBinding::REFERENCE));
    const CIMObjectPath original(String(), CIMNamespaceName(), CIMName("Test_Assoc"), keys);
    Array<CIMObjectPath> names;
    names.append(original);
    const std::string answer = encodeInstanceNames(requestFor("EnumerateInstanceNames"), names);
    const size_t start = answer.find("<INSTANCENAME");
    const size_t end = answer.rfind("</INSTANCENAME>") + std::string("</INSTANCENAME>").size();
    const Request request = decodeRequest(
        wbemcliRequest(std::string("<IMETHODCALL NAME=\"GetInstance\">") + rootCimv2 +
                       "<IPARAMVALUE NAME=\"InstanceName\">" + answer.substr(start, end - start) +
                       "</IPARAMVALUE></IMETHODCALL>"));
    EXPECT_EQ(request.instanceName, original) << text(request.instanceName.toString());
}

TEST(EncodeMethods, MethodResponseWithReturnValueAndOutParameters) {
    Array<CIMParamValue> out;
    out.append(CIMParamValue(String("Message"), CIMValue(String("started & queued"))));
    out.append(CIMParamValue(
        String("Job"), CIMValue(CIMObjectPath(String(
                           "//server1.example.com/root/cimv2:Test_Job.InstanceID=\"job:42\"")))));
    // wbemcli crashes on an out-parameter without a value, so it is left out.
    out.append(CIMParamValue(String("Unset"), CIMValue(CIMTYPE_STRING, false)));
    const std::string answer =
        encodeMethodResult(requestFor("DoIt", true), CIMValue(Uint32(4096)), out);
    EXPECT_EQ(answer,
              declaration +
                  "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1001\" "
                  "PROTOCOLVERSION=\"1.0\"><SIMPLERSP><METHODRESPONSE NAME=\"DoIt\">"
                  "<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>4096</VALUE></RETURNVALUE>"
                  "<PARAMVALUE NAME=\"Message\" PARAMTYPE=\"string\"><VALUE>started &amp; "
                  "queued</VALUE></PARAMVALUE>"
                  "<PARAMVALUE NAME=\"Job\" PARAMTYPE=\"reference\"><VALUE.REFERENCE>"
                  "<INSTANCEPATH><NAMESPACEPATH><HOST>server1.example.com</HOST>"
                  "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/>"
                  "</LOCALNAMESPACEPATH></NAMESPACEPATH><INSTANCENAME CLASSNAME=\"Test_Job\">"
                  "<KEYBINDING NAME=\"InstanceID\"><KEYVALUE VALUETYPE=\"string\">job:42</"
                  "KEYVALUE></KEYBINDING></INSTANCENAME></INSTANCEPATH></VALUE.REFERENCE>"
                  "</PARAMVALUE></METHODRESPONSE></SIMPLERSP></MESSAGE></CIM>\n");

    CIMInstance embedded(CIMName("Test_Emb"));
    const std::string withEmbedded = encodeMethodResult(
        requestFor("DoIt", true), CIMValue(CIMObject(embedded)), Array<CIMParamValue>());
    // wbemcli refuses EmbeddedObject on RETURNVALUE.
    EXPECT_NE(withEmbedded.find("<RETURNVALUE PARAMTYPE=\"string\"><VALUE>&lt;INSTANCE"),
              std::string::npos);
}

TEST(EncodeErrors, ErrorElementRepeatsTheRequest) {
    EXPECT_EQ(encodeError(requestFor("EnumerateClassNames"), CIM_ERR_NOT_SUPPORTED,
                          "EnumerateClassNames is not supported"),
              declaration + "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1001\" "
                            "PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE "
                            "NAME=\"EnumerateClassNames\"><ERROR CODE=\"7\" "
                            "DESCRIPTION=\"EnumerateClassNames is not supported\"></ERROR>"
                            "</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>\n");
    const std::string method =
        encodeError(requestFor("DoIt", true), CIM_ERR_INVALID_PARAMETER, "bad \"S\" <here>");
    EXPECT_NE(method.find("<METHODRESPONSE NAME=\"DoIt\"><ERROR CODE=\"4\" "
                          "DESCRIPTION=\"bad &quot;S&quot; &lt;here&gt;\"></ERROR>"),
              std::string::npos);
}

TEST(EncodeClasses, GetClassAnswerDeclaresMethodsAndParameters) {
    CIMClass cimClass(CIMName("Test_Class"), CIMName("CIM_ManagedElement"));
    CIMProperty name(CIMName("Name"), CIMValue(CIMTYPE_STRING, false));
    name.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(Boolean(true))));
    cimClass.addProperty(name);
    CIMMethod method(CIMName("DoIt"), CIMTYPE_UINT32);
    CIMParameter s(CIMName("S"), CIMTYPE_STRING);
    s.addQualifier(CIMQualifier(CIMName("In"), CIMValue(Boolean(true))));
    method.addParameter(s);
    method.addParameter(CIMParameter(CIMName("SA"), CIMTYPE_STRING, true));
    method.addParameter(
        CIMParameter(CIMName("R"), CIMTYPE_REFERENCE, false, 0, CIMName("Test_Class")));
    cimClass.addMethod(method);
    const std::string answer = encodeClass(requestFor("GetClass"), cimClass);
    EXPECT_EQ(answer,
              intrinsicAnswer("GetClass",
                              "<CLASS NAME=\"Test_Class\" SUPERCLASS=\"CIM_ManagedElement\">"
                              "<PROPERTY NAME=\"Name\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
                              "TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY>"
                              "<METHOD NAME=\"DoIt\" TYPE=\"uint32\">"
                              "<PARAMETER NAME=\"S\" TYPE=\"string\"><QUALIFIER NAME=\"In\" "
                              "TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER></PARAMETER>"
                              "<PARAMETER.ARRAY NAME=\"SA\" TYPE=\"string\"></PARAMETER.ARRAY>"
                              "<PARAMETER.REFERENCE NAME=\"R\" REFERENCECLASS=\"Test_Class\">"
                              "</PARAMETER.REFERENCE></METHOD></CLASS>"));

    Array<CIMName> names;
    names.append(CIMName("Test_Class"));
    EXPECT_EQ(encodeClassNames(requestFor("EnumerateClassNames"), names),
              intrinsicAnswer("EnumerateClassNames", "<CLASSNAME NAME=\"Test_Class\"/>"));
}

TEST(EncodeInstances, AStreamedAnswerIsHandedOnBetweenObjectsAndEndsWellFormedOnFailure) {
    const Request request = requestFor("EnumerateInstances");
    Array<CIMInstance> instances;
    for (int i = 0; i < 20; i++)
        instances.append(sampleInstance());
    std::vector<std::string> pieces;
    const auto collect = [&pieces](std::string_view text) { pieces.emplace_back(text); };

    AnswerStream streamed(request, collect, 2048);
    for (Uint32 i = 0; i < instances.size(); i++)
        streamed.addNamedInstance(instances[i]);
    streamed.finish();
    ASSERT_GT(pieces.size(), 3u);
    std::string joined;
    for (size_t i = 0; i < pieces.size(); i++) {
        joined += pieces[i];
        if (i + 1 < pieces.size()) {
            EXPECT_EQ(pieces[i].substr(pieces[i].rfind('<')), "</VALUE.NAMEDINSTANCE>");
        }
    }
    EXPECT_EQ(joined, encodeNamedInstances(request, instances));

    // Objects already sent stay; the ERROR follows the closed IRETURNVALUE.
    pieces.clear();
    AnswerStream failed(request, collect, 1);
    failed.addNamedInstance(sampleInstance());
    failed.fail(CIM_ERR_FAILED, "disk <gone>");
    joined.clear();
    for (const std::string& piece : pieces)
        joined += piece;
    const std::string ending = "</VALUE.NAMEDINSTANCE></IRETURNVALUE><ERROR CODE=\"1\" "
                               "DESCRIPTION=\"disk &lt;gone&gt;\"></ERROR></IMETHODRESPONSE>"
                               "</SIMPLERSP></MESSAGE></CIM>\n";
    ASSERT_GT(joined.size(), ending.size());
    EXPECT_EQ(joined.substr(joined.size() - ending.size()), ending);

    // A receiver that is gone stops every later delivery too.
    AnswerStream broken(
        request, [](std::string_view) { throw std::runtime_error("gone"); }, 1);
    EXPECT_THROW(broken.addNamedInstance(sampleInstance()), std::runtime_error);
    EXPECT_THROW(broken.addNamedInstance(sampleInstance()), std::runtime_error);
}
