#include "NameTable.h"

#include <mutex>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

namespace {

// Names come from schemas and providers, but also from clients' requests;
// the bounds keep a stream of made-up names from growing the table without
// end (past them, names are simply not shared).
const Uint32 MAX_NAMES = 16384;
const Uint32 MAX_NAME_UNITS = 256;

template <class Unit>
Uint32 unitValue(Unit unit) {
    if constexpr (sizeof(Unit) == 1)
        return static_cast<unsigned char>(unit);
    else
        return Uint16(unit);
}

// FNV-1a over the code units, so ASCII bytes and their UTF-16 form hash
// alike.
template <class Unit>
Uint32 hashUnits(const Unit* units, Uint32 n) {
    Uint32 hash = 2166136261u;
    for (Uint32 i = 0; i < n; i++) {
        hash ^= unitValue(units[i]);
        hash *= 16777619u;
    }
    return hash;
}

template <class Unit>
bool sameUnits(const String& name, const Unit* units, Uint32 n) {
    if (name.size() != n)
        return false;
    const Char16* stored = name.getChar16Data();
    for (Uint32 i = 0; i < n; i++) {
        if (Uint16(stored[i]) != unitValue(units[i]))
            return false;
    }
    return true;
}

class NameTable {
public:
    // Never destroyed: names may still be made while other libraries'
    // static objects are torn down at exit.
    static NameTable& shared() {
        static NameTable* const table = new NameTable();
        return *table;
    }

    template <class Unit, class MakeName>
    String find(const Unit* units, Uint32 n, MakeName makeName) {
        if (n == 0 || n > MAX_NAME_UNITS)
            return makeName();
        Uint32 hash = hashUnits(units, n);
        Slot& recent = recentNames()[hash % RECENT_NAMES];
        if (recent.hash == hash && sameUnits(recent.name, units, n))
            return recent.name;
        std::lock_guard<std::mutex> guard(_lock);
        Uint32 mask = Uint32(_slots.size()) - 1;
        Uint32 index = hash & mask;
        for (; _slots[index].name.size() != 0; index = (index + 1) & mask) {
            if (_slots[index].hash == hash && sameUnits(_slots[index].name, units, n)) {
                recent = _slots[index];
                return _slots[index].name;
            }
        }
        if (_count >= MAX_NAMES)
            return makeName();
        String name = makeName();
        _slots[index].hash = hash;
        _slots[index].name = name;
        _count++;
        recent = _slots[index];
        if (_count * 2 > _slots.size())
            grow();
        return name;
    }

private:
    struct Slot {
        Uint32 hash = 0;
        String name;
    };

    // Each thread's recently found names, looked at before the shared table:
    // providers make the same few dozen property names for every instance
    // they build, and would otherwise take the table's lock for each. Only
    // names the table holds are kept, so both give the same answers.
    static const Uint32 RECENT_NAMES = 251;
    static Slot* recentNames() {
        thread_local Slot recent[RECENT_NAMES];
        return recent;
    }

    NameTable() : _slots(1024) {}

    void grow() {
        std::vector<Slot> old(_slots.size() * 2);
        old.swap(_slots);
        Uint32 mask = Uint32(_slots.size()) - 1;
        for (Slot& slot : old) {
            if (slot.name.size() == 0)
                continue;
            Uint32 index = slot.hash & mask;
            while (_slots[index].name.size() != 0)
                index = (index + 1) & mask;
            _slots[index].hash = slot.hash;
            _slots[index].name = slot.name;
        }
    }

    std::mutex _lock;
    std::vector<Slot> _slots;
    Uint32 _count = 0;
};

} // namespace

String internName(const String& name) {
    return NameTable::shared().find(name.getChar16Data(), name.size(), [&name] { return name; });
}

String internAsciiName(const char* text, Uint32 n) {
    return NameTable::shared().find(text, n, [text, n] { return String(text, n); });
}

PEGASUS_NAMESPACE_END
