#include "CodecTestSupport.h"

#include <Pegasus/Common/CIMDateTime.h>

using namespace cimxml_test;
using namespace vexa::cimxml;
using Pegasus::CIMObjectPath;
using Pegasus::CIMValue;

namespace {

const char* instanceNameAbc =
    "<INSTANCENAME CLASSNAME=\"Test_Class\"><KEYBINDING NAME=\"Name\"><KEYVALUE "
    "VALUETYPE=\"string\">abc</KEYVALUE></KEYBINDING></INSTANCENAME>";

std::string intrinsic(const std::string& name, const std::string& parameters) {
    return "<IMETHODCALL NAME=\"" + name + "\">" + rootCimv2 + "\n" + parameters + "</IMETHODCALL>";
}

std::string param(const std::string& name, const std::string& value) {
    return "<IPARAMVALUE NAME=\"" + name + "\">" + value + "</IPARAMVALUE>\n";
}

} // namespace

TEST(DecodeIntrinsic, WbemcliGetInstanceWithTypedKeysInUserSpelling) {
    const Request request = decodeRequest(wbemcliRequest(intrinsic(
        "GetInstance",
        param("LocalOnly", "<VALUE>FALSE</VALUE>") +
            param("IncludeQualifiers", "<VALUE>FALSE</VALUE>") +
            param("IncludeClassOrigin", "<VALUE>TRUE</VALUE>") +
            param("InstanceName",
                  "<INSTANCENAME CLASSNAME=\"Test_Class\"><KEYBINDING NAME=\"Name\"><KEYVALUE "
                  "VALUETYPE=\"string\">abc</KEYVALUE></KEYBINDING><KEYBINDING "
                  "NAME=\"Num\"><KEYVALUE VALUETYPE=\"numeric\">007</KEYVALUE></"
                  "KEYBINDING><KEYBINDING NAME=\"Flag\"><KEYVALUE "
                  "VALUETYPE=\"boolean\">true</KEYVALUE></KEYBINDING></INSTANCENAME>"))));
    EXPECT_EQ(request.messageId, "4711");
    EXPECT_FALSE(request.extrinsic);
    EXPECT_EQ(request.methodName, "GetInstance");
    EXPECT_EQ(request.nameSpace, "root/cimv2");
    EXPECT_FALSE(request.localOnly);
    EXPECT_TRUE(request.includeClassOrigin);
    EXPECT_TRUE(request.propertyList.isNull());
    // cimcli sends the same instance sorted and with TRUE and 7; both must
    // name the same instance.
    EXPECT_EQ(request.instanceName,
              CIMObjectPath(Pegasus::String("Test_Class.Flag=TRUE,Name=\"abc\",Num=7")));
}

TEST(DecodeIntrinsic, DefaultsDependOnTheOperation) {
    const Request ei = decodeRequest(cimcliRequest(
        intrinsic("EnumerateInstances", param("ClassName", "<CLASSNAME NAME=\"Test_Class\"/>"))));
    EXPECT_EQ(text(ei.className.getString()), "Test_Class");
    EXPECT_TRUE(ei.deepInheritance);
    EXPECT_TRUE(ei.localOnly);
    EXPECT_FALSE(ei.includeQualifiers);

    const Request gc = decodeRequest(wbemcliRequest(
        intrinsic("GetClass", param("ClassName", "<CLASSNAME NAME=\"Test_Class\"/>"))));
    EXPECT_TRUE(gc.includeQualifiers);

    const Request ecn = decodeRequest(wbemcliRequest(intrinsic("EnumerateClassNames", "")));
    EXPECT_FALSE(ecn.deepInheritance);
    EXPECT_TRUE(ecn.className.isNull());
}

TEST(DecodeIntrinsic, PropertyListNullEmptyAndNamed) {
    const auto decodeList = [](const std::string& value) {
        return decodeRequest(
                   wbemcliRequest(intrinsic("EnumerateInstances",
                                            param("ClassName", "<CLASSNAME NAME=\"C\"/>") +
                                                param("PropertyList", value))))
            .propertyList;
    };
    EXPECT_TRUE(decodeList("").isNull());
    const Pegasus::CIMPropertyList none = decodeList("<VALUE.ARRAY></VALUE.ARRAY>");
    EXPECT_FALSE(none.isNull());
    EXPECT_EQ(none.size(), 0u);
    const Pegasus::CIMPropertyList two =
        decodeList("<VALUE.ARRAY><VALUE>Prop1</VALUE><VALUE>not-a-name</VALUE><VALUE>Prop2</"
                   "VALUE></VALUE.ARRAY>");
    ASSERT_EQ(two.size(), 2u);
    EXPECT_TRUE(two.contains(Pegasus::CIMName("prop2")));
}

TEST(DecodeIntrinsic, AssociatorsWithFiltersAndReferenceKeysFromBothClients) {
    const Request wb = decodeRequest(wbemcliRequest(
        intrinsic("Associators", param("ObjectName", instanceNameAbc) +
                                     param("AssocClass", "<CLASSNAME NAME=\"Test_Assoc\"/>") +
                                     param("ResultClass", "<CLASSNAME NAME=\"Test_Result\"/>") +
                                     param("Role", "<VALUE>Antecedent</VALUE>") +
                                     param("ResultRole", "<VALUE>Dependent</VALUE>") +
                                     param("IncludeQualifiers", "<VALUE>FALSE</VALUE>") +
                                     param("IncludeClassOrigin", "<VALUE>TRUE</VALUE>"))));
    EXPECT_FALSE(wb.objectNameIsClass);
    EXPECT_EQ(text(wb.assocClass.getString()), "Test_Assoc");
    EXPECT_EQ(text(wb.resultClass.getString()), "Test_Result");
    EXPECT_EQ(wb.role, "Antecedent");
    EXPECT_EQ(wb.resultRole, "Dependent");
    EXPECT_EQ(text(wb.instanceName.toString()), "Test_Class.Name=\"abc\"");

    // cimcli: class-level, empty AssocClass/ResultClass mean NULL.
    const Request cc = decodeRequest(cimcliRequest(
        intrinsic("AssociatorNames", param("ObjectName", "<CLASSNAME NAME=\"Test_Class\"/>") +
                                         param("AssocClass", "") + param("ResultClass", ""))));
    EXPECT_TRUE(cc.objectNameIsClass);
    EXPECT_EQ(text(cc.className.getString()), "Test_Class");
    EXPECT_TRUE(cc.assocClass.isNull());

    // wbemcli on a class path: a keyless INSTANCENAME.
    const Request keyless = decodeRequest(wbemcliRequest(
        intrinsic("AssociatorNames",
                  param("ObjectName", "<INSTANCENAME CLASSNAME=\"Test_Class\"></INSTANCENAME>"))));
    EXPECT_FALSE(keyless.objectNameIsClass);
    EXPECT_EQ(text(keyless.className.getString()), "Test_Class");

    // A reference key arrives as INSTANCEPATH (wbemcli, with the server as
    // HOST) or as a bare INSTANCENAME (cimcli); both name the same object.
    const std::string withHost = "<INSTANCEPATH><NAMESPACEPATH><HOST>127.0.0.1</HOST>" +
                                 std::string(rootCimv2) + "</NAMESPACEPATH>" + instanceNameAbc +
                                 "</INSTANCEPATH>";
    const auto assocName = [](const std::string& reference) {
        return "<INSTANCENAME CLASSNAME=\"Test_Assoc\"><KEYBINDING "
               "NAME=\"Antecedent\"><VALUE.REFERENCE>" +
               reference + "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>";
    };
    const Request fromWbemcli = decodeRequest(
        wbemcliRequest(intrinsic("References", param("ObjectName", assocName(withHost)))));
    const Request fromCimcli = decodeRequest(cimcliRequest(
        intrinsic("ReferenceNames", param("ObjectName", assocName(instanceNameAbc)))));
    EXPECT_EQ(fromWbemcli.instanceName, fromCimcli.instanceName);
    EXPECT_EQ(text(fromCimcli.instanceName.toString()),
              "Test_Assoc.Antecedent=\"root/cimv2:Test_Class.Name=\\\"abc\\\"\"");
}

TEST(DecodeIntrinsic, UnknownOperationsKeepTheirNameForNotSupported) {
    const Request request = decodeRequest(
        wbemcliRequest(intrinsic("ExecQuery", param("Whatever", "<VALUE>anything</VALUE>"))));
    EXPECT_EQ(request.methodName, "ExecQuery");
    EXPECT_EQ(request.nameSpace, "root/cimv2");
}

TEST(DecodeExtrinsic, WbemcliUntypedParametersOnAClassPath) {
    const Request request = decodeRequest(wbemcliRequest(
        "<METHODCALL NAME=\"DoIt\"><LOCALCLASSPATH><LOCALNAMESPACEPATH><NAMESPACE "
        "NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH><CLASSNAME "
        "NAME=\"Test_Class\"/></LOCALCLASSPATH><PARAMVALUE NAME=\"S\"><VALUE>hello "
        "world</VALUE></PARAMVALUE><PARAMVALUE "
        "NAME=\"N\"><VALUE>18446744073709551615</VALUE></PARAMVALUE><PARAMVALUE "
        "NAME=\"SA\"><VALUE.ARRAY><VALUE>a</VALUE><VALUE>b "
        "c</VALUE></VALUE.ARRAY></PARAMVALUE><PARAMVALUE "
        "NAME=\"R\"><VALUE.REFERENCE><INSTANCEPATH><NAMESPACEPATH><HOST>127.0.0.1</"
        "HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"></NAMESPACE><NAMESPACE "
        "NAME=\"cimv2\"></NAMESPACE></LOCALNAMESPACEPATH></NAMESPACEPATH><INSTANCENAME "
        "CLASSNAME=\"Test_Class\"><KEYBINDING NAME=\"Name\"><KEYVALUE "
        "VALUETYPE=\"string\">x</KEYVALUE></KEYBINDING></INSTANCENAME></INSTANCEPATH></"
        "VALUE.REFERENCE></PARAMVALUE><PARAMVALUE NAME=\"Nothing\"></PARAMVALUE></METHODCALL>"));
    EXPECT_TRUE(request.extrinsic);
    EXPECT_EQ(request.methodName, "DoIt");
    EXPECT_EQ(request.nameSpace, "root/cimv2");
    EXPECT_EQ(text(request.target.toString()), "Test_Class");
    ASSERT_EQ(request.parameters.size(), 5u);
    EXPECT_EQ(request.parameters[0].value.shape, RawValue::Shape::Scalar);
    EXPECT_EQ(request.parameters[0].value.texts.at(0), "hello world");
    EXPECT_TRUE(request.parameters[0].value.typeHint.empty());
    EXPECT_EQ(request.parameters[2].value.shape, RawValue::Shape::Array);
    EXPECT_EQ(request.parameters[2].value.texts, (std::vector<std::string>{"a", "b c"}));
    EXPECT_EQ(request.parameters[3].value.shape, RawValue::Shape::Reference);
    EXPECT_EQ(text(request.parameters[3].value.refs.at(0).toString()),
              "root/cimv2:Test_Class.Name=\"x\"");
    EXPECT_EQ(request.parameters[4].value.shape, RawValue::Shape::Null);
}

TEST(DecodeExtrinsic, CimcliTypedParametersAndEmbeddedInstanceOnAnInstance) {
    const Request request = decodeRequest(cimcliRequest(
        "<METHODCALL NAME=\"DoIt\">\n<LOCALINSTANCEPATH>\n" + std::string(rootCimv2) + "\n" +
        instanceNameAbc +
        "\n</LOCALINSTANCEPATH>\n"
        "<PARAMVALUE NAME=\"B\" PARAMTYPE=\"boolean\">\n<VALUE>TRUE</VALUE>\n</PARAMVALUE>\n"
        "<PARAMVALUE NAME=\"R\" PARAMTYPE=\"reference\"><VALUE.REFERENCE><INSTANCENAME "
        "CLASSNAME=\"Test_Class\"><KEYBINDING NAME=\"Name\"><KEYVALUE "
        "VALUETYPE=\"string\">x</KEYVALUE></KEYBINDING></INSTANCENAME></VALUE.REFERENCE></"
        "PARAMVALUE>\n"
        "<PARAMVALUE NAME=\"E\" PARAMTYPE=\"string\" EmbeddedObject=\"instance\" "
        "EMBEDDEDOBJECT=\"instance\">\n<VALUE>&lt;INSTANCE CLASSNAME=&quot;Test_Emb&quot; "
        "&gt;&#10;&lt;PROPERTY NAME=&quot;A&quot; &#32;TYPE=&quot;uint32&quot;&gt;&#10;&lt;"
        "VALUE&gt;1&lt;/VALUE&gt;&#10;&lt;/PROPERTY&gt;&#10;&lt;PROPERTY NAME=&quot;B&quot; "
        "TYPE=&quot;string&quot;&gt;&lt;VALUE&gt;x y&lt;/VALUE&gt;&lt;/"
        "PROPERTY&gt;&#10;&lt;/INSTANCE&gt;&#10;</VALUE>\n</PARAMVALUE>\n</METHODCALL>"));
    EXPECT_EQ(request.messageId, "1000");
    EXPECT_EQ(text(request.target.toString()), "Test_Class.Name=\"abc\"");
    ASSERT_EQ(request.parameters.size(), 3u);
    EXPECT_EQ(request.parameters[0].value.typeHint, "boolean");
    EXPECT_EQ(text(request.parameters[1].value.refs.at(0).toString()),
              "root/cimv2:Test_Class.Name=\"x\"");
    const RawParameter& embedded = request.parameters[2];
    ASSERT_EQ(embedded.value.shape, RawValue::Shape::Instance);
    const CIMValue value = convertParameter(embedded, Pegasus::CIMTYPE_INSTANCE, false);
    Pegasus::CIMInstance instance;
    value.get(instance);
    EXPECT_EQ(text(instance.getClassName().getString()), "Test_Emb");
    Pegasus::Uint32 a = 0;
    instance.getProperty(instance.findProperty("A")).getValue().get(a);
    EXPECT_EQ(a, 1u);
}

TEST(DecodeErrors, ProtocolFaultsAreHttpRefusals) {
    struct Case {
        std::string body;
        int status;
        std::string header;
    };
    const Case cases[] = {
        // wbemcli sends a typed '&' unescaped.
        {wbemcliRequest("<METHODCALL NAME=\"DoIt\"><PARAMVALUE NAME=\"S\"><VALUE>a<b&c</VALUE>"
                        "</PARAMVALUE></METHODCALL>"),
         400, "request-not-well-formed"},
        {"", 400, "request-not-well-formed"},
        {wbemcliRequest("<IMETHODCALL NAME=\"GetInstance\"></IMETHODCALL>"), 400,
         "request-not-valid"},
        {wbemcliRequest(intrinsic("GetInstance", param("InstanceName", "<CLASSNAME NAME=\"C\"/>"))),
         400, "request-not-valid"},
        {wbemcliRequest(std::string("<IMETHODCALL NAME=\"X\">") + rootCimv2 +
                        "\xC3\x28</IMETHODCALL>"),
         400, "request-not-valid"},
        {"<?xml version=\"1.0\"?><CIM CIMVERSION=\"3.0\" DTDVERSION=\"2.0\"></CIM>", 501,
         "unsupported-cim-version"},
        {"<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
         "PROTOCOLVERSION=\"2.0\"><SIMPLEREQ/></MESSAGE></CIM>",
         501, "unsupported-protocol-version"},
        {"<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
         "PROTOCOLVERSION=\"1.0\"><MULTIREQ></MULTIREQ></MESSAGE></CIM>",
         400, "header-mismatch"},
    };
    for (const Case& c : cases) {
        const auto error = decodeFailure(c.body);
        ASSERT_TRUE(error) << c.body;
        EXPECT_EQ(error->httpStatus(), c.status) << c.body;
        EXPECT_EQ(error->cimErrorHeader(), c.header) << c.body;
    }
    DecodeLimits small;
    small.maxBytes = 10;
    try {
        decodeRequest(wbemcliRequest(""), small);
        FAIL() << "accepted a body over the size limit";
    } catch (const RequestError& e) {
        EXPECT_EQ(e.httpStatus(), 413);
    }
}

TEST(DecodeErrors, BadParametersAreCimErrorsForTheRequest) {
    struct Case {
        std::string call;
        Pegasus::CIMStatusCode status;
        std::string mentions;
    };
    const Case cases[] = {
        {intrinsic("GetInstance", param("LocalOnly", "<VALUE>FALSE</VALUE>")),
         Pegasus::CIM_ERR_INVALID_PARAMETER, "InstanceName"},
        {intrinsic("GetInstance", param("InstanceName", instanceNameAbc) +
                                      param("LocalOnly", "<VALUE>yes</VALUE>")),
         Pegasus::CIM_ERR_INVALID_PARAMETER, "yes"},
        {intrinsic("EnumerateInstanceNames", param("ClassName", "<CLASSNAME NAME=\"A\"/>") +
                                                 param("classname", "<CLASSNAME NAME=\"B\"/>")),
         Pegasus::CIM_ERR_INVALID_PARAMETER, "twice"},
        {intrinsic("EnumerateInstanceNames", param("ClassName", "<CLASSNAME NAME=\"A\"/>") +
                                                 param("Role", "<VALUE>x</VALUE>")),
         Pegasus::CIM_ERR_INVALID_PARAMETER, "Role"},
        {intrinsic("GetInstance",
                   param("InstanceName", "<INSTANCENAME CLASSNAME=\"C\"><KEYBINDING "
                                         "NAME=\"K\"><KEYVALUE VALUETYPE=\"numeric\">12x</"
                                         "KEYVALUE></KEYBINDING></INSTANCENAME>")),
         Pegasus::CIM_ERR_INVALID_PARAMETER, "12x"},
        {"<IMETHODCALL NAME=\"EnumerateInstanceNames\"><LOCALNAMESPACEPATH><NAMESPACE "
         "NAME=\"my-ns\"/></LOCALNAMESPACEPATH>" +
             param("ClassName", "<CLASSNAME NAME=\"A\"/>") + "</IMETHODCALL>",
         Pegasus::CIM_ERR_INVALID_NAMESPACE, "my-ns"},
    };
    for (const Case& c : cases) {
        const auto error = decodeFailure(wbemcliRequest(c.call));
        ASSERT_TRUE(error) << c.call;
        EXPECT_EQ(error->httpStatus(), 0) << c.call;
        EXPECT_EQ(error->cimStatus(), c.status) << c.call;
        EXPECT_NE(std::string(error->what()).find(c.mentions), std::string::npos) << error->what();
        // The ERROR answer must repeat the request's id and name for cimcli.
        EXPECT_EQ(error->messageId(), "4711");
        const std::string answer = encodeError(*error);
        EXPECT_NE(answer.find("<MESSAGE ID=\"4711\""), std::string::npos) << answer;
        EXPECT_NE(answer.find("<IMETHODRESPONSE NAME=\"" + error->methodName() +
                              "\"><ERROR CODE=\"" + std::to_string(int(c.status)) + "\""),
                  std::string::npos)
            << answer;
    }
}
