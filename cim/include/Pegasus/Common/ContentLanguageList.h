#ifndef Pegasus_ContentLanguageList_h
#define Pegasus_ContentLanguageList_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/LanguageTag.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class ContentLanguageListRep;

// The languages a piece of content is written in, in the order given.
class PEGASUS_COMMON_LINKAGE ContentLanguageList {
public:
    ContentLanguageList();
    ContentLanguageList(const ContentLanguageList& x);
    ~ContentLanguageList();
    ContentLanguageList& operator=(const ContentLanguageList& x);

    Uint32 size() const;
    LanguageTag getLanguageTag(Uint32 index) const;
    void append(const LanguageTag& languageTag);
    void remove(Uint32 index);
    Uint32 find(const LanguageTag& languageTag) const;
    void clear();

    Boolean operator==(const ContentLanguageList& x) const;
    Boolean operator!=(const ContentLanguageList& x) const;

private:
    ContentLanguageListRep* _rep;
};

PEGASUS_NAMESPACE_END

#endif
