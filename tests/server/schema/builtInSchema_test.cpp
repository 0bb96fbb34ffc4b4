// The schema compiled into the server against the provider it describes:
// every class the provider names is declared, and each registration fits
// the class it names.
#include <vexa/schema/SchemaRepository.h>

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "providerClassNames.h"

PEGASUS_USING_PEGASUS;
using vexa::schema::SchemaRepository;

namespace {

const char* const methodClass = "KOR_VEXA_ClusterConfigurationService";

// Named in the provider's class list but never built or served by it, so
// the schema has nothing to say about them.
const std::set<std::string> namedOnly = {
    "KOR_VEXA_Junction", "KOR_VEXA_Fileset_ACL", "KOR_VEXA_AssociatedFilesetJunction",
    "KOR_VEXA_AssociatedFileSystemJunction", "KOR_VEXA_AssociatedFilesetACL"};

// Published as the CIM schema defines them: OpenPegasus has them already,
// and vexa-cimserver takes them from its superclass file.
const std::set<std::string> cimClasses = {"CIM_RegisteredProfile", "CIM_ObjectManager",
                                          "CIM_ComputerSystem", "CIM_ElementConformsToProfile"};

std::string text(const CIMInstance& instance, const char* property) {
    Uint32 index = instance.findProperty(CIMName(property));
    if (index == PEG_NOT_FOUND) {
        return "<missing>";
    }
    String value;
    instance.getProperty(index).getValue().get(value);
    return std::string(value.getCString());
}

TEST(BuiltInSchema, DeclaresEveryClassTheProviderNames) {
    SchemaRepository schema = SchemaRepository::builtIn();
    std::vector<std::string> names = providerClassNames();
    ASSERT_GE(names.size(), 60u) << "could not read " << VEXA_PROVIDER_CLASS_NAMES;
    for (const std::string& name : names) {
        bool declared = schema.findClass(CIMName(name.c_str())) != nullptr;
        EXPECT_EQ(declared, namedOnly.count(name) == 0) << name;
    }
    const CIMClass* service = schema.findClass(CIMName(methodClass));
    ASSERT_NE(service, nullptr);
    for (const char* method :
         {"ModifyNode", "CreateFileset", "DeleteFileset", "EditFileset", "EditQuota", "LinkFileset",
          "UnlinkFileset", "ChangeOwnerAndOrGroup", "ChangeFilesetJnxnOwnership",
          "ChangeFilesetJnxnACL", "ModifyCorvanePhysicalDisk", "ModifyCorvaneVirtualDisk",
          "ModifyCorvaneDeclusteredArray"}) {
        Uint32 index = service->findMethod(CIMName(method));
        ASSERT_NE(index, PEG_NOT_FOUND) << method;
        EXPECT_EQ(service->getMethod(index).getType(), CIMTYPE_UINT32) << method;
    }
}

TEST(BuiltInSchema, IsConsistentAsOpenPegasusWouldLoadIt) {
    SchemaRepository schema = SchemaRepository::builtIn();
    Array<CIMName> all = schema.subclassNames(CIMName(), true);
    for (Uint32 n = 0; n < all.size(); n++) {
        const CIMName& name = all[n];
        const CIMClass* cimClass = schema.findClass(name);
        std::string className(name.getString().getCString());
        bool ours = className.rfind("CIM_", 0) != 0;
        if (!ours) {
            continue;
        }
        // Ours derive from a CIM class; only the CIM classes published as
        // they are come from the CIM schema itself.
        EXPECT_FALSE(cimClass->getSuperClassName().isNull()) << className;
        Array<CIMName> keys;
        cimClass->getKeyNames(keys);
        bool indication = cimClass->findQualifier(CIMName("Indication")) != PEG_NOT_FOUND;
        EXPECT_TRUE(indication || cimClass->isAbstract() || keys.size() > 0)
            << className << " has no keys";
        if (cimClass->isAssociation()) {
            int references = 0;
            for (Uint32 i = 0; i < cimClass->getPropertyCount(); i++) {
                references += cimClass->getProperty(i).getType() == CIMTYPE_REFERENCE ? 1 : 0;
            }
            EXPECT_EQ(references, 2) << className;
        }
    }
    // The deliberate declarations survive.
    const CIMClass* userQuota = schema.findClass(CIMName("KOR_VEXA_AssociatedUserQuota"));
    ASSERT_NE(userQuota, nullptr);
    EXPECT_EQ(userQuota->getProperty(userQuota->findProperty(CIMName("Antecedent")))
                  .getReferenceClassName(),
              CIMName("KOR_VEXA_Group"));
    EXPECT_TRUE(schema.isA(CIMName("KOR_VEXA_Cluster"), CIMName("CIM_ComputerSystem")));
    EXPECT_TRUE(schema.isA(CIMName("KOR_VEXA_NSD"), CIMName("CIM_LogicalDevice")));
    EXPECT_TRUE(schema.isA(CIMName("KOR_VEXA_MountIndication"), CIMName("CIM_Indication")));
}

TEST(BuiltInSchema, TheSchemaFilesOnDiskAreTheOnesBuiltIn) {
    SchemaRepository fromDisk;
    fromDisk.loadFile(std::string(VEXA_MOF_DIR) + "/server/CIM_Superclasses.mof");
    fromDisk.loadFile(std::string(VEXA_MOF_DIR) + "/VexaProvider.mof");
    SchemaRepository builtIn = SchemaRepository::builtIn();
    ASSERT_EQ(fromDisk.classCount(), builtIn.classCount());
    Array<CIMName> all = builtIn.subclassNames(CIMName(), true);
    for (Uint32 n = 0; n < all.size(); n++) {
        const CIMName& name = all[n];
        const CIMClass* disk = fromDisk.findClass(name);
        ASSERT_NE(disk, nullptr);
        EXPECT_TRUE(disk->identical(*builtIn.findClass(name))) << name.getString().getCString();
    }
}

TEST(Registration, RegistersExactlyTheClassesTheProviderServes) {
    SchemaRepository registration;
    registration.loadFile(std::string(VEXA_MOF_DIR) + "/VexaProviderRegistration.mof");
    SchemaRepository schema = SchemaRepository::builtIn();
    const std::vector<vexa::schema::MofInstance>& instances = registration.instances();
    ASSERT_GE(instances.size(), 3u);

    const CIMInstance& module = instances[0].instance;
    ASSERT_EQ(module.getClassName(), CIMName("PG_ProviderModule"));
    EXPECT_EQ(text(module, "Location"), "VexaProvider");
    EXPECT_EQ(text(module, "InterfaceType"), "C++Default");
    std::string moduleName = text(module, "Name");
    const CIMInstance& provider = instances[1].instance;
    ASSERT_EQ(provider.getClassName(), CIMName("PG_Provider"));
    EXPECT_EQ(text(provider, "ProviderModuleName"), moduleName);
    EXPECT_EQ(text(provider, "Name"), "VexaProvider");

    const std::vector<std::string> named = providerClassNames();
    std::map<std::string, std::set<Uint16>> registered;
    std::set<std::string> capabilityIds;
    for (size_t i = 2; i < instances.size(); i++) {
        const CIMInstance& capability = instances[i].instance;
        std::string where = instances[i].source + ":" + std::to_string(instances[i].line);
        ASSERT_EQ(capability.getClassName(), CIMName("PG_ProviderCapabilities")) << where;
        EXPECT_EQ(text(capability, "ProviderModuleName"), moduleName) << where;
        EXPECT_EQ(text(capability, "ProviderName"), "VexaProvider") << where;
        EXPECT_TRUE(capabilityIds.insert(text(capability, "CapabilityID")).second) << where;
        std::string className = text(capability, "ClassName");
        EXPECT_TRUE(className == methodClass ||
                    std::find(named.begin(), named.end(), className) != named.end())
            << className << " is registered but the provider never names it";
        EXPECT_EQ(registered.count(className), 0u) << className << " registered twice";
        Array<String> namespaces;
        capability.getProperty(capability.findProperty(CIMName("Namespaces")))
            .getValue()
            .get(namespaces);
        ASSERT_EQ(namespaces.size(), 1u) << where;
        EXPECT_EQ(namespaces[0], String("root/cimv2")) << where;
        Array<Uint64> types;
        capability.getProperty(capability.findProperty(CIMName("ProviderType")))
            .getValue()
            .get(types);
        for (Uint32 t = 0; t < types.size(); t++) {
            registered[className].insert(static_cast<Uint16>(types[t]));
        }

        // Each capability fits the class it names.
        const CIMClass* cimClass = schema.findClass(CIMName(className.c_str()));
        ASSERT_NE(cimClass, nullptr) << className << " is registered but not declared";
        const std::set<Uint16>& kinds = registered[className];
        EXPECT_EQ(kinds.count(3) == 1, cimClass->isAssociation()) << className;
        EXPECT_EQ(kinds.count(4) == 1,
                  cimClass->findQualifier(CIMName("Indication")) != PEG_NOT_FOUND)
            << className;
        EXPECT_EQ(kinds.count(5) == 1, cimClass->getMethodCount() > 0) << className;
    }
    // Every indication the provider names is registered, and so are its
    // methods. Which classes take instance and association operations is
    // checked against the provider's own answers in providerConformance_test.
    for (const std::string& name : named) {
        bool indication =
            (name.find("Indication") != std::string::npos && name != "KOR_VEXA_IndicationFilter") ||
            name.find("InstModification") != std::string::npos;
        EXPECT_EQ(registered[name].count(4), indication ? 1u : 0u) << name;
    }
    EXPECT_EQ(registered[methodClass], std::set<Uint16>{5});
}

} // namespace
