// Hash indexes kept beside the instance cache's arrays, so that look-ups by
// key text, by object path and by association end cost O(1) or O(matches)
// instead of a walk over the whole array.
//
// An index never changes what a look-up answers: it only narrows the walk to
// the positions whose hash matches, in ascending order, and every candidate
// is then checked with the same comparison as the plain walk. The first
// match in array order therefore still wins, and an index that is not fresh
// is simply not used (the caller walks the array).
//
// Freshness: an index keeps a shared copy of the array it was built from.
// While it does, any change to the cached array (append, clear, removal,
// replacement, even a non-const element access) makes that array detach
// from the shared storage, so its data pointer no longer matches the copy.
// Nothing has to remember to invalidate an index.
#ifndef VEXA_PROVIDER_CACHEINDEXES_H
#define VEXA_PROVIDER_CACHEINDEXES_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/String.h>

#include <cstddef>
#include <cstdint>
#include <vector>

// Positions grouped by a 32-bit hash; each group lists its positions in
// ascending order.
class HashedPositions {
public:
    // entries: (hash, position) in ascending position order; a position may
    // repeat (an association refers to the same object twice).
    void build(const std::vector<std::pair<std::uint32_t, std::uint32_t>>& entries);

    // Calls visit(position) for the positions stored with this hash, in
    // ascending order, each once, until visit returns true.
    template <class Visit>
    void forEach(std::uint32_t hash, Visit visit) const {
        if (starts_.empty())
            return;
        const std::uint32_t bucket = hash & mask_;
        std::uint32_t last = UINT32_MAX;
        for (std::uint32_t slot = starts_[bucket]; slot < starts_[bucket + 1]; slot++) {
            if (hashes_[slot] != hash || positions_[slot] == last)
                continue;
            last = positions_[slot];
            if (visit(last))
                return;
        }
    }

private:
    std::uint32_t mask_ = 0;
    std::vector<std::uint32_t> starts_; // bucket -> first slot; one more than buckets
    std::vector<std::uint32_t> hashes_;
    std::vector<std::uint32_t> positions_;
};

// A hash of an object path that agrees with CIMObjectPath equality: equal
// paths always hash alike (different paths may collide).
std::uint32_t pathHash(const Pegasus::CIMObjectPath& path);
// A hash of a text that agrees with exact comparison.
std::uint32_t textHash(const Pegasus::String& text);

// One array's index; kind says what it is keyed by.
class ArrayIndex {
public:
    enum Kind {
        ByKeyText,  // the text of one property (look-ups by name)
        ByPath,     // the instance's object path
        ByReference // every reference property's path (association ends)
    };

    ArrayIndex(const Pegasus::Array<Pegasus::CIMInstance>* array, Kind kind,
               const char* keyProperty = 0);

    const Pegasus::Array<Pegasus::CIMInstance>* array() const { return array_; }
    Kind kind() const { return kind_; }
    const Pegasus::CIMName& keyProperty() const { return keyProperty_; }
    // Whether the index describes the array as it stands now.
    bool fresh() const;
    void rebuild();
    void drop();
    const HashedPositions& positions() const { return positions_; }

private:
    const Pegasus::Array<Pegasus::CIMInstance>* array_;
    Kind kind_;
    Pegasus::CIMName keyProperty_;
    bool built_ = false;
    Pegasus::Array<Pegasus::CIMInstance> seen_; // shared copy of what was indexed
    HashedPositions positions_;
};

class VexaProvider;

// The indexes of one provider's cache: names of nodes, disks and the other
// elements the look-ups search by key text; the path of every instance that
// getInstance or an association's far end may name; both ends of every
// cached association list.
class CacheIndexes {
public:
    explicit CacheIndexes(VexaProvider& provider);

    // The index of that kind kept for the array (and key property), or null.
    ArrayIndex* find(const Pegasus::Array<Pegasus::CIMInstance>& array, ArrayIndex::Kind kind,
                     const Pegasus::CIMName* keyProperty = 0);
    // Rebuilds every index that no longer describes its array. Only the
    // holder of the write lock may call it. When the stale indexes cover at
    // least the given number of instances, a second thread shares the work.
    void refreshStale();
    void setSecondThreadMinimum(std::size_t instances) { secondThreadMinimum_ = instances; }
    // Lets go of every index (and of the arrays they share), e.g. before a
    // full pass replaces the whole cache.
    void dropAll();

private:
    std::vector<ArrayIndex> indexes_;
    std::size_t secondThreadMinimum_ = 50000;
};

#endif
