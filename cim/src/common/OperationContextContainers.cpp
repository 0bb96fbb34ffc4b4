#include <Pegasus/Common/OperationContext.h>

PEGASUS_NAMESPACE_BEGIN

class IdentityContainerRep {
public:
    String userName;
};

class SubscriptionInstanceContainerRep {
public:
    CIMInstance subscriptionInstance;
};

class SubscriptionFilterConditionContainerRep {
public:
    String filterCondition;
    String queryLanguage;
};

class SubscriptionFilterQueryContainerRep {
public:
    String filterQuery;
    String queryLanguage;
    CIMNamespaceName sourceNameSpace;
};

class SubscriptionInstanceNamesContainerRep {
public:
    Array<CIMObjectPath> instanceNames;
};

class TimeoutContainerRep {
public:
    Uint32 timeout;
};

class AcceptLanguageListContainerRep {
public:
    AcceptLanguageList languages;
};

class ContentLanguageListContainerRep {
public:
    ContentLanguageList languages;
};

class SnmpTrapOidContainerRep {
public:
    String snmpTrapOid;
};

namespace {

// Containers come back from OperationContext::get() as the base class; the
// typed constructor recovers the concrete one and refuses any other kind.
template <class ContainerType>
const ContainerType& downcast(const OperationContext::Container& container) {
    const ContainerType* typed = dynamic_cast<const ContainerType*>(&container);
    if (!typed) {
        throw DynamicCastFailedException();
    }
    return *typed;
}

} // namespace

// Every container has the same copy, clone and naming behaviour; only its
// payload differs. The payload lives in <Class>Rep and copies deeply.
#define VEXA_DEFINE_CONTAINER_COMMON(Class)                                                        \
    const String Class::NAME = #Class;                                                             \
    Class::Class(const OperationContext::Container& container)                                     \
        : _rep(new Class##Rep(*downcast<Class>(container)._rep)) {}                                \
    Class::Class(const Class& container)                                                           \
        : OperationContext::Container(container), _rep(new Class##Rep(*container._rep)) {}         \
    Class::~Class() { delete _rep; }                                                               \
    Class& Class::operator=(const Class& container) {                                              \
        if (this != &container) {                                                                  \
            *_rep = *container._rep;                                                               \
        }                                                                                          \
        return *this;                                                                              \
    }                                                                                              \
    String Class::getName() const { return NAME; }                                                 \
    OperationContext::Container* Class::clone() const { return new Class(*this); }                 \
    void Class::destroy() { delete this; }

VEXA_DEFINE_CONTAINER_COMMON(IdentityContainer)

IdentityContainer::IdentityContainer(const String& userName)
    : _rep(new IdentityContainerRep{userName}) {}

String IdentityContainer::getUserName() const { return _rep->userName; }

VEXA_DEFINE_CONTAINER_COMMON(SubscriptionInstanceContainer)

SubscriptionInstanceContainer::SubscriptionInstanceContainer(
    const CIMInstance& subscriptionInstance)
    : _rep(new SubscriptionInstanceContainerRep{subscriptionInstance}) {}

CIMInstance SubscriptionInstanceContainer::getInstance() const {
    return _rep->subscriptionInstance;
}

VEXA_DEFINE_CONTAINER_COMMON(SubscriptionFilterConditionContainer)

SubscriptionFilterConditionContainer::SubscriptionFilterConditionContainer(
    const String& filterCondition, const String& queryLanguage)
    : _rep(new SubscriptionFilterConditionContainerRep{filterCondition, queryLanguage}) {}

String SubscriptionFilterConditionContainer::getFilterCondition() const {
    return _rep->filterCondition;
}

String SubscriptionFilterConditionContainer::getQueryLanguage() const {
    return _rep->queryLanguage;
}

VEXA_DEFINE_CONTAINER_COMMON(SubscriptionFilterQueryContainer)

SubscriptionFilterQueryContainer::SubscriptionFilterQueryContainer(
    const String& filterQuery, const String& queryLanguage, const CIMNamespaceName& sourceNameSpace)
    : _rep(new SubscriptionFilterQueryContainerRep{filterQuery, queryLanguage, sourceNameSpace}) {}

String SubscriptionFilterQueryContainer::getFilterQuery() const { return _rep->filterQuery; }

String SubscriptionFilterQueryContainer::getQueryLanguage() const { return _rep->queryLanguage; }

CIMNamespaceName SubscriptionFilterQueryContainer::getSourceNameSpace() const {
    return _rep->sourceNameSpace;
}

VEXA_DEFINE_CONTAINER_COMMON(SubscriptionInstanceNamesContainer)

SubscriptionInstanceNamesContainer::SubscriptionInstanceNamesContainer(
    const Array<CIMObjectPath>& subscriptionInstanceNames)
    : _rep(new SubscriptionInstanceNamesContainerRep{subscriptionInstanceNames}) {}

Array<CIMObjectPath> SubscriptionInstanceNamesContainer::getInstanceNames() const {
    return _rep->instanceNames;
}

VEXA_DEFINE_CONTAINER_COMMON(TimeoutContainer)

TimeoutContainer::TimeoutContainer(Uint32 timeout) : _rep(new TimeoutContainerRep{timeout}) {}

Uint32 TimeoutContainer::getTimeOut() const { return _rep->timeout; }

VEXA_DEFINE_CONTAINER_COMMON(AcceptLanguageListContainer)

AcceptLanguageListContainer::AcceptLanguageListContainer(const AcceptLanguageList& languages)
    : _rep(new AcceptLanguageListContainerRep{languages}) {}

AcceptLanguageList AcceptLanguageListContainer::getLanguages() const { return _rep->languages; }

VEXA_DEFINE_CONTAINER_COMMON(ContentLanguageListContainer)

ContentLanguageListContainer::ContentLanguageListContainer(const ContentLanguageList& languages)
    : _rep(new ContentLanguageListContainerRep{languages}) {}

ContentLanguageList ContentLanguageListContainer::getLanguages() const { return _rep->languages; }

VEXA_DEFINE_CONTAINER_COMMON(SnmpTrapOidContainer)

SnmpTrapOidContainer::SnmpTrapOidContainer(const String& snmpTrapOid)
    : _rep(new SnmpTrapOidContainerRep{snmpTrapOid}) {}

String SnmpTrapOidContainer::getSnmpTrapOid() const { return _rep->snmpTrapOid; }

#undef VEXA_DEFINE_CONTAINER_COMMON

PEGASUS_NAMESPACE_END
