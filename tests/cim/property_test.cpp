#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

std::string text(const String& s) { return std::string(static_cast<const char*>(s.getCString())); }

} // namespace

TEST(CIMProperty, ConstructorRejectsInconsistentDeclarations) {
    EXPECT_THROW(CIMProperty(CIMName(), CIMValue(Uint8(1))), UninitializedObjectException);

    Array<Uint16> three(3);
    EXPECT_NO_THROW(CIMProperty(CIMName("A"), CIMValue(three), 3));
    EXPECT_THROW(CIMProperty(CIMName("A"), CIMValue(three), 2), TypeMismatchException);
    EXPECT_THROW(CIMProperty(CIMName("A"), CIMValue(Uint16(1)), 1), TypeMismatchException);

    Array<CIMObjectPath> paths(1);
    EXPECT_THROW(CIMProperty(CIMName("R"), CIMValue(paths)), TypeMismatchException);

    EXPECT_THROW(CIMProperty(CIMName("R"), CIMValue(String("x")), 0, CIMName("C")),
                 TypeMismatchException);
    CIMProperty reference(CIMName("R"), CIMValue(CIMObjectPath(String("C.k=1"))), 0, CIMName("C"));
    EXPECT_EQ(reference.getType(), CIMTYPE_REFERENCE);
    EXPECT_EQ(text(reference.getReferenceClassName().getString()), "C");
}

TEST(CIMProperty, SetValueKeepsTheTypeFixed) {
    CIMProperty born(CIMName("Flag"), CIMValue());
    EXPECT_THROW(born.setValue(CIMValue(String("x"))), TypeMismatchException);
    born.setValue(CIMValue(true));
    EXPECT_EQ(text(born.getValue().toString()), "TRUE");

    CIMProperty name(CIMName("Name"), CIMValue(CIMTYPE_STRING, false));
    name.setValue(CIMValue(String("abc")));
    name.setValue(CIMValue(CIMTYPE_STRING, false));
    EXPECT_TRUE(name.getValue().isNull());
    EXPECT_THROW(name.setValue(CIMValue(Array<String>())), TypeMismatchException);
    EXPECT_THROW(name.setValue(CIMValue(CIMTYPE_UINT32, false)), TypeMismatchException);
}

TEST(CIMProperty, CopiesShareAndClonesDoNot) {
    CIMProperty original(CIMName("Size"), CIMValue(Uint64(1)));
    CIMProperty copy = original;
    copy.setValue(CIMValue(Uint64(2)));
    copy.addQualifier(CIMQualifier(CIMName("Units"), CIMValue(String("bytes"))));
    EXPECT_EQ(text(original.getValue().toString()), "2");
    EXPECT_EQ(original.getQualifierCount(), 1u);

    CIMProperty clone = original.clone();
    clone.setValue(CIMValue(Uint64(3)));
    clone.getQualifier(0).setValue(CIMValue(String("blocks")));
    EXPECT_EQ(text(original.getValue().toString()), "2");
    EXPECT_EQ(text(original.getQualifier(0).getValue().toString()), "bytes");
    EXPECT_FALSE(clone.identical(original));
    EXPECT_TRUE(original.clone().identical(original));

    CIMConstProperty view = original;
    original.setPropagated(true);
    EXPECT_TRUE(view.getPropagated());
}

TEST(CIMProperty, UninitialisedHandleRefusesEverything) {
    CIMProperty empty;
    EXPECT_TRUE(empty.isUninitialized());
    EXPECT_THROW(empty.getName(), UninitializedObjectException);
    EXPECT_THROW(empty.getValue(), UninitializedObjectException);
    EXPECT_THROW(empty.setValue(CIMValue(true)), UninitializedObjectException);
    EXPECT_THROW(empty.getQualifierCount(), UninitializedObjectException);
    try {
        empty.getType();
        FAIL();
    } catch (const UninitializedObjectException& e) {
        EXPECT_EQ(text(e.getMessage()), "uninitialized object");
    }
}

TEST(CIMProperty, NameIsFixedWhileInsideAnInstance) {
    CIMProperty property(CIMName("Old"), CIMValue(Uint8(1)));
    property.setName(CIMName("Renamed"));
    CIMInstance instance(CIMName("C"));
    instance.addProperty(property);
    EXPECT_THROW(property.setName(CIMName("Other")), Exception);
    EXPECT_THROW(instance.getProperty(0).setName(CIMName("Other")), Exception);
    EXPECT_EQ(instance.findProperty(CIMName("renamed")), 0u);

    instance.removeProperty(0);
    property.setName(CIMName("Free"));
    EXPECT_EQ(text(property.getName().getString()), "Free");
}

TEST(CIMProperty, QualifiersAreUniqueByName) {
    CIMProperty property(CIMName("Id"), CIMValue(String("x")));
    property.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(true)));
    EXPECT_THROW(property.addQualifier(CIMQualifier(CIMName("KEY"), CIMValue(true))),
                 AlreadyExistsException);
    EXPECT_EQ(property.findQualifier(CIMName("key")), 0u);
    EXPECT_EQ(property.findQualifier(CIMName("Missing")), PEG_NOT_FOUND);
    EXPECT_THROW(property.getQualifier(1), IndexOutOfBoundsException);
    property.removeQualifier(0);
    EXPECT_EQ(property.getQualifierCount(), 0u);
}
