#include <Pegasus/Common/OperationContext.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

std::string text(const String& s) { return std::string((const char*)s.getCString()); }

// The message of the Exception an operation throws, with a check that it is
// a plain Exception and not a CIMException.
template <class Operation>
std::string plainExceptionMessage(Operation operation) {
    try {
        operation();
    } catch (const CIMException&) {
        return "<CIMException>";
    } catch (const Exception& e) {
        return text(e.getMessage());
    }
    return "<nothing thrown>";
}

String userIn(const OperationContext& context) {
    return IdentityContainer(context.get(IdentityContainer::NAME)).getUserName();
}

} // namespace

TEST(OperationContext, InsertGetSetRemoveAndTheirErrors) {
    OperationContext context;
    EXPECT_FALSE(context.contains(IdentityContainer::NAME));
    EXPECT_EQ(plainExceptionMessage([&] { context.get(IdentityContainer::NAME); }),
              "object not found");
    EXPECT_EQ(plainExceptionMessage([&] { context.set(IdentityContainer("bob")); }),
              "object not found");
    EXPECT_EQ(plainExceptionMessage([&] { context.remove(IdentityContainer::NAME); }),
              "object not found");

    context.insert(IdentityContainer("alice"));
    context.insert(TimeoutContainer(30));
    EXPECT_TRUE(context.contains("IdentityContainer"));
    EXPECT_EQ(text(userIn(context)), "alice");
    EXPECT_EQ(plainExceptionMessage([&] { context.insert(IdentityContainer("bob")); }),
              "object already exists.");
    EXPECT_EQ(text(userIn(context)), "alice");

    context.set(IdentityContainer("bob"));
    EXPECT_EQ(text(userIn(context)), "bob");
    EXPECT_EQ(TimeoutContainer(context.get(TimeoutContainer::NAME)).getTimeOut(), 30u);

    // Names are matched exactly.
    EXPECT_FALSE(context.contains("identitycontainer"));

    context.remove(IdentityContainer::NAME);
    EXPECT_FALSE(context.contains(IdentityContainer::NAME));
    EXPECT_TRUE(context.contains(TimeoutContainer::NAME));
    context.clear();
    EXPECT_FALSE(context.contains(TimeoutContainer::NAME));
}

TEST(OperationContext, CopiesAreIndependent) {
    OperationContext original;
    original.insert(IdentityContainer("alice"));

    OperationContext copy(original);
    OperationContext assigned;
    assigned.insert(TimeoutContainer(5));
    assigned = original;
    EXPECT_FALSE(assigned.contains(TimeoutContainer::NAME));

    original.set(IdentityContainer("mallory"));
    original.insert(SnmpTrapOidContainer("1.3.6.1"));
    EXPECT_EQ(text(userIn(copy)), "alice");
    EXPECT_EQ(text(userIn(assigned)), "alice");
    EXPECT_FALSE(copy.contains(SnmpTrapOidContainer::NAME));

    const OperationContext& alias = assigned;
    assigned = alias;
    EXPECT_EQ(text(userIn(assigned)), "alice");
}

TEST(OperationContext, ContainersRoundTripAndRefuseTheWrongKind) {
    CIMInstance subscription(CIMName("CIM_IndicationSubscription"));
    Array<CIMObjectPath> names;
    names.append(CIMObjectPath("root/x:A.k=1"));
    AcceptLanguageList accepted;
    accepted.insert(LanguageTag("fr"), 0.5f);
    ContentLanguageList content;
    content.append(LanguageTag("de-CH"));

    OperationContext context;
    context.insert(SubscriptionInstanceContainer(subscription));
    context.insert(SubscriptionFilterConditionContainer("Severity > 2", "WQL"));
    context.insert(
        SubscriptionFilterQueryContainer("SELECT * FROM X", "WQL", CIMNamespaceName("root/x")));
    context.insert(SubscriptionInstanceNamesContainer(names));
    context.insert(AcceptLanguageListContainer(accepted));
    context.insert(ContentLanguageListContainer(content));
    context.insert(SnmpTrapOidContainer("1.3.6.1.4"));
    const OperationContext copy(context);

    // Subscription instances are handles: the copy still refers to the same one.
    EXPECT_TRUE(SubscriptionInstanceContainer(copy.get(SubscriptionInstanceContainer::NAME))
                    .getInstance()
                    .identical(subscription));
    SubscriptionFilterConditionContainer condition(
        copy.get(SubscriptionFilterConditionContainer::NAME));
    EXPECT_EQ(text(condition.getFilterCondition()), "Severity > 2");
    EXPECT_EQ(text(condition.getQueryLanguage()), "WQL");
    SubscriptionFilterQueryContainer query(copy.get(SubscriptionFilterQueryContainer::NAME));
    EXPECT_EQ(text(query.getFilterQuery()), "SELECT * FROM X");
    EXPECT_EQ(query.getSourceNameSpace(), CIMNamespaceName("root/x"));
    Array<CIMObjectPath> gotNames =
        SubscriptionInstanceNamesContainer(copy.get(SubscriptionInstanceNamesContainer::NAME))
            .getInstanceNames();
    ASSERT_EQ(gotNames.size(), 1u);
    EXPECT_EQ(gotNames[0], names[0]);
    EXPECT_TRUE(
        AcceptLanguageListContainer(copy.get(AcceptLanguageListContainer::NAME)).getLanguages() ==
        accepted);
    EXPECT_TRUE(
        ContentLanguageListContainer(copy.get(ContentLanguageListContainer::NAME)).getLanguages() ==
        content);
    EXPECT_EQ(text(SnmpTrapOidContainer(copy.get(SnmpTrapOidContainer::NAME)).getSnmpTrapOid()),
              "1.3.6.1.4");

    EXPECT_THROW(IdentityContainer{copy.get(SnmpTrapOidContainer::NAME)},
                 DynamicCastFailedException);
    EXPECT_THROW(TimeoutContainer{copy.get(AcceptLanguageListContainer::NAME)},
                 DynamicCastFailedException);
}

TEST(OperationContext, CopiesOfOneContextOnManyThreads) {
    OperationContext shared;
    shared.insert(IdentityContainer("alice"));
    shared.insert(TimeoutContainer(7));

    std::vector<std::thread> threads;
    std::vector<int> failures(8, 0);
    for (size_t t = 0; t < failures.size(); t++) {
        threads.emplace_back([&shared, &failures, t] {
            for (int i = 0; i < 500; i++) {
                OperationContext mine(shared);
                mine.set(TimeoutContainer(Uint32(i)));
                if (userIn(mine) != "alice" ||
                    TimeoutContainer(mine.get(TimeoutContainer::NAME)).getTimeOut() != Uint32(i)) {
                    failures[t]++;
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int failed : failures) {
        EXPECT_EQ(failed, 0);
    }
    EXPECT_EQ(TimeoutContainer(shared.get(TimeoutContainer::NAME)).getTimeOut(), 7u);
}
