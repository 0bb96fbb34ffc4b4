#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMScope.h>
#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

std::string text(const String& s) { return std::string(static_cast<const char*>(s.getCString())); }

} // namespace

TEST(CIMFlavorAndScope, BitSetOperations) {
    CIMFlavor flavor = CIMFlavor::TOSUBCLASS + CIMFlavor::TOINSTANCE;
    EXPECT_FALSE(flavor.equal(CIMFlavor::TOSUBELEMENTS));
    EXPECT_TRUE(CIMFlavor::TOSUBELEMENTS.equal(CIMFlavor::TOSUBCLASS));
    EXPECT_EQ(text(flavor.toString()), "TOSUBCLASS TOINSTANCE");
    EXPECT_TRUE(flavor.hasFlavor(CIMFlavor::TOINSTANCE));
    EXPECT_FALSE(flavor.hasFlavor(CIMFlavor::TOSUBCLASS + CIMFlavor::TRANSLATABLE));
    flavor.removeFlavor(CIMFlavor::TOINSTANCE);
    EXPECT_TRUE(flavor.equal(CIMFlavor::TOSUBCLASS));
    EXPECT_TRUE(CIMFlavor::OVERRIDABLE.equal(CIMFlavor::ENABLEOVERRIDE));
    EXPECT_TRUE(CIMFlavor().equal(CIMFlavor::NONE));
    EXPECT_EQ(text(CIMFlavor::DEFAULTS.toString()), "OVERRIDABLE TOSUBCLASS");

    CIMScope scope = CIMScope::PROPERTY + CIMScope::REFERENCE;
    EXPECT_TRUE(scope.hasScope(CIMScope::REFERENCE));
    EXPECT_FALSE(scope.hasScope(CIMScope::CLASS));
    EXPECT_TRUE(CIMScope::ANY.hasScope(scope));
    EXPECT_EQ(text(scope.toString()), "PROPERTY REFERENCE");
    EXPECT_EQ(text(CIMScope::ANY.toString()),
              "CLASS ASSOCIATION INDICATION PROPERTY REFERENCE METHOD PARAMETER");
}

TEST(CIMQualifier, SharedHandlesClonesAndFlavors) {
    CIMQualifier key(CIMName("Key"), CIMValue(true), CIMFlavor::TOSUBCLASS);
    CIMQualifier alias = key;
    alias.setFlavor(CIMFlavor::TRANSLATABLE);
    alias.setValue(CIMValue(false));
    EXPECT_TRUE(key.getFlavor().hasFlavor(CIMFlavor::TRANSLATABLE));
    EXPECT_EQ(text(key.getValue().toString()), "FALSE");

    CIMQualifier copy = key.clone();
    copy.unsetFlavor(CIMFlavor::TRANSLATABLE);
    EXPECT_TRUE(key.getFlavor().hasFlavor(CIMFlavor::TRANSLATABLE));
    EXPECT_FALSE(copy.identical(key));
    copy.setFlavor(CIMFlavor::TRANSLATABLE);
    EXPECT_TRUE(copy.identical(key));

    EXPECT_THROW(CIMQualifier(CIMName(), CIMValue(true)), UninitializedObjectException);
    EXPECT_THROW(CIMQualifier().getName(), UninitializedObjectException);
}

TEST(CIMQualifierDecl, DeclaresTypeScopeAndSize) {
    Array<String> values(2, String("v"));
    CIMQualifierDecl decl(CIMName("ValueMap"), CIMValue(values), CIMScope::PROPERTY,
                          CIMFlavor::DEFAULTS, 2);
    EXPECT_EQ(decl.getType(), CIMTYPE_STRING);
    EXPECT_TRUE(decl.isArray());
    EXPECT_EQ(decl.getArraySize(), 2u);
    EXPECT_TRUE(decl.getScope().hasScope(CIMScope::PROPERTY));
    CIMQualifierDecl plain(CIMName("P"), CIMValue(true), CIMScope::ANY, CIMFlavor());
    EXPECT_EQ(text(plain.getFlavor().toString()), "OVERRIDABLE TOSUBCLASS");
    CIMQualifierDecl fixed(CIMName("F"), CIMValue(true), CIMScope::ANY,
                           CIMFlavor::RESTRICTED + CIMFlavor::DISABLEOVERRIDE +
                               CIMFlavor::TOSUBCLASS + CIMFlavor::OVERRIDABLE);
    EXPECT_EQ(text(fixed.getFlavor().toString()), "DISABLEOVERRIDE RESTRICTED");
    // The declared size is taken as given, even when the value has another.
    EXPECT_EQ(CIMQualifierDecl(CIMName("V"), CIMValue(values), CIMScope::ANY, CIMFlavor(), 3)
                  .getArraySize(),
              3u);

    CIMConstQualifierDecl view = decl;
    CIMQualifierDecl copy = view.clone();
    EXPECT_TRUE(copy.identical(decl));
    copy.setValue(CIMValue(Array<String>(2, String("w"))));
    EXPECT_FALSE(copy.identical(decl));
}
