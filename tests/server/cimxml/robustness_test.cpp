// Hostile and broken input: the decoders either answer or throw
// RequestError, whatever arrives. Nothing else may escape, nothing may
// crash or recurse without bound.
#include "CodecTestSupport.h"

#include <random>

using namespace cimxml_test;
using namespace vexa::cimxml;

namespace {

const std::string seedRequests[] = {
    wbemcliRequest(
        std::string("<IMETHODCALL NAME=\"GetInstance\">") + rootCimv2 +
        "<IPARAMVALUE NAME=\"LocalOnly\"><VALUE>FALSE</VALUE></IPARAMVALUE><IPARAMVALUE "
        "NAME=\"PropertyList\"><VALUE.ARRAY><VALUE>A</VALUE></VALUE.ARRAY></IPARAMVALUE>"
        "<IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME CLASSNAME=\"Test_Assoc\"><KEYBINDING "
        "NAME=\"Num\"><KEYVALUE VALUETYPE=\"numeric\">5</KEYVALUE></KEYBINDING><KEYBINDING "
        "NAME=\"Ref\"><VALUE.REFERENCE><INSTANCEPATH><NAMESPACEPATH><HOST>h</HOST>" +
        rootCimv2 +
        "</NAMESPACEPATH><INSTANCENAME CLASSNAME=\"C\"><KEYBINDING NAME=\"Flag\"><KEYVALUE "
        "VALUETYPE=\"boolean\">true</KEYVALUE></KEYBINDING></INSTANCENAME></INSTANCEPATH>"
        "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME></IPARAMVALUE></IMETHODCALL>"),
    cimcliRequest(
        std::string("<METHODCALL NAME=\"DoIt\"><LOCALINSTANCEPATH>") + rootCimv2 +
        "<INSTANCENAME CLASSNAME=\"C\"><KEYBINDING NAME=\"K\"><KEYVALUE>v</KEYVALUE>"
        "</KEYBINDING></INSTANCENAME></LOCALINSTANCEPATH>"
        "<PARAMVALUE NAME=\"N\" PARAMTYPE=\"uint32\"><VALUE>7</VALUE></PARAMVALUE>"
        "<PARAMVALUE NAME=\"SA\"><VALUE.ARRAY><VALUE>a</VALUE><VALUE>b</VALUE></VALUE.ARRAY>"
        "</PARAMVALUE><PARAMVALUE NAME=\"RA\"><VALUE.REFARRAY><VALUE.REFERENCE><CLASSNAME "
        "NAME=\"C\"/></VALUE.REFERENCE></VALUE.REFARRAY></PARAMVALUE>"
        "<PARAMVALUE NAME=\"E\" EmbeddedObject=\"instance\"><VALUE>&lt;INSTANCE "
        "CLASSNAME=&quot;E&quot;&gt;&lt;PROPERTY NAME=&quot;A&quot; "
        "TYPE=&quot;uint32&quot;&gt;&lt;VALUE&gt;1&lt;/VALUE&gt;&lt;/PROPERTY&gt;&lt;/"
        "INSTANCE&gt;</VALUE></PARAMVALUE></METHODCALL>"),
};

// Runs `decode` and reports anything but success or RequestError.
template <class Decode>
void expectOnlyRequestErrors(const std::string& input, Decode&& decode) {
    try {
        decode(input);
    } catch (const RequestError&) {
    } catch (const std::exception& e) {
        ADD_FAILURE() << "threw " << e.what() << " for input of " << input.size() << " bytes:\n"
                      << input;
    } catch (...) {
        ADD_FAILURE() << "threw a non-standard exception for:\n" << input;
    }
}

// Decodes a request and converts each parameter to several declared types,
// as the host would.
void decodeAndConvert(const std::string& body) {
    const Request request = decodeRequest(body);
    for (const RawParameter& parameter : request.parameters) {
        for (Pegasus::CIMType type :
             {Pegasus::CIMTYPE_STRING, Pegasus::CIMTYPE_UINT32, Pegasus::CIMTYPE_REFERENCE,
              Pegasus::CIMTYPE_INSTANCE, Pegasus::CIMTYPE_DATETIME}) {
            for (bool isArray : {false, true}) {
                try {
                    convertParameter(parameter, type, isArray);
                } catch (const RequestError&) {
                }
            }
        }
    }
}

std::string nested(const std::string& open, const std::string& close, size_t depth) {
    std::string out;
    for (size_t i = 0; i < depth; i++)
        out += open;
    for (size_t i = 0; i < depth; i++)
        out += close;
    return out;
}

} // namespace

TEST(DecodeRobustness, EveryTruncationOfValidRequests) {
    for (const std::string& seed : seedRequests) {
        ASSERT_NO_THROW(decodeAndConvert(seed)) << seed;
        for (size_t length = 0; length < seed.size(); length++)
            expectOnlyRequestErrors(seed.substr(0, length), decodeAndConvert);
    }
}

TEST(DecodeRobustness, RandomByteChanges) {
    std::mt19937 random(20240102);
    const char interesting[] = {'<', '>', '&', '"', '/', '=', '\0', '\xC3', '\xFF', ' ', ';', '#'};
    for (const std::string& seed : seedRequests) {
        for (int round = 0; round < 3000; round++) {
            std::string mutated = seed;
            const int changes = 1 + static_cast<int>(random() % 4);
            for (int c = 0; c < changes; c++) {
                const size_t at = random() % mutated.size();
                switch (random() % 3) {
                case 0:
                    mutated[at] = static_cast<char>(random() % 256);
                    break;
                case 1:
                    mutated[at] = interesting[random() % sizeof interesting];
                    break;
                default:
                    mutated.erase(at, 1 + random() % 8);
                    break;
                }
                if (mutated.empty())
                    break;
            }
            expectOnlyRequestErrors(mutated, decodeAndConvert);
        }
    }
}

TEST(DecodeRobustness, DeepNestingIsRefusedWithoutRecursion) {
    const std::string deepElements = wbemcliRequest(nested("<a>", "</a>", 200000));
    const std::string deepReferences = wbemcliRequest(
        std::string("<IMETHODCALL NAME=\"GetInstance\">") + rootCimv2 +
        "<IPARAMVALUE NAME=\"InstanceName\">" +
        nested("<INSTANCENAME CLASSNAME=\"C\"><KEYBINDING NAME=\"K\"><VALUE.REFERENCE>",
               "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>", 5000) +
        "</IPARAMVALUE></IMETHODCALL>");
    for (const std::string& body : {deepElements, deepReferences}) {
        const auto error = decodeFailure(body);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->httpStatus(), 400);
        EXPECT_NE(std::string(error->what()).find("nested"), std::string::npos) << error->what();
    }

    // Instances embedded in instances, each level escaped once more: the
    // depth budget is shared by all levels.
    std::string embedded = "<INSTANCE CLASSNAME=\"E\"></INSTANCE>";
    for (int level = 0; level < 30; level++) {
        std::string escaped;
        for (char c : embedded)
            escaped += c == '<'   ? "&lt;"
                       : c == '>' ? "&gt;"
                       : c == '&' ? "&amp;"
                       : c == '"' ? "&quot;"
                                  : std::string(1, c);
        embedded = "<INSTANCE CLASSNAME=\"E\"><PROPERTY NAME=\"P\" TYPE=\"string\" "
                   "EmbeddedObject=\"instance\"><VALUE>" +
                   escaped + "</VALUE></PROPERTY></INSTANCE>";
        if (embedded.size() > 2000000)
            break;
    }
    RawParameter parameter;
    parameter.name = "E";
    parameter.value.shape = RawValue::Shape::Instance;
    parameter.value.embeddedXml = embedded;
    try {
        convertParameter(parameter, Pegasus::CIMTYPE_INSTANCE, false);
        FAIL() << "accepted instances embedded beyond the depth limit";
    } catch (const RequestError& e) {
        EXPECT_EQ(e.cimStatus(), Pegasus::CIM_ERR_INVALID_PARAMETER);
    }
}

TEST(DecodeRobustness, ExportDecoderSurvivesTheSameTreatment) {
    Pegasus::CIMInstance indication(Pegasus::CIMName("Test_Alert"));
    Pegasus::CIMInstance source(Pegasus::CIMName("Test_Class"));
    source.addProperty(
        Pegasus::CIMProperty(Pegasus::CIMName("Note"), Pegasus::CIMValue(Pegasus::String("R&D"))));
    indication.addProperty(Pegasus::CIMProperty(Pegasus::CIMName("SourceInstance"),
                                                Pegasus::CIMValue(Pegasus::CIMObject(source))));
    const std::string seed = encodeExportIndication("1", indication);
    const auto decodeBoth = [](const std::string& body) {
        decodeExportResponse(body);
        decodeExportIndication(body);
    };
    for (size_t length = 0; length < seed.size(); length++)
        expectOnlyRequestErrors(seed.substr(0, length), decodeBoth);
    std::mt19937 random(7);
    for (int round = 0; round < 2000; round++) {
        std::string mutated = seed;
        mutated[random() % mutated.size()] = static_cast<char>(random() % 256);
        expectOnlyRequestErrors(mutated, decodeBoth);
    }
}
