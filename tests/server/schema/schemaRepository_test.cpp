// Inheritance as the repository resolves it, and the answers it gives to
// the class operations.
#include <vexa/schema/SchemaRepository.h>

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;
using vexa::schema::SchemaRepository;

namespace {

const char* const family = R"mof(
[Abstract, Description ("root")]
class T_Root {
    [Key, Description ("the key")] string Id;
    string Label;
    uint32 Act([IN] string how);
};
class T_Child : T_Root {
    [Override ("Label"), Description ("relabelled")] string Label;
    uint16 Extra;
};
class T_Grandchild : T_Child {
    boolean More;
    [Override ("Act")] uint32 Act([IN] string how, [IN] boolean fast);
};
class T_Other {
    [Key] string Id;
};
[Association]
class T_Link {
    [Key] T_Root REF Left;
    [Key] T_Root REF Right;
};
[Association]
class T_ChildLink : T_Link {
    [Override ("Left")] T_Child REF Left;
};
)mof";

class Repository : public ::testing::Test {
protected:
    void SetUp() override { repository.loadText(family, "family.mof"); }

    CIMConstProperty property(const char* className, const char* name) const {
        const CIMClass* found = repository.findClass(CIMName(className));
        return found->getProperty(found->findProperty(CIMName(name)));
    }

    SchemaRepository repository;
};

TEST_F(Repository, InheritedElementsCarryTheirOriginAndArePropagated) {
    CIMConstProperty id = property("T_Grandchild", "Id");
    EXPECT_EQ(id.getClassOrigin(), CIMName("T_Root"));
    EXPECT_TRUE(id.getPropagated());
    // Key may not be dropped by a subclass; it travels with the property.
    EXPECT_NE(id.findQualifier(CIMName("Key")), PEG_NOT_FOUND);

    CIMConstProperty label = property("T_Grandchild", "Label");
    EXPECT_EQ(label.getClassOrigin(), CIMName("T_Child"));
    EXPECT_TRUE(label.getPropagated());
    CIMConstProperty ownLabel = property("T_Child", "Label");
    EXPECT_FALSE(ownLabel.getPropagated());
    EXPECT_EQ(ownLabel.getQualifier(ownLabel.findQualifier(CIMName("Description"))).getValue(),
              CIMValue(String("relabelled")));
    // The Override qualifier names the element it is written on only.
    EXPECT_EQ(label.findQualifier(CIMName("Override")), PEG_NOT_FOUND);

    CIMConstProperty more = property("T_Grandchild", "More");
    EXPECT_EQ(more.getClassOrigin(), CIMName("T_Grandchild"));
    EXPECT_FALSE(more.getPropagated());

    const CIMClass* grandchild = repository.findClass(CIMName("T_GRANDCHILD"));
    ASSERT_NE(grandchild, nullptr);
    // Inherited properties first, in the superclass's order.
    EXPECT_EQ(grandchild->getProperty(0).getName(), CIMName("Id"));
    EXPECT_EQ(grandchild->getProperty(1).getName(), CIMName("Label"));
    EXPECT_EQ(grandchild->getProperty(3).getName(), CIMName("More"));
    Array<CIMName> keys;
    grandchild->getKeyNames(keys);
    ASSERT_EQ(keys.size(), 1u);

    CIMConstMethod act = grandchild->getMethod(grandchild->findMethod(CIMName("Act")));
    EXPECT_EQ(act.getParameterCount(), 2u);
    EXPECT_FALSE(act.getPropagated());
    const CIMClass* child = repository.findClass(CIMName("T_Child"));
    CIMConstMethod inheritedAct = child->getMethod(child->findMethod(CIMName("Act")));
    EXPECT_TRUE(inheritedAct.getPropagated());
    EXPECT_EQ(inheritedAct.getClassOrigin(), CIMName("T_Root"));

    // Abstract is restricted to the class it is written on; Description
    // and Association are inherited.
    EXPECT_TRUE(repository.findClass(CIMName("T_Root"))->isAbstract());
    EXPECT_FALSE(child->isAbstract());
    EXPECT_NE(child->findQualifier(CIMName("Description")), PEG_NOT_FOUND);
    EXPECT_TRUE(repository.findClass(CIMName("T_ChildLink"))->isAssociation());
    EXPECT_EQ(property("T_ChildLink", "Left").getReferenceClassName(), CIMName("T_Child"));
    EXPECT_EQ(property("T_ChildLink", "Right").getReferenceClassName(), CIMName("T_Root"));
}

TEST_F(Repository, AReferenceMayOnlyNarrowToASubclass) {
    EXPECT_THROW(repository.loadText("[Association] class T_Bad : T_Link {\n"
                                     "  [Override (\"Left\")] T_Other REF Left;\n};",
                                     "bad.mof"),
                 vexa::schema::MofError);
}

TEST_F(Repository, ClassForRequestHonoursTheRequestFlags) {
    Uint32 qualifiersBefore = repository.findClass(CIMName("T_Child"))->getQualifierCount();
    CIMClass full =
        repository.classForRequest(CIMName("t_grandchild"), false, true, true, CIMPropertyList());
    ASSERT_FALSE(full.isUninitialized());
    EXPECT_EQ(full.getPropertyCount(), 4u);
    EXPECT_EQ(full.getMethodCount(), 1u);

    CIMClass local =
        repository.classForRequest(CIMName("T_Child"), true, true, true, CIMPropertyList());
    EXPECT_EQ(local.getPropertyCount(), 2u); // Label (overridden) and Extra
    EXPECT_EQ(local.findProperty(CIMName("Id")), PEG_NOT_FOUND);
    EXPECT_EQ(local.getMethodCount(), 0u);
    EXPECT_EQ(local.findQualifier(CIMName("Description")), PEG_NOT_FOUND);

    CIMClass bare =
        repository.classForRequest(CIMName("T_Child"), false, false, false, CIMPropertyList());
    EXPECT_EQ(bare.getQualifierCount(), 0u);
    for (Uint32 i = 0; i < bare.getPropertyCount(); i++) {
        EXPECT_EQ(bare.getProperty(i).getQualifierCount(), 0u);
        EXPECT_TRUE(bare.getProperty(i).getClassOrigin().isNull());
    }
    EXPECT_EQ(bare.getMethod(0).getParameter(0).getQualifierCount(), 0u);

    Array<CIMName> names;
    names.append(CIMName("extra"));
    names.append(CIMName("NoSuchProperty"));
    CIMClass listed =
        repository.classForRequest(CIMName("T_Child"), false, true, true, CIMPropertyList(names));
    ASSERT_EQ(listed.getPropertyCount(), 1u);
    EXPECT_EQ(listed.getProperty(0).getName(), CIMName("Extra"));
    EXPECT_EQ(listed.getMethodCount(), 1u);

    Array<CIMName> none;
    EXPECT_EQ(
        repository.classForRequest(CIMName("T_Child"), false, true, true, CIMPropertyList(none))
            .getPropertyCount(),
        0u);
    EXPECT_TRUE(
        repository.classForRequest(CIMName("T_Nowhere"), false, true, true, CIMPropertyList())
            .isUninitialized());

    // The repository's own class is not changed by what a request drops.
    EXPECT_EQ(repository.findClass(CIMName("T_Child"))->getQualifierCount(), qualifiersBefore);
    EXPECT_NE(repository.findClass(CIMName("T_Child"))->findProperty(CIMName("Id")), PEG_NOT_FOUND);
}

TEST_F(Repository, SubclassNamesAndIsAFollowTheHierarchy) {
    auto names = [](const Array<CIMName>& list) {
        std::string text;
        for (Uint32 i = 0; i < list.size(); i++) {
            text += list[i].getString().getCString();
            text += " ";
        }
        return text;
    };
    EXPECT_EQ(names(repository.subclassNames(CIMName("T_Root"), false)), "T_Child ");
    EXPECT_EQ(names(repository.subclassNames(CIMName("t_root"), true)), "T_Child T_Grandchild ");
    EXPECT_EQ(names(repository.subclassNames(CIMName(), false)), "T_Link T_Other T_Root ");
    EXPECT_EQ(repository.subclassNames(CIMName(), true).size(), repository.classCount());
    EXPECT_EQ(repository.subclassNames(CIMName("T_Grandchild"), true).size(), 0u);
    EXPECT_EQ(repository.subclassNames(CIMName("T_Nowhere"), true).size(), 0u);

    EXPECT_TRUE(repository.isA(CIMName("T_Grandchild"), CIMName("T_Root")));
    EXPECT_TRUE(repository.isA(CIMName("t_child"), CIMName("T_CHILD")));
    EXPECT_FALSE(repository.isA(CIMName("T_Root"), CIMName("T_Child")));
    EXPECT_FALSE(repository.isA(CIMName("T_Other"), CIMName("T_Root")));
    EXPECT_FALSE(repository.isA(CIMName("T_Nowhere"), CIMName("T_Nowhere")));
}

} // namespace
