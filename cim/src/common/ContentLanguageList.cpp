#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/Exception.h>

#include <vector>

PEGASUS_NAMESPACE_BEGIN

class ContentLanguageListRep {
public:
    std::vector<LanguageTag> tags;
};

ContentLanguageList::ContentLanguageList() : _rep(new ContentLanguageListRep) {}

ContentLanguageList::ContentLanguageList(const ContentLanguageList& x)
    : _rep(new ContentLanguageListRep(*x._rep)) {}

ContentLanguageList::~ContentLanguageList() { delete _rep; }

ContentLanguageList& ContentLanguageList::operator=(const ContentLanguageList& x) {
    if (this != &x) {
        *_rep = *x._rep;
    }
    return *this;
}

Uint32 ContentLanguageList::size() const { return Uint32(_rep->tags.size()); }

LanguageTag ContentLanguageList::getLanguageTag(Uint32 index) const {
    if (index >= _rep->tags.size()) {
        throw IndexOutOfBoundsException();
    }
    return _rep->tags[index];
}

void ContentLanguageList::append(const LanguageTag& languageTag) {
    // A content language is a real language: no wildcard, no null tag.
    if (languageTag.toString() == String("*")) {
        throw Exception("invalid contentlanguage header: Invalid language tag \"*\".");
    }
    _rep->tags.push_back(languageTag);
}

void ContentLanguageList::remove(Uint32 index) {
    if (index >= _rep->tags.size()) {
        throw IndexOutOfBoundsException();
    }
    _rep->tags.erase(_rep->tags.begin() + index);
}

Uint32 ContentLanguageList::find(const LanguageTag& languageTag) const {
    for (size_t i = 0; i < _rep->tags.size(); ++i) {
        if (_rep->tags[i] == languageTag) {
            return Uint32(i);
        }
    }
    return PEG_NOT_FOUND;
}

void ContentLanguageList::clear() { _rep->tags.clear(); }

Boolean ContentLanguageList::operator==(const ContentLanguageList& x) const {
    if (_rep->tags.size() != x._rep->tags.size()) {
        return false;
    }
    for (size_t i = 0; i < _rep->tags.size(); ++i) {
        if (_rep->tags[i] != x._rep->tags[i]) {
            return false;
        }
    }
    return true;
}

Boolean ContentLanguageList::operator!=(const ContentLanguageList& x) const {
    return !(*this == x);
}

PEGASUS_NAMESPACE_END
