// Hash indexes beside the instance cache's arrays.
#include "cacheIndexes.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <exception>
#include <system_error>
#include <thread>

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include "cimProvider.h"

PEGASUS_USING_PEGASUS;

namespace {

const std::uint32_t FNV_OFFSET = 2166136261u;
const std::uint32_t FNV_PRIME = 16777619u;

inline std::uint32_t mix(std::uint32_t hash, std::uint32_t unit) {
    return (hash ^ unit) * FNV_PRIME;
}

// Names are compared without regard to ASCII case, so they are hashed folded.
inline std::uint32_t foldAscii(std::uint32_t unit) {
    return (unit >= 'A' && unit <= 'Z') ? unit + ('a' - 'A') : unit;
}

// Names are hashed a unit at a time, folded.
std::uint32_t foldedTextHash(const String& text) {
    std::uint32_t hash = FNV_OFFSET;
    const Char16* units = text.getChar16Data();
    const Uint32 size = text.size();
    for (Uint32 i = 0; i < size; i++)
        hash = mix(hash, foldAscii(Uint16(units[i])));
    return hash;
}

// Values compared exactly are hashed four units at a time: a pass hashes
// the key texts of hundreds of thousands of paths.
std::uint32_t exactTextHash(const String& text) {
    const Char16* units = text.getChar16Data();
    const Uint32 size = text.size();
    std::uint64_t hash = 0xcbf29ce484222325ull ^ size;
    Uint32 i = 0;
    for (; i + 4 <= size; i += 4) {
        std::uint64_t word;
        std::memcpy(&word, units + i, sizeof word);
        hash = (hash ^ word) * 0x100000001b3ull;
        hash ^= hash >> 29;
    }
    for (; i < size; i++)
        hash = (hash ^ Uint16(units[i])) * 0x100000001b3ull;
    hash ^= hash >> 32;
    return static_cast<std::uint32_t>(hash * 0x9e3779b97f4a7c15ull >> 32);
}

// A reference key holds a path text. Two texts may name the same path and
// still differ: in the case of host, namespace, class and key names, in the
// spelling of numbers and booleans, and in any nested reference. Only the
// quoted values are hashed, folded; a quoted value holding an escape or an
// "=" may be a nested reference, whose text varies in the same ways, and is
// left out.
std::uint32_t referenceTextHash(const String& text) {
    std::uint32_t hash = FNV_OFFSET;
    const Char16* units = text.getChar16Data();
    const Uint32 size = text.size();
    Uint32 i = 0;
    while (i < size) {
        if (Uint16(units[i]) != '"') {
            i++;
            continue;
        }
        Uint32 end = i + 1;
        bool plain = true;
        while (end < size && Uint16(units[end]) != '"') {
            const Uint16 unit = Uint16(units[end]);
            if (unit == '\\') {
                plain = false;
                end++; // the escaped unit cannot end the value
            } else if (unit == '=') {
                plain = false;
            }
            end++;
        }
        if (plain) {
            for (Uint32 u = i + 1; u < end && u < size; u++)
                hash = mix(hash, foldAscii(Uint16(units[u])));
            hash = mix(hash, 0x10000u);
        }
        i = end + 1;
    }
    return hash;
}

} // namespace

// Remembers hashes by the address of what was hashed, in a fixed number of
// slots. Only for one rebuild: the index's copy of the array holds every
// instance hashed, so no address is freed and reused meanwhile. A full pass
// gives every association the text of its ends as shared by all the
// associations of those ends, and every reference property the end's own
// path, so most are found here.
class HashMemo {
public:
    // Room for about as many hashes as the array has instances.
    explicit HashMemo(std::size_t instances)
        : slots_(std::min<std::size_t>(instances, 65535) + 1) {}

    template <class Compute>
    std::uint32_t get(const void* first, const void* second, Compute compute) {
        const std::uintptr_t key = reinterpret_cast<std::uintptr_t>(first) ^
                                   (reinterpret_cast<std::uintptr_t>(second) << 1);
        Slot& slot = slots_[(key >> 4) % slots_.size()];
        if (slot.first != first || slot.second != second || !slot.used) {
            slot.first = first;
            slot.second = second;
            slot.hash = compute();
            slot.used = true;
        }
        return slot.hash;
    }

private:
    struct Slot {
        const void* first = nullptr;
        const void* second = nullptr;
        std::uint32_t hash = 0;
        bool used = false;
    };
    std::vector<Slot> slots_;
};

namespace {

// What a memo entry for a text holds, told apart by the second key.
const char FOLDED = 'f';
const char EXACT = 'e';

std::uint32_t foldedHash(const String& text, HashMemo* texts) {
    return texts
               ? texts->get(text.getChar16Data(), &FOLDED, [&text] { return foldedTextHash(text); })
               : foldedTextHash(text);
}

std::uint32_t exactHash(const String& text, HashMemo* texts) {
    return texts ? texts->get(text.getChar16Data(), &EXACT, [&text] { return exactTextHash(text); })
                 : exactTextHash(text);
}

// Host and namespace are left out: cached paths all share them, and the
// candidates are compared in full anyway. Numeric keys are left out because
// equal numbers may be written differently. texts, when given, remembers
// the hashes of the texts by their address: names and many values are
// shared by many paths.
std::uint32_t hashPath(const CIMObjectPath& path, HashMemo* texts) {
    std::uint32_t hash = mix(FNV_OFFSET, foldedHash(path.getClassName().getString(), texts));
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    hash = mix(hash, keys.size());
    for (Uint32 i = 0; i < keys.size(); i++) {
        const CIMKeyBinding& key = keys[i];
        hash = mix(hash, foldedHash(key.getName().getString(), texts));
        hash = mix(hash, static_cast<std::uint32_t>(key.getType()));
        switch (key.getType()) {
        case CIMKeyBinding::STRING:
            hash = mix(hash, exactHash(key.getValue(), texts));
            break;
        case CIMKeyBinding::BOOLEAN:
            hash = mix(hash, foldedTextHash(key.getValue()));
            break;
        case CIMKeyBinding::REFERENCE: {
            const String& text = key.getValue();
            hash = mix(hash, texts ? texts->get(text.getChar16Data(), nullptr,
                                                [&text] { return referenceTextHash(text); })
                                   : referenceTextHash(text));
            break;
        }
        case CIMKeyBinding::NUMERIC:
            break;
        }
    }
    return hash;
}

// The path's own hash, remembered by its class name and key list: paths
// sharing both hash alike, whatever their host and namespace.
std::uint32_t hashPathOnce(const CIMObjectPath& path, HashMemo& paths, HashMemo& texts) {
    return paths.get(path.getClassName().getString().getChar16Data(),
                     path.getKeyBindings().getData(), [&] { return hashPath(path, &texts); });
}

} // namespace

std::uint32_t pathHash(const CIMObjectPath& path) { return hashPath(path, nullptr); }

std::uint32_t textHash(const String& text) { return exactTextHash(text); }

void HashedPositions::build(const std::vector<std::pair<std::uint32_t, std::uint32_t>>& entries) {
    std::uint32_t buckets = 1;
    while (buckets < entries.size() && buckets < (1u << 31))
        buckets <<= 1;
    mask_ = buckets - 1;
    starts_.assign(buckets + 1, 0);
    for (const auto& entry : entries)
        starts_[(entry.first & mask_) + 1]++;
    for (std::uint32_t b = 0; b < buckets; b++)
        starts_[b + 1] += starts_[b];
    hashes_.resize(entries.size());
    positions_.resize(entries.size());
    std::vector<std::uint32_t> next(starts_.begin(), starts_.end() - 1);
    // Filled in input order, so each bucket keeps ascending positions.
    for (const auto& entry : entries) {
        const std::uint32_t slot = next[entry.first & mask_]++;
        hashes_[slot] = entry.first;
        positions_[slot] = entry.second;
    }
}

ArrayIndex::ArrayIndex(const Array<CIMInstance>* array, Kind kind, const char* keyProperty)
    : array_(array), kind_(kind), keyProperty_(keyProperty ? CIMName(keyProperty) : CIMName()) {}

bool ArrayIndex::fresh() const {
    return built_ && seen_.size() == array_->size() && seen_.getData() == array_->getData();
}

void ArrayIndex::drop() {
    built_ = false;
    seen_.clear();
    positions_ = HashedPositions();
}

void ArrayIndex::rebuild() {
    built_ = false; // until the new index is complete
    seen_ = *array_;
    const Array<CIMInstance>& items = seen_;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> entries;
    entries.reserve(kind_ == ByReference ? 2 * items.size() : items.size());
    HashMemo texts(items.size());
    HashMemo paths(kind_ == ByReference ? items.size() : 0);
    for (Uint32 i = 0; i < items.size(); i++) {
        const CIMInstance& instance = items[i];
        switch (kind_) {
        case ByKeyText: {
            const Uint32 at = instance.findProperty(keyProperty_);
            if (at != PEG_NOT_FOUND)
                entries.emplace_back(textHash(instance.getProperty(at).getValue().toString()), i);
            break;
        }
        case ByPath:
            entries.emplace_back(hashPath(instance.getPath(), &texts), i);
            break;
        case ByReference:
            for (Uint32 p = 0; p < instance.getPropertyCount(); p++) {
                CIMConstProperty property = instance.getProperty(p);
                const CIMValue& value = property.getValue();
                if (property.getType() != CIMTYPE_REFERENCE || value.isNull())
                    continue;
                CIMObjectPath end;
                value.get(end);
                entries.emplace_back(hashPathOnce(end, paths, texts), i);
            }
            break;
        }
    }
    positions_.build(entries);
    built_ = true;
}

CacheIndexes::CacheIndexes(VexaProvider& p) {
    typedef ArrayIndex I;
    // Look-ups by key text: findVexaInstIdx, findVexaInstance, getCorvaneInstIdx.
    indexes_.emplace_back(&p.clusters, I::ByKeyText, "vexaClusterName");
    indexes_.emplace_back(&p.nodes, I::ByKeyText, "vexaNodeName");
    indexes_.emplace_back(&p.nodes, I::ByKeyText, "vexaNodeIP");
    indexes_.emplace_back(&p.fileSystems, I::ByKeyText, "vexaFileSystemName");
    indexes_.emplace_back(&p.storagePools, I::ByKeyText, "vexaStgPoolName");
    indexes_.emplace_back(&p.disks, I::ByKeyText, "vexaDiskName");
    indexes_.emplace_back(&p.raidPhysicalDisks, I::ByKeyText, "DeviceID");
    indexes_.emplace_back(&p.raidVirtualDisks, I::ByKeyText, "Name");
    indexes_.emplace_back(&p.raidDeclusteredArrays, I::ByKeyText, "Name");
    // Look-ups by path: getInstance and the far ends of associations.
    const Array<CIMInstance>* byPath[] = {&p.registeredProfiles,
                                          &p.objectManagers,
                                          &p.computerSystems,
                                          &p.indicationFilters,
                                          &p.clusters,
                                          &p.nodes,
                                          &p.fileSystems,
                                          &p.storagePools,
                                          &p.disks,
                                          &p.fileSystemPerfs,
                                          &p.diskPerfs,
                                          &p.fsPerNodePerfs,
                                          &p.concreteJobs,
                                          &p.componentCS,
                                          &p.hostedFileSystems,
                                          &p.associatedStoragePools,
                                          &p.storageComponents,
                                          &p.nodeServingNsds,
                                          &p.nodeAccessesNsds,
                                          &p.freeNsds,
                                          &p.mounteds,
                                          &p.configManagers,
                                          &p.fileSystemManagers,
                                          &p.filesets,
                                          &p.associatedFilesets,
                                          &p.users,
                                          &p.groups,
                                          &p.filesetQuotas,
                                          &p.userQuotas,
                                          &p.groupQuotas};
    for (const Array<CIMInstance>* array : byPath)
        indexes_.emplace_back(array, I::ByPath);
    // Association ends: the cached association lists that associators and
    // associatorNames walk. The quota lists are rebuilt for every request
    // and walked once, so an index would not pay for itself there.
    const Array<CIMInstance>* byReference[] = {&p.objMgrConformsToProfile,
                                               &p.csConformsToProfile,
                                               &p.componentCS,
                                               &p.hostedFileSystems,
                                               &p.associatedStoragePools,
                                               &p.storageComponents,
                                               &p.nodeServingNsds,
                                               &p.nodeAccessesNsds,
                                               &p.freeNsds,
                                               &p.mounteds,
                                               &p.configManagers,
                                               &p.fileSystemManagers,
                                               &p.associatedFilesets,
                                               &p.userAssocs,
                                               &p.groupAssocs};
    for (const Array<CIMInstance>* array : byReference)
        indexes_.emplace_back(array, I::ByReference);
}

ArrayIndex* CacheIndexes::find(const Array<CIMInstance>& array, ArrayIndex::Kind kind,
                               const CIMName* keyProperty) {
    for (ArrayIndex& index : indexes_) {
        if (index.array() == &array && index.kind() == kind &&
            (keyProperty == 0 || index.keyProperty() == *keyProperty))
            return &index;
    }
    return 0;
}

void CacheIndexes::refreshStale() {
    std::vector<ArrayIndex*> stale;
    std::size_t instances = 0;
    for (ArrayIndex& index : indexes_) {
        if (!index.fresh()) {
            stale.push_back(&index);
            instances += index.array()->size();
        }
    }
    // After a full pass the stale indexes cover the whole cache, and their
    // rebuild is a walk over it that mostly waits for memory: a second
    // thread takes nearly half of it off the time the write lock is held.
    // After a small change a thread would cost more than it saves.
    if (instances < secondThreadMinimum_ || std::thread::hardware_concurrency() < 2) {
        for (ArrayIndex* index : stale)
            index->rebuild();
        return;
    }
    // Largest first, so that both threads run out of work at about the
    // same time.
    std::stable_sort(stale.begin(), stale.end(), [](const ArrayIndex* x, const ArrayIndex* y) {
        return x->array()->size() > y->array()->size();
    });
    std::atomic<std::size_t> next{0};
    auto rebuildNext = [&stale, &next] {
        for (std::size_t at; (at = next.fetch_add(1)) < stale.size();)
            stale[at]->rebuild();
    };
    std::exception_ptr helperFailure;
    std::thread helper;
    try {
        helper = std::thread([&rebuildNext, &helperFailure] {
            try {
                rebuildNext();
            } catch (...) {
                helperFailure = std::current_exception();
            }
        });
    } catch (const std::system_error&) {
        // No thread to be had: this one does all of it.
    }
    std::exception_ptr ownFailure;
    try {
        rebuildNext();
    } catch (...) {
        ownFailure = std::current_exception();
    }
    if (helper.joinable())
        helper.join();
    if (ownFailure)
        std::rethrow_exception(ownFailure);
    if (helperFailure)
        std::rethrow_exception(helperFailure);
}

void CacheIndexes::dropAll() {
    for (ArrayIndex& index : indexes_)
        index.drop();
}
