#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

std::string text(const String& s) { return std::string(static_cast<const char*>(s.getCString())); }

CIMInstance makeDisk() {
    CIMInstance disk(CIMName("Vx_Disk"));
    disk.addProperty(CIMProperty(CIMName("Name"), CIMValue(String("d1"))));
    disk.addProperty(CIMProperty(CIMName("Size"), CIMValue(Uint64(100))));
    return disk;
}

CIMClass makeDiskClass() {
    CIMClass diskClass(CIMName("Vx_Disk"), CIMName("Vx_Element"));
    CIMProperty name(CIMName("Name"), CIMValue(CIMTYPE_STRING, false));
    name.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(true)));
    diskClass.addProperty(name);
    diskClass.addProperty(CIMProperty(CIMName("Size"), CIMValue(CIMTYPE_UINT64, false)));
    CIMProperty pool(CIMName("Pool"), CIMValue(CIMTYPE_UINT32, false));
    pool.addQualifier(CIMQualifier(CIMName("key"), CIMValue(true)));
    diskClass.addProperty(pool);
    return diskClass;
}

} // namespace

TEST(CIMInstance, PropertiesAreFoundWithoutCaseAndKeepTheirOrder) {
    CIMInstance disk = makeDisk();
    EXPECT_EQ(disk.findProperty(CIMName("size")), 1u);
    EXPECT_EQ(disk.findProperty(CIMName("Missing")), PEG_NOT_FOUND);
    EXPECT_THROW(disk.getProperty(PEG_NOT_FOUND), IndexOutOfBoundsException);
    EXPECT_THROW(disk.findProperty(""), InvalidNameException);

    try {
        disk.addProperty(CIMProperty(CIMName("NAME"), CIMValue(String("dup"))));
        FAIL() << "duplicate property accepted";
    } catch (const AlreadyExistsException& e) {
        EXPECT_EQ(text(e.getMessage()), "already exists: property \"NAME\"");
    }
    EXPECT_THROW(disk.addProperty(CIMProperty()), UninitializedObjectException);

    disk.removeProperty(0);
    EXPECT_EQ(disk.getPropertyCount(), 1u);
    EXPECT_EQ(text(disk.getProperty(0).getName().getString()), "Size");
    EXPECT_THROW(disk.removeProperty(1), IndexOutOfBoundsException);
}

TEST(CIMInstance, HandlesShareOneInstance) {
    CIMInstance a = makeDisk();
    CIMInstance b = a;
    b.addProperty(CIMProperty(CIMName("Extra"), CIMValue(true)));
    b.getProperty(0).setValue(CIMValue(String("renamed")));
    b.setPath(CIMObjectPath(String("Vx_Disk.Name=\"renamed\"")));
    EXPECT_EQ(a.getPropertyCount(), 3u);
    EXPECT_EQ(text(a.getProperty(0).getValue().toString()), "renamed");
    EXPECT_EQ(text(a.getPath().toString()), "Vx_Disk.Name=\"renamed\"");

    // The instance keeps the very property object it was given.
    CIMProperty kept(CIMName("Kept"), CIMValue(Uint8(1)));
    a.addProperty(kept);
    kept.setValue(CIMValue(Uint8(2)));
    EXPECT_EQ(text(b.getProperty(3).getValue().toString()), "2");

    CIMInstance clone = a.clone();
    clone.getProperty(0).setValue(CIMValue(String("clone")));
    clone.addProperty(CIMProperty(CIMName("Only"), CIMValue(true)));
    EXPECT_EQ(text(a.getProperty(0).getValue().toString()), "renamed");
    EXPECT_EQ(a.getPropertyCount(), 4u);
    EXPECT_EQ(text(clone.getPath().toString()), "Vx_Disk.Name=\"renamed\"");
}

TEST(CIMInstance, ArrayCopiesShareTheirElements) {
    Array<CIMInstance> first;
    first.append(makeDisk());
    Array<CIMInstance> second = first;
    second[0].addProperty(CIMProperty(CIMName("Extra"), CIMValue(true)));
    second.append(makeDisk());
    EXPECT_EQ(first[0].getPropertyCount(), 3u);
    EXPECT_EQ(first.size(), 1u);
}

TEST(CIMInstance, PathFollowsTheClassName) {
    CIMInstance instance(CIMName("My_Class"));
    EXPECT_EQ(text(instance.getPath().toString()), "My_Class");
    EXPECT_THROW(CIMInstance{CIMName()}, UninitializedObjectException);

    EXPECT_THROW(instance.setPath(CIMObjectPath()), UninitializedObjectException);
    EXPECT_THROW(instance.setPath(CIMObjectPath(String("Other.k=1"))), TypeMismatchException);
    instance.setPath(CIMObjectPath(String("//h1/root/cimv2:MY_CLASS.k=1")));
    EXPECT_EQ(text(instance.getClassName().getString()), "MY_CLASS");
    EXPECT_EQ(text(instance.getPath().getHost()), "h1");
}

// The path an instance is given reads back exactly, key for key, whatever
// the instance's properties hold, and later changes to either side stay on
// that side.
TEST(CIMInstance, PathKeysKeepTheirOwnTexts) {
    CIMInstance disk = makeDisk();
    disk.addProperty(CIMProperty(CIMName("Id"), CIMValue(String("D1"))));
    disk.addProperty(CIMProperty(CIMName("Ref"), CIMValue(CIMObjectPath("Vx_Pool.Name=\"p\""))));
    const String given = "//h/root/x:Vx_Disk.Id=\"d1\",Name=\"d1\",Ref=\"Vx_Pool.Name=\\\"p\\\"\","
                         "Size=\"100\",Spare=\"d1\"";
    CIMObjectPath path(given);
    disk.setPath(path);
    EXPECT_EQ(text(disk.getPath().toString()), text(given));
    EXPECT_EQ(text(path.toString()), text(given));

    disk.getProperty(disk.findProperty(CIMName("Name"))).setValue(CIMValue(String("d2")));
    EXPECT_EQ(text(disk.getPath().toString()), text(given));
    CIMObjectPath changed = disk.getPath();
    Array<CIMKeyBinding> keys = changed.getKeyBindings();
    keys[1].setValue("d3");
    changed.setKeyBindings(keys);
    disk.setPath(changed);
    String name;
    disk.getProperty(disk.findProperty(CIMName("Name"))).getValue().get(name);
    EXPECT_EQ(text(name), "d2");
    EXPECT_EQ(text(disk.getPath().getKeyBindings()[1].getValue()), "d3");
}

TEST(CIMInstance, UninitialisedHandleRefusesEverything) {
    CIMInstance empty;
    EXPECT_TRUE(empty.isUninitialized());
    EXPECT_THROW(empty.getClassName(), UninitializedObjectException);
    EXPECT_THROW(empty.getPropertyCount(), UninitializedObjectException);
    EXPECT_THROW(empty.addProperty(CIMProperty(CIMName("A"), CIMValue(true))),
                 UninitializedObjectException);
    EXPECT_THROW(makeDisk().identical(empty), UninitializedObjectException);
}

TEST(CIMInstance, IdenticalComparesContentInOrder) {
    CIMInstance a = makeDisk();
    CIMInstance b(CIMName("VX_DISK"));
    b.addProperty(CIMProperty(CIMName("Name"), CIMValue(String("d1"))));
    b.addProperty(CIMProperty(CIMName("Size"), CIMValue(Uint64(100))));
    EXPECT_TRUE(a.identical(b));
    b.getProperty(1).setValue(CIMValue(Uint64(101)));
    EXPECT_FALSE(a.identical(b));
    CIMInstance swapped(CIMName("Vx_Disk"));
    swapped.addProperty(CIMProperty(CIMName("Size"), CIMValue(Uint64(100))));
    swapped.addProperty(CIMProperty(CIMName("Name"), CIMValue(String("d1"))));
    EXPECT_FALSE(a.identical(swapped));
    EXPECT_FALSE(a.identical(CIMInstance(CIMName("Vx_Disk"))));
}

TEST(CIMInstance, BuildPathUsesTheClassKeys) {
    CIMInstance disk = makeDisk();
    disk.addProperty(CIMProperty(CIMName("pool"), CIMValue(Uint32(4))));
    CIMObjectPath path = disk.buildPath(makeDiskClass());
    EXPECT_EQ(text(path.toString()), "Vx_Disk.Name=\"d1\",Pool=4");
    EXPECT_EQ(path.getKeyBindings()[1].getType(), CIMKeyBinding::NUMERIC);
}

TEST(CIMInstance, InstanceFilterDropsWhatWasNotAskedFor) {
    CIMInstance disk = makeDisk();
    disk.addQualifier(CIMQualifier(CIMName("Description"), CIMValue(String("d"))));
    disk.getProperty(0).addQualifier(CIMQualifier(CIMName("Key"), CIMValue(true)));
    disk.getProperty(0).setClassOrigin(CIMName("Vx_Element"));

    CIMInstance everything = disk.clone();
    everything.instanceFilter(true, true, CIMPropertyList());
    EXPECT_TRUE(everything.identical(disk));

    Array<CIMName> names;
    names.append(CIMName("NAME"));
    disk.instanceFilter(false, false, CIMPropertyList(names));
    ASSERT_EQ(disk.getPropertyCount(), 1u);
    EXPECT_EQ(disk.getQualifierCount(), 0u);
    EXPECT_EQ(disk.getProperty(0).getQualifierCount(), 0u);
    EXPECT_TRUE(disk.getProperty(0).getClassOrigin().isNull());

    disk.instanceFilter(true, true, CIMPropertyList(Array<CIMName>()));
    EXPECT_EQ(disk.getPropertyCount(), 0u);
}

TEST(CIMObject, SharesStateWithInstancesAndClasses) {
    CIMInstance instance = makeDisk();
    CIMObject object(instance);
    EXPECT_TRUE(object.isInstance());
    EXPECT_FALSE(object.isClass());
    object.addProperty(CIMProperty(CIMName("ViaObject"), CIMValue(true)));
    EXPECT_EQ(instance.getPropertyCount(), 3u);

    CIMInstance back(object);
    back.removeProperty(2);
    EXPECT_EQ(object.getPropertyCount(), 2u);

    CIMObject classObject(makeDiskClass());
    EXPECT_TRUE(classObject.isClass());
    EXPECT_THROW(CIMInstance{classObject}, DynamicCastFailedException);
    EXPECT_THROW(CIMInstance{CIMObject()}, DynamicCastFailedException);
    CIMClass asClass(classObject);
    EXPECT_EQ(text(asClass.getSuperClassName().getString()), "Vx_Element");
    EXPECT_THROW(CIMClass{object}, DynamicCastFailedException);

    CIMObject clone = object.clone();
    clone.addProperty(CIMProperty(CIMName("CloneOnly"), CIMValue(true)));
    EXPECT_EQ(instance.getPropertyCount(), 2u);
    EXPECT_TRUE(clone.isInstance());
}

TEST(CIMObject, ToStringRendersClassesAndInstances) {
    CIMInstance instance = makeDisk();
    instance.addProperty(CIMProperty(CIMName("Owner"),
                                     CIMValue(CIMObjectPath(String("root/x:Vx_Pool.Id=3"))), 0,
                                     CIMName("Vx_Pool")));
    Array<Uint16> states;
    states.append(2);
    instance.addProperty(CIMProperty(CIMName("States"), CIMValue(states)));
    instance.addProperty(CIMProperty(CIMName("Unset"), CIMValue(CIMTYPE_STRING, false)));
    instance.addProperty(CIMProperty(CIMName("Ratio"), CIMValue(Real32(1.5f))));

    std::string xml = text(CIMObject(instance).toString());
    EXPECT_EQ(xml.rfind("<INSTANCE CLASSNAME=\"Vx_Disk\" >\n", 0), 0u) << xml;
    EXPECT_NE(xml.find("<PROPERTY.REFERENCE NAME=\"Owner\"  REFERENCECLASS=\"Vx_Pool\">"),
              std::string::npos)
        << xml;
    EXPECT_NE(xml.find("<LOCALINSTANCEPATH>"), std::string::npos) << xml;
    EXPECT_NE(xml.find("<KEYVALUE VALUETYPE=\"numeric\">3</KEYVALUE>"), std::string::npos);
    EXPECT_NE(xml.find("<PROPERTY.ARRAY NAME=\"States\"  TYPE=\"uint16\">\n<VALUE.ARRAY>\n"
                       "<VALUE>2</VALUE>\n</VALUE.ARRAY>\n</PROPERTY.ARRAY>"),
              std::string::npos)
        << xml;
    EXPECT_NE(xml.find("<PROPERTY NAME=\"Unset\"  TYPE=\"string\">\n</PROPERTY>"),
              std::string::npos)
        << xml;
    EXPECT_NE(xml.find("<VALUE>1.5000000e+00</VALUE>"), std::string::npos) << xml;

    CIMClass diskClass = makeDiskClass();
    CIMMethod method(CIMName("Rescan"), CIMTYPE_UINT32);
    method.addParameter(CIMParameter(CIMName("Force"), CIMTYPE_BOOLEAN));
    diskClass.addMethod(method);
    std::string classXml = text(CIMObject(diskClass).toString());
    EXPECT_EQ(classXml.rfind("<CLASS NAME=\"Vx_Disk\"  SUPERCLASS=\"Vx_Element\" >\n", 0), 0u)
        << classXml;
    EXPECT_NE(classXml.find("<QUALIFIER NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\" "
                            "TOSUBCLASS=\"false\">"),
              std::string::npos);
    EXPECT_NE(classXml.find("<METHOD NAME=\"Rescan\" TYPE=\"uint32\">"), std::string::npos);
    EXPECT_NE(classXml.find("<PARAMETER NAME=\"Force\" TYPE=\"boolean\">"), std::string::npos);
}

TEST(CIMClass, KeysMethodsAndClassQualifiers) {
    CIMClass diskClass = makeDiskClass();
    Array<CIMName> keys;
    diskClass.getKeyNames(keys);
    ASSERT_EQ(keys.size(), 2u);
    EXPECT_EQ(text(keys[0].getString()), "Name");
    EXPECT_EQ(text(keys[1].getString()), "Pool");
    EXPECT_TRUE(diskClass.hasKeys());
    EXPECT_FALSE(diskClass.isAssociation());

    diskClass.addQualifier(CIMQualifier(CIMName("Association"), CIMValue(true)));
    EXPECT_TRUE(diskClass.isAssociation());

    CIMMethod method(CIMName("Rescan"), CIMTYPE_UINT32);
    method.addParameter(CIMParameter(CIMName("Force"), CIMTYPE_BOOLEAN));
    EXPECT_THROW(method.addParameter(CIMParameter(CIMName("force"), CIMTYPE_STRING)),
                 AlreadyExistsException);
    diskClass.addMethod(method);
    EXPECT_EQ(diskClass.findMethod(CIMName("RESCAN")), 0u);
    CIMConstClass view = diskClass;
    EXPECT_EQ(view.getMethod(0).getParameterCount(), 1u);
    EXPECT_EQ(view.getMethod(0).getParameter(0).getType(), CIMTYPE_BOOLEAN);

    CIMClass copy = diskClass.clone();
    copy.getMethod(0).addParameter(CIMParameter(CIMName("Depth"), CIMTYPE_UINT8));
    EXPECT_EQ(diskClass.getMethod(0).getParameterCount(), 1u);
    EXPECT_FALSE(copy.identical(diskClass));
    EXPECT_TRUE(diskClass.clone().identical(diskClass));
}

TEST(CIMException, CarriesCodeMessageAndOwnCopiesOfInstances) {
    CIMException plain;
    EXPECT_EQ(plain.getCode(), CIM_ERR_SUCCESS);
    EXPECT_EQ(text(plain.getMessage()), "");

    CIMInstance error = makeDisk();
    CIMException withInstance(CIM_ERR_NOT_FOUND, "no disk d1", error);
    EXPECT_EQ(withInstance.getCode(), CIM_ERR_NOT_FOUND);
    EXPECT_EQ(text(withInstance.getMessage()), "no disk d1");

    CIMException copy = withInstance;
    Exception& base = copy;
    Exception sliced = base;
    EXPECT_EQ(text(sliced.getMessage()), "no disk d1");
    copy = CIMException(CIM_ERR_FAILED, "other");
    EXPECT_EQ(copy.getCode(), CIM_ERR_FAILED);
    EXPECT_EQ(withInstance.getCode(), CIM_ERR_NOT_FOUND);

    try {
        throw CIMException(CIM_ERR_ACCESS_DENIED, "denied", Array<CIMInstance>(1, error));
    } catch (const Exception& e) {
        const CIMException* cimError = dynamic_cast<const CIMException*>(&e);
        ASSERT_NE(cimError, nullptr);
        EXPECT_EQ(cimError->getCode(), CIM_ERR_ACCESS_DENIED);
    }
}
