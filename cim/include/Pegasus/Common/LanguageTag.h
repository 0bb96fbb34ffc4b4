#ifndef Pegasus_LanguageTag_h
#define Pegasus_LanguageTag_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

class LanguageTagRep;

// One language tag such as "en", "en-US" or "zh-Hant-TW" (primary subtag,
// optional two-letter country, the rest as variant). Tags compare
// case-insensitively; the original spelling is kept for toString().
class PEGASUS_COMMON_LINKAGE LanguageTag {
public:
    LanguageTag();
    LanguageTag(const String& languageTagString);
    LanguageTag(const LanguageTag& languageTag);
    ~LanguageTag();
    LanguageTag& operator=(const LanguageTag& languageTag);

    String getLanguage() const;
    String getCountry() const;
    String getVariant() const;
    String toString() const;

    Boolean operator==(const LanguageTag& languageTag) const;
    Boolean operator!=(const LanguageTag& languageTag) const;

private:
    LanguageTagRep* _rep;
};

PEGASUS_NAMESPACE_END

#endif
