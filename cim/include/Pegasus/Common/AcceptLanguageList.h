#ifndef Pegasus_AcceptLanguageList_h
#define Pegasus_AcceptLanguageList_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/LanguageTag.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class AcceptLanguageListRep;

// The languages a client accepts, each with a quality value in [0, 1],
// kept in order of decreasing quality (equal qualities keep insertion order).
class PEGASUS_COMMON_LINKAGE AcceptLanguageList {
public:
    AcceptLanguageList();
    AcceptLanguageList(const AcceptLanguageList& x);
    ~AcceptLanguageList();
    AcceptLanguageList& operator=(const AcceptLanguageList& x);

    Uint32 size() const;
    void insert(const LanguageTag& languageTag, Real32 qualityValue);
    void remove(Uint32 index);
    Uint32 find(const LanguageTag& languageTag) const;
    LanguageTag getLanguageTag(Uint32 index) const;
    Real32 getQualityValue(Uint32 index) const;
    void clear();

    Boolean operator==(const AcceptLanguageList& x) const;
    Boolean operator!=(const AcceptLanguageList& x) const;

private:
    AcceptLanguageListRep* _rep;
};

PEGASUS_NAMESPACE_END

#endif
