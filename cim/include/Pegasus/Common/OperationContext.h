#ifndef Pegasus_OperationContext_h
#define Pegasus_OperationContext_h

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

class OperationContextRep;

// Per-request information travelling beside an operation: a set of
// containers, at most one per name. Copies are deep (every container is
// cloned), so a context handed to another thread is independent.
class PEGASUS_COMMON_LINKAGE OperationContext {
public:
    class PEGASUS_COMMON_LINKAGE Container {
    public:
        virtual ~Container();
        virtual String getName() const = 0;
        virtual Container* clone() const = 0;
        virtual void destroy() = 0;
    };

    OperationContext();
    OperationContext(const OperationContext& context);
    virtual ~OperationContext();
    OperationContext& operator=(const OperationContext& context);

    void clear();
    const Container& get(const String& containerName) const;
    Boolean contains(const String& containerName) const;
    void set(const Container& container);
    void insert(const Container& container);
    void remove(const String& containerName);

private:
    OperationContextRep* _rep;
};

class IdentityContainerRep;

class PEGASUS_COMMON_LINKAGE IdentityContainer : virtual public OperationContext::Container {
public:
    static const String NAME;

    IdentityContainer(const OperationContext::Container& container);
    IdentityContainer(const IdentityContainer& container);
    IdentityContainer(const String& userName);
    virtual ~IdentityContainer();
    IdentityContainer& operator=(const IdentityContainer& container);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    String getUserName() const;

private:
    IdentityContainerRep* _rep;
};

class SubscriptionInstanceContainerRep;

class PEGASUS_COMMON_LINKAGE SubscriptionInstanceContainer
    : virtual public OperationContext::Container {
public:
    static const String NAME;

    SubscriptionInstanceContainer(const OperationContext::Container& container);
    SubscriptionInstanceContainer(const SubscriptionInstanceContainer& container);
    SubscriptionInstanceContainer(const CIMInstance& subscriptionInstance);
    virtual ~SubscriptionInstanceContainer();
    SubscriptionInstanceContainer& operator=(const SubscriptionInstanceContainer& container);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    CIMInstance getInstance() const;

private:
    SubscriptionInstanceContainerRep* _rep;
};

class SubscriptionFilterConditionContainerRep;

class PEGASUS_COMMON_LINKAGE SubscriptionFilterConditionContainer
    : virtual public OperationContext::Container {
public:
    static const String NAME;

    SubscriptionFilterConditionContainer(const OperationContext::Container& container);
    SubscriptionFilterConditionContainer(const SubscriptionFilterConditionContainer& container);
    SubscriptionFilterConditionContainer(const String& filterCondition,
                                         const String& queryLanguage);
    virtual ~SubscriptionFilterConditionContainer();
    SubscriptionFilterConditionContainer&
    operator=(const SubscriptionFilterConditionContainer& container);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    String getFilterCondition() const;
    String getQueryLanguage() const;

private:
    SubscriptionFilterConditionContainerRep* _rep;
};

class SubscriptionFilterQueryContainerRep;

class PEGASUS_COMMON_LINKAGE SubscriptionFilterQueryContainer
    : virtual public OperationContext::Container {
public:
    static const String NAME;

    SubscriptionFilterQueryContainer(const OperationContext::Container& container);
    SubscriptionFilterQueryContainer(const SubscriptionFilterQueryContainer& container);
    SubscriptionFilterQueryContainer(const String& filterQuery, const String& queryLanguage,
                                     const CIMNamespaceName& sourceNameSpace);
    virtual ~SubscriptionFilterQueryContainer();
    SubscriptionFilterQueryContainer& operator=(const SubscriptionFilterQueryContainer& container);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    String getFilterQuery() const;
    String getQueryLanguage() const;
    CIMNamespaceName getSourceNameSpace() const;

private:
    SubscriptionFilterQueryContainerRep* _rep;
};

class SubscriptionInstanceNamesContainerRep;

class PEGASUS_COMMON_LINKAGE SubscriptionInstanceNamesContainer
    : virtual public OperationContext::Container {
public:
    static const String NAME;

    SubscriptionInstanceNamesContainer(const OperationContext::Container& container);
    SubscriptionInstanceNamesContainer(const SubscriptionInstanceNamesContainer& container);
    SubscriptionInstanceNamesContainer(const Array<CIMObjectPath>& subscriptionInstanceNames);
    virtual ~SubscriptionInstanceNamesContainer();
    SubscriptionInstanceNamesContainer&
    operator=(const SubscriptionInstanceNamesContainer& container);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    Array<CIMObjectPath> getInstanceNames() const;

private:
    SubscriptionInstanceNamesContainerRep* _rep;
};

class TimeoutContainerRep;

class PEGASUS_COMMON_LINKAGE TimeoutContainer : virtual public OperationContext::Container {
public:
    static const String NAME;

    TimeoutContainer(const OperationContext::Container& container);
    TimeoutContainer(const TimeoutContainer& container);
    TimeoutContainer(Uint32 timeout);
    virtual ~TimeoutContainer();
    TimeoutContainer& operator=(const TimeoutContainer& container);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    Uint32 getTimeOut() const;

private:
    TimeoutContainerRep* _rep;
};

class AcceptLanguageListContainerRep;

class PEGASUS_COMMON_LINKAGE AcceptLanguageListContainer
    : virtual public OperationContext::Container {
public:
    static const String NAME;

    AcceptLanguageListContainer(const OperationContext::Container& container);
    AcceptLanguageListContainer(const AcceptLanguageListContainer& container);
    AcceptLanguageListContainer(const AcceptLanguageList& languages);
    virtual ~AcceptLanguageListContainer();
    AcceptLanguageListContainer& operator=(const AcceptLanguageListContainer& container);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    AcceptLanguageList getLanguages() const;

private:
    AcceptLanguageListContainerRep* _rep;
};

class ContentLanguageListContainerRep;

class PEGASUS_COMMON_LINKAGE ContentLanguageListContainer
    : virtual public OperationContext::Container {
public:
    static const String NAME;

    ContentLanguageListContainer(const OperationContext::Container& container);
    ContentLanguageListContainer(const ContentLanguageListContainer& container);
    ContentLanguageListContainer(const ContentLanguageList& languages);
    virtual ~ContentLanguageListContainer();
    ContentLanguageListContainer& operator=(const ContentLanguageListContainer& container);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    ContentLanguageList getLanguages() const;

private:
    ContentLanguageListContainerRep* _rep;
};

class SnmpTrapOidContainerRep;

class PEGASUS_COMMON_LINKAGE SnmpTrapOidContainer : virtual public OperationContext::Container {
public:
    static const String NAME;

    SnmpTrapOidContainer(const OperationContext::Container& container);
    SnmpTrapOidContainer(const SnmpTrapOidContainer& container);
    SnmpTrapOidContainer(const String& snmpTrapOid);
    virtual ~SnmpTrapOidContainer();
    SnmpTrapOidContainer& operator=(const SnmpTrapOidContainer& container);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    String getSnmpTrapOid() const;

private:
    SnmpTrapOidContainerRep* _rep;
};

PEGASUS_NAMESPACE_END

#endif
