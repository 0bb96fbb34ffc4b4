#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/Exception.h>

#include <vector>

PEGASUS_NAMESPACE_BEGIN

class AcceptLanguageListRep {
public:
    struct Entry {
        LanguageTag tag;
        Real32 quality;
    };
    std::vector<Entry> entries;
};

AcceptLanguageList::AcceptLanguageList() : _rep(new AcceptLanguageListRep) {}

AcceptLanguageList::AcceptLanguageList(const AcceptLanguageList& x)
    : _rep(new AcceptLanguageListRep(*x._rep)) {}

AcceptLanguageList::~AcceptLanguageList() { delete _rep; }

AcceptLanguageList& AcceptLanguageList::operator=(const AcceptLanguageList& x) {
    if (this != &x) {
        *_rep = *x._rep;
    }
    return *this;
}

Uint32 AcceptLanguageList::size() const { return Uint32(_rep->entries.size()); }

void AcceptLanguageList::insert(const LanguageTag& languageTag, Real32 qualityValue) {
    // Written as a negated range test so that NaN is refused too.
    if (!(qualityValue >= 0.0f && qualityValue <= 1.0f)) {
        throw Exception(
            "invalid acceptlanguage header: AcceptLanguage contains an invalid quality value");
    }

    // Highest quality first; among equal qualities the earlier insert wins,
    // which is the order in which a client listed them.
    auto& entries = _rep->entries;
    auto position = entries.begin();
    while (position != entries.end() && position->quality >= qualityValue) {
        ++position;
    }
    entries.insert(position, AcceptLanguageListRep::Entry{languageTag, qualityValue});
}

void AcceptLanguageList::remove(Uint32 index) {
    if (index >= _rep->entries.size()) {
        throw IndexOutOfBoundsException();
    }
    _rep->entries.erase(_rep->entries.begin() + index);
}

Uint32 AcceptLanguageList::find(const LanguageTag& languageTag) const {
    for (size_t i = 0; i < _rep->entries.size(); ++i) {
        if (_rep->entries[i].tag == languageTag) {
            return Uint32(i);
        }
    }
    return PEG_NOT_FOUND;
}

LanguageTag AcceptLanguageList::getLanguageTag(Uint32 index) const {
    if (index >= _rep->entries.size()) {
        throw IndexOutOfBoundsException();
    }
    return _rep->entries[index].tag;
}

Real32 AcceptLanguageList::getQualityValue(Uint32 index) const {
    if (index >= _rep->entries.size()) {
        throw IndexOutOfBoundsException();
    }
    return _rep->entries[index].quality;
}

void AcceptLanguageList::clear() { _rep->entries.clear(); }

Boolean AcceptLanguageList::operator==(const AcceptLanguageList& x) const {
    const auto& mine = _rep->entries;
    const auto& theirs = x._rep->entries;
    if (mine.size() != theirs.size()) {
        return false;
    }
    for (size_t i = 0; i < mine.size(); ++i) {
        if (mine[i].tag != theirs[i].tag || mine[i].quality != theirs[i].quality) {
            return false;
        }
    }
    return true;
}

Boolean AcceptLanguageList::operator!=(const AcceptLanguageList& x) const { return !(*this == x); }

PEGASUS_NAMESPACE_END
