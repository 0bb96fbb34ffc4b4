#include "ArrayImpl.h"
#include "EncodingSlot.h"
#include "HostName.h"
#include "KeyNumber.h"
#include "ObjectPathParser.h"
#include "ReferenceKey.h"
#include "RepAccess.h"
#include "SharedRep.h"
#include <Pegasus/Common/CIMObjectPath.h>
#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <unistd.h>
#include <vexa/cim/KeptEncoding.h>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMObjectPath>;

// The path's text, kept once a reference key has asked for it.
struct PathText {
    String text;
    Boolean readsBack; // reading the text and writing it again gives it unchanged
};

class CIMObjectPathRep : public SharedRep {
public:
    CIMObjectPathRep() = default;
    // A copy is made to be changed, so it does not take the text.
    CIMObjectPathRep(const CIMObjectPathRep& x)
        : SharedRep(x), host(x.host), nameSpace(x.nameSpace), className(x.className),
          keyBindings(x.keyBindings) {}
    ~CIMObjectPathRep() { delete text.load(std::memory_order_relaxed); }

    // Only the sole holder changes a path, so nobody reads the text meanwhile.
    void forgetText() {
        delete text.exchange(nullptr, std::memory_order_acq_rel);
        encoding.drop();
    }

    String host;
    CIMNamespaceName nameSpace;
    CIMName className;
    Array<CIMKeyBinding> keyBindings;
    // Made on first request; several readers may race to make it, and the
    // first to store it wins.
    std::atomic<PathText*> text{nullptr};
    // An encoder's form of the path (vexa/cim/KeptEncoding.h), dropped with
    // the text.
    EncodingSlot encoding;
};

namespace {

bool keyNameLess(const CIMKeyBinding& x, const CIMKeyBinding& y) {
    return String::compareNoCase(x.getName().getString(), y.getName().getString()) < 0;
}

// Brings key bindings into their stored form: reference values rewritten as
// their own canonical path text, and the keys sorted by name. The work is
// done in the array's storage, which the caller's array may share; nothing
// is written when the keys are already in that form, so concurrent readers
// of an already sorted array are never disturbed.
void normaliseKeyBindings(Array<CIMKeyBinding>& keyBindings) {
    CIMKeyBinding* items = const_cast<CIMKeyBinding*>(keyBindings.getData());
    const Uint32 count = keyBindings.size();
    for (Uint32 i = 0; i < count; i++) {
        if (items[i].getType() != CIMKeyBinding::REFERENCE ||
            RepAccess::rep(items[i])->canonicalReference)
            continue;
        String canonical = CIMObjectPath(items[i].getValue()).toString();
        if (!String::equal(canonical, items[i].getValue()))
            items[i].setValue(canonical);
    }
    if (!std::is_sorted(items, items + count, keyNameLess))
        std::sort(items, items + count, keyNameLess);
}

void checkHost(const String& host) {
    if (host.size() && !isValidHostName(host))
        throw MalformedObjectNameException(host);
}

String localHostName() {
    char name[256];
    if (gethostname(name, sizeof(name) - 1) != 0)
        return String();
    name[sizeof(name) - 1] = '\0';
    return String(name);
}

// Runs without a backslash or quote are copied whole.
void appendQuoted(String& text, const String& value) {
    const Char16* units = value.getChar16Data();
    const Uint32 count = value.size();
    text.append(Char16('"'));
    Uint32 runStart = 0;
    for (Uint32 i = 0; i < count; i++) {
        if (units[i] == '\\' || units[i] == '"') {
            text.append(units + runStart, i - runStart);
            text.append(Char16('\\'));
            runStart = i;
        }
    }
    text.append(units + runStart, count - runStart);
    text.append(Char16('"'));
}

void appendLowered(String& text, const String& part) {
    String lowered = part;
    lowered.toLower();
    text.append(lowered);
}

// One spelling for every path that compares equal to this one.
String canonicalText(const CIMObjectPath& path) {
    String text;
    appendLowered(text, path.getHost());
    text.append(Char16('/'));
    appendLowered(text, path.getNameSpace().getString());
    text.append(Char16(':'));
    appendLowered(text, path.getClassName().getString());
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        const CIMKeyBinding& key = keys[i];
        text.append(Char16(i ? ',' : '.'));
        appendLowered(text, key.getName().getString());
        text.append(Char16('='));
        text.append(Char16(Uint16('0' + key.getType())));
        switch (key.getType()) {
        case CIMKeyBinding::BOOLEAN:
            appendLowered(text, key.getValue());
            break;
        case CIMKeyBinding::NUMERIC: {
            std::string number = static_cast<const char*>(key.getValue().getCString());
            text.append(String(canonicalKeyNumber(number).c_str()));
            break;
        }
        case CIMKeyBinding::REFERENCE:
            try {
                appendQuoted(text, canonicalText(CIMObjectPath(key.getValue())));
            } catch (const Exception&) {
                appendQuoted(text, key.getValue());
            }
            break;
        case CIMKeyBinding::STRING:
            appendQuoted(text, key.getValue());
            break;
        }
    }
    return text;
}

String writeText(const CIMObjectPathRep& path) {
    const CIMObjectPathRep* rep = &path;
    const Array<CIMKeyBinding>& keys = rep->keyBindings;
    // Room for everything but escapes, so the text is built in one buffer.
    Uint32 length = rep->host.size() + rep->nameSpace.getString().size() +
                    rep->className.getString().size() + 4;
    for (Uint32 i = 0; i < keys.size(); i++)
        length += keys[i].getName().getString().size() + keys[i].getValue().size() + 4;
    String text;
    text.reserveCapacity(length);
    if (rep->host.size()) {
        text.append(Char16('/'));
        text.append(Char16('/'));
        text.append(rep->host);
        text.append(Char16('/'));
    }
    if (!rep->nameSpace.isNull() || rep->host.size()) {
        text.append(rep->nameSpace.getString());
        text.append(Char16(':'));
    }
    text.append(rep->className.getString());
    for (Uint32 i = 0; i < keys.size(); i++) {
        text.append(Char16(i ? ',' : '.'));
        text.append(keys[i].getName().getString());
        text.append(Char16('='));
        CIMKeyBinding::Type type = keys[i].getType();
        if (type == CIMKeyBinding::STRING || type == CIMKeyBinding::REFERENCE)
            appendQuoted(text, keys[i].getValue());
        else
            text.append(keys[i].getValue());
    }
    return text;
}

// Whether reading the path's text and writing it again gives the same text,
// told without reading it: every part must be one the reader takes back
// unchanged. Booleans read back in capitals, a string key holding "=" may
// read back as a reference whose text is rewritten, a key named twice may
// change places, and a reference key must itself be in its read-back form.
Boolean readsBack(const CIMObjectPathRep& rep) {
    if (rep.className.isNull() || (rep.host.size() && !isValidHostName(rep.host)) ||
        (rep.host.size() && rep.nameSpace.isNull()) ||
        rep.nameSpace.getString().find(Char16('.')) != PEG_NOT_FOUND)
        return false;
    const Array<CIMKeyBinding>& keys = rep.keyBindings;
    for (Uint32 i = 0; i < keys.size(); i++) {
        if (i && !keyNameLess(keys[i - 1], keys[i]))
            return false;
        const String& value = keys[i].getValue();
        switch (keys[i].getType()) {
        case CIMKeyBinding::BOOLEAN:
            if (!String::equal(value, "TRUE") && !String::equal(value, "FALSE"))
                return false;
            break;
        case CIMKeyBinding::NUMERIC: {
            // As the reader takes an unquoted value that is no boolean.
            std::string number = static_cast<const char*>(value.getCString());
            Sint64 negative = 0;
            Uint64 positive = 0;
            if (number.empty() || !(number[0] == '-' ? parseSignedKeyNumber(number, false, negative)
                                                     : parseUnsignedKeyNumber(number, positive)))
                return false;
            break;
        }
        case CIMKeyBinding::STRING: {
            const Char16* units = value.getChar16Data();
            for (Uint32 u = 0; u < value.size(); u++) {
                const Uint16 unit = Uint16(units[u]);
                if (unit == '=' || (unit >= 0xD800 && unit <= 0xDFFF))
                    return false;
            }
            break;
        }
        case CIMKeyBinding::REFERENCE:
            if (!RepAccess::rep(keys[i])->canonicalReference)
                return false;
            break;
        }
    }
    return true;
}

} // namespace

CIMObjectPath::CIMObjectPath() : _rep(new CIMObjectPathRep()) {}

CIMObjectPath::CIMObjectPath(const CIMObjectPath& x) : _rep(x._rep) { retainRep(_rep); }

CIMObjectPath::CIMObjectPath(const String& objectName) : _rep(new CIMObjectPathRep()) {
    try {
        set(objectName);
    } catch (...) {
        releaseRep(_rep);
        throw;
    }
}

CIMObjectPath::CIMObjectPath(const String& host, const CIMNamespaceName& nameSpace,
                             const CIMName& className, const Array<CIMKeyBinding>& keyBindings)
    : _rep(new CIMObjectPathRep()) {
    try {
        set(host, nameSpace, className, keyBindings);
    } catch (...) {
        releaseRep(_rep);
        throw;
    }
}

CIMObjectPath::~CIMObjectPath() { releaseRep(_rep); }

CIMObjectPath& CIMObjectPath::operator=(const CIMObjectPath& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMObjectPath& CIMObjectPath::operator=(const String& objectName) {
    set(objectName);
    return *this;
}

// Every change goes through here first, which is where the kept text goes.
void CIMObjectPath::_detach() {
    if (_rep->refs.load(std::memory_order_acquire) > 1) {
        CIMObjectPathRep* copy = new CIMObjectPathRep(*_rep);
        releaseRep(_rep);
        _rep = copy;
    } else {
        _rep->forgetText();
    }
}

void CIMObjectPath::clear() {
    _detach();
    _rep->host.clear();
    _rep->nameSpace.clear();
    _rep->className.clear();
    _rep->keyBindings.clear();
}

// The keys are stored before they are normalised: a reference key that is
// no path throws and leaves them stored as given, as OpenPegasus does.
void CIMObjectPath::set(const String& host, const CIMNamespaceName& nameSpace,
                        const CIMName& className, const Array<CIMKeyBinding>& keyBindings) {
    checkHost(host);
    _detach();
    _rep->host = host;
    _rep->nameSpace = nameSpace;
    _rep->className = className;
    _rep->keyBindings = keyBindings;
    normaliseKeyBindings(_rep->keyBindings);
}

// A text that fails to parse leaves the path holding the parts read before
// the fault, as OpenPegasus's does.
void CIMObjectPath::set(const String& objectName) {
    clear();
    ObjectPathParts parts;
    try {
        parseObjectPath(objectName, parts);
    } catch (...) {
        _rep->host = parts.host;
        _rep->nameSpace = parts.nameSpace;
        _rep->className = parts.className;
        _rep->keyBindings = parts.keyBindings;
        throw;
    }
    set(parts.host, parts.nameSpace, parts.className, parts.keyBindings);
}

const String& CIMObjectPath::getHost() const { return _rep->host; }

void CIMObjectPath::setHost(const String& host) {
    if (host.size() && !isValidHostName(host) && !String::equal(host, localHostName()))
        throw MalformedObjectNameException(host);
    _detach();
    _rep->host = host;
}

const CIMNamespaceName& CIMObjectPath::getNameSpace() const { return _rep->nameSpace; }

void CIMObjectPath::setNameSpace(const CIMNamespaceName& nameSpace) {
    _detach();
    _rep->nameSpace = nameSpace;
}

const CIMName& CIMObjectPath::getClassName() const { return _rep->className; }

void CIMObjectPath::setClassName(const CIMName& className) {
    _detach();
    _rep->className = className;
}

const Array<CIMKeyBinding>& CIMObjectPath::getKeyBindings() const { return _rep->keyBindings; }

void CIMObjectPath::setKeyBindings(const Array<CIMKeyBinding>& keyBindings) {
    _detach();
    _rep->keyBindings = keyBindings;
    normaliseKeyBindings(_rep->keyBindings);
}

String CIMObjectPath::toString() const {
    if (const PathText* kept = _rep->text.load(std::memory_order_acquire))
        return kept->text;
    return writeText(*_rep);
}

String referenceText(const CIMObjectPath& path, Boolean& canonical) {
    CIMObjectPathRep* rep = RepAccess::rep(path);
    PathText* kept = rep->text.load(std::memory_order_acquire);
    if (!kept) {
        std::unique_ptr<PathText> made(new PathText{writeText(*rep), readsBack(*rep)});
        if (rep->text.compare_exchange_strong(kept, made.get(), std::memory_order_acq_rel,
                                              std::memory_order_acquire))
            kept = made.release();
    }
    canonical = kept->readsBack;
    return kept->text;
}

Boolean CIMObjectPath::identical(const CIMObjectPath& x) const {
    const CIMObjectPathRep* mine = _rep;
    const CIMObjectPathRep* theirs = x._rep;
    if (mine == theirs)
        return true;
    if (!String::equalNoCase(mine->host, theirs->host) ||
        !mine->nameSpace.equal(theirs->nameSpace) || !mine->className.equal(theirs->className) ||
        mine->keyBindings.size() != theirs->keyBindings.size())
        return false;
    for (Uint32 i = 0; i < mine->keyBindings.size(); i++) {
        if (!(mine->keyBindings[i] == theirs->keyBindings[i]))
            return false;
    }
    return true;
}

Uint32 CIMObjectPath::makeHashCode() const {
    String text = canonicalText(*this);
    // FNV-1a over the UTF-16 units.
    Uint32 hash = 2166136261u;
    for (Uint32 i = 0; i < text.size(); i++) {
        hash ^= Uint16(text[i]);
        hash *= 16777619u;
    }
    return hash;
}

Boolean operator==(const CIMObjectPath& x, const CIMObjectPath& y) { return x.identical(y); }

Boolean operator!=(const CIMObjectPath& x, const CIMObjectPath& y) { return !x.identical(y); }

PEGASUS_NAMESPACE_END

namespace vexa::cim {

std::string_view keptEncoding(const Pegasus::CIMObjectPath& path, std::uint32_t form) {
    return Pegasus::RepAccess::rep(path)->encoding.find(form, false);
}

bool keepEncoding(const Pegasus::CIMObjectPath& path, std::uint32_t form, std::string_view bytes) {
    return Pegasus::RepAccess::rep(path)->encoding.keep(form, bytes);
}

} // namespace vexa::cim
