#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/LanguageTag.h>

PEGASUS_NAMESPACE_BEGIN

class LanguageTagRep {
public:
    String tag;
    String language;
    String country;
    String variant;
};

namespace {

bool isAsciiAlpha(Uint16 c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isAsciiDigit(Uint16 c) { return c >= '0' && c <= '9'; }

// Splits "lang[-sub]*" and checks each part: the primary subtag is 1 to 8
// letters, later subtags 1 to 8 letters or digits. A lone "*" is the
// wildcard that Accept-Language lists may carry; it names no language, so
// its language part stays empty, as in OpenPegasus.
bool parseTag(const String& tag, LanguageTagRep& rep) {
    const Uint32 n = tag.size();
    if (n == 1 && Uint16(tag[0]) == '*')
        return true;
    String subtags[2];
    Uint32 subtagCount = 0;
    Uint32 start = 0;
    Uint32 secondEnd = n;
    while (start <= n) {
        Uint32 end = start;
        while (end < n && Uint16(tag[end]) != '-') {
            const Uint16 c = tag[end];
            const bool ok = isAsciiAlpha(c) || (subtagCount > 0 && isAsciiDigit(c));
            if (!ok) {
                return false;
            }
            ++end;
        }
        const Uint32 length = end - start;
        if (length < 1 || length > 8) {
            return false;
        }
        if (subtagCount < 2) {
            subtags[subtagCount] = tag.subString(start, length);
        }
        if (subtagCount == 1) {
            secondEnd = end;
        }
        ++subtagCount;
        start = end + 1;
    }

    // IANA-registered ("i-") and private ("x-") tags name no language of
    // their own, so they have no parts, as in OpenPegasus.
    if (subtags[0] == String("i") || subtags[0] == String("I") || subtags[0] == String("x") ||
        subtags[0] == String("X")) {
        return subtagCount > 1;
    }
    rep.language = subtags[0];
    if (subtagCount == 1) {
        return true;
    }
    // Only a two-letter second subtag is a country ("en-US"); anything else
    // there ("zh-Hant", "i-klingon") belongs to the variant.
    const Uint32 languageEnd = subtags[0].size();
    if (subtags[1].size() == 2 && isAsciiAlpha(subtags[1][0]) && isAsciiAlpha(subtags[1][1])) {
        rep.country = subtags[1];
        if (secondEnd < n) {
            rep.variant = tag.subString(secondEnd + 1);
        }
    } else {
        rep.variant = tag.subString(languageEnd + 1);
    }
    return true;
}

const LanguageTagRep& checked(const LanguageTagRep* rep) {
    if (!rep) {
        throw UninitializedObjectException();
    }
    return *rep;
}

} // namespace

LanguageTag::LanguageTag() : _rep(nullptr) {}

LanguageTag::LanguageTag(const String& languageTagString) : _rep(new LanguageTagRep) {
    _rep->tag = languageTagString;
    if (!parseTag(languageTagString, *_rep)) {
        delete _rep;
        _rep = nullptr;
        throw Exception(String("Invalid language tag \"") + languageTagString + "\".");
    }
}

LanguageTag::LanguageTag(const LanguageTag& languageTag)
    : _rep(languageTag._rep ? new LanguageTagRep(*languageTag._rep) : nullptr) {}

LanguageTag::~LanguageTag() { delete _rep; }

LanguageTag& LanguageTag::operator=(const LanguageTag& languageTag) {
    if (this != &languageTag) {
        LanguageTagRep* copy = languageTag._rep ? new LanguageTagRep(*languageTag._rep) : nullptr;
        delete _rep;
        _rep = copy;
    }
    return *this;
}

String LanguageTag::getLanguage() const { return checked(_rep).language; }

String LanguageTag::getCountry() const { return checked(_rep).country; }

String LanguageTag::getVariant() const { return checked(_rep).variant; }

String LanguageTag::toString() const { return checked(_rep).tag; }

Boolean LanguageTag::operator==(const LanguageTag& languageTag) const {
    if (!_rep || !languageTag._rep) {
        return _rep == languageTag._rep;
    }
    return String::equalNoCase(_rep->tag, languageTag._rep->tag);
}

Boolean LanguageTag::operator!=(const LanguageTag& languageTag) const {
    return !(*this == languageTag);
}

PEGASUS_NAMESPACE_END
