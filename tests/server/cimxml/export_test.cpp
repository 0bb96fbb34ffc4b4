#include "CodecTestSupport.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMProperty.h>

using namespace cimxml_test;
using namespace vexa::cimxml;
using namespace Pegasus;

namespace {

CIMInstance modification() {
    CIMInstance before(CIMName("Test_Class"));
    before.addProperty(CIMProperty(CIMName("Name"), CIMValue(String("abc"))));
    before.addProperty(CIMProperty(CIMName("Enabled"), CIMValue(Boolean(true))));
    CIMInstance after = before.clone();
    after.getProperty(after.findProperty("Enabled")).setValue(CIMValue(Boolean(false)));
    after.addProperty(CIMProperty(CIMName("Note"), CIMValue(String("R&D <lab>"))));

    CIMInstance indication(CIMName("CIM_InstModification"));
    indication.addProperty(
        CIMProperty(CIMName("IndicationIdentifier"), CIMValue(String("srv1:1"))));
    indication.addProperty(CIMProperty(CIMName("IndicationTime"),
                                       CIMValue(CIMDateTime(String("20240102030405.000000+000")))));
    indication.addProperty(CIMProperty(CIMName("PerceivedSeverity"), CIMValue(Uint16(2))));
    indication.addProperty(CIMProperty(CIMName("SequenceNumber"), CIMValue(Sint64(-5))));
    indication.addProperty(
        CIMProperty(CIMName("CorrelatedIndications"), CIMValue(CIMTYPE_STRING, true)));
    indication.addProperty(CIMProperty(CIMName("OtherSeverity"), CIMValue(CIMTYPE_STRING, false)));
    indication.addProperty(CIMProperty(CIMName("SourceInstanceModelPath"),
                                       CIMValue(String("root/cimv2:Test_Class.Name=\"abc\""))));
    indication.addProperty(CIMProperty(CIMName("SourceInstance"), CIMValue(CIMObject(after))));
    indication.addProperty(CIMProperty(CIMName("PreviousInstance"), CIMValue(CIMObject(before))));
    indication.addProperty(
        CIMProperty(CIMName("Subject"),
                    CIMValue(CIMObjectPath(String("//srv1/root/cimv2:Test_Class.Name=\"abc\""))), 0,
                    CIMName("Test_Class")));
    return indication;
}

} // namespace

TEST(ExportIndication, RoundTripKeepsEveryValueAndEmbeddedInstance) {
    const CIMInstance original = modification();
    const std::string body = encodeExportIndication("77", original);
    EXPECT_NE(body.find("<SIMPLEEXPREQ><EXPMETHODCALL NAME=\"ExportIndication\"><EXPPARAMVALUE "
                        "NAME=\"NewIndication\"><INSTANCE CLASSNAME=\"CIM_InstModification\">"),
              std::string::npos);
    EXPECT_NE(body.find("R&amp;amp;D &amp;lt;lab&amp;gt;"), std::string::npos);

    const ExportRequest decoded = decodeExportIndication(body);
    EXPECT_EQ(decoded.messageId, "77");
    EXPECT_TRUE(decoded.indication.identical(original)) << body;
}

TEST(ExportIndication, ReadsTheLayoutOtherSendersUseAndRefusesOtherCalls) {
    const auto exportBody = [](const std::string& call) {
        return "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n<CIM CIMVERSION=\"2.0\" "
               "DTDVERSION=\"2.0\">\n<MESSAGE ID=\"1000\" PROTOCOLVERSION=\"1.0\">\n"
               "<SIMPLEEXPREQ>\n" +
               call + "\n</SIMPLEEXPREQ>\n</MESSAGE>\n</CIM>\n";
    };
    const std::string indication =
        "<EXPPARAMVALUE NAME=\"NewIndication\">\n<INSTANCE CLASSNAME=\"My_IndicationClass\" >\n"
        "<PROPERTY NAME=\"DeviceName\"  TYPE=\"string\">\n<VALUE>Disk</VALUE>\n</PROPERTY>\n"
        "</INSTANCE>\n</EXPPARAMVALUE>";
    const ExportRequest decoded = decodeExportIndication(exportBody(
        "<EXPMETHODCALL NAME=\"ExportIndication\">\n" + indication + "\n</EXPMETHODCALL>"));
    EXPECT_EQ(decoded.messageId, "1000");
    String device;
    decoded.indication.getProperty(decoded.indication.findProperty("DeviceName"))
        .getValue()
        .get(device);
    EXPECT_EQ(text(device), "Disk");

    const auto failure = [&](const std::string& call) -> std::pair<int, int> {
        try {
            decodeExportIndication(exportBody(call));
        } catch (const RequestError& e) {
            return {e.httpStatus(), int(e.cimStatus())};
        }
        return {-1, -1};
    };
    EXPECT_EQ(failure("<EXPMETHODCALL NAME=\"Other\">" + indication + "</EXPMETHODCALL>"),
              std::make_pair(0, int(CIM_ERR_NOT_SUPPORTED)));
    EXPECT_EQ(failure("<EXPMETHODCALL NAME=\"ExportIndication\"></EXPMETHODCALL>"),
              std::make_pair(0, int(CIM_ERR_INVALID_PARAMETER)));
    EXPECT_EQ(failure("<EXPMETHODCALL NAME=\"ExportIndication\"><EXPPARAMVALUE "
                      "NAME=\"NewIndication\"><CLASS NAME=\"X\"></CLASS></EXPPARAMVALUE>"
                      "</EXPMETHODCALL>")
                  .first,
              400);
}

TEST(ExportResponse, OnlyAnAnswerWithoutErrorIsADelivery) {
    const ExportResponse ok = decodeExportResponse(encodeExportResponse("77"));
    EXPECT_TRUE(ok.delivered);
    EXPECT_EQ(ok.messageId, "77");

    const ExportResponse refused =
        decodeExportResponse(encodeExportError("77", CIM_ERR_NOT_SUPPORTED, "no consumer"));
    EXPECT_FALSE(refused.delivered);
    EXPECT_EQ(refused.status, CIM_ERR_NOT_SUPPORTED);
    EXPECT_EQ(refused.description, "no consumer");

    // Listeners also answer with a self-closing element or an empty IRETURNVALUE.
    for (const char* answer : {"<EXPMETHODRESPONSE NAME=\"ExportIndication\"/>",
                               "<EXPMETHODRESPONSE NAME=\"ExportIndication\">\n<IRETURNVALUE>"
                               "</IRETURNVALUE>\n</EXPMETHODRESPONSE>"}) {
        const ExportResponse other = decodeExportResponse(
            std::string("<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n<CIM CIMVERSION=\"2.0\" "
                        "DTDVERSION=\"2.0\">\n<MESSAGE ID=\"77\" PROTOCOLVERSION=\"1.0\">\n"
                        "<SIMPLEEXPRSP>\n") +
            answer + "\n</SIMPLEEXPRSP>\n</MESSAGE>\n</CIM>\n");
        EXPECT_TRUE(other.delivered) << answer << ": " << other.description;
    }

    for (const char* garbage :
         {"", "<html>busy</html>",
          "<?xml version=\"1.0\"?><CIM "
          "CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
          "PROTOCOLVERSION=\"1.0\"><SIMPLERSP></SIMPLERSP></MESSAGE></CIM>"}) {
        const ExportResponse failed = decodeExportResponse(garbage);
        EXPECT_FALSE(failed.delivered) << garbage;
        EXPECT_EQ(failed.status, CIM_ERR_FAILED);
        EXPECT_FALSE(failed.description.empty());
    }
}
