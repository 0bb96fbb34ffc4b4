// Internal: where an instance or a path keeps its encoded form (see
// vexa/cim/KeptEncoding.h).
#ifndef Pegasus_EncodingSlot_h
#define Pegasus_EncodingSlot_h

#include <Pegasus/Common/Config.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>

PEGASUS_NAMESPACE_BEGIN

struct KeptBytes;

class EncodingSlot {
public:
    EncodingSlot() = default;
    // A copy is a new object, made to be changed: it keeps nothing.
    EncodingSlot(const EncodingSlot&) {}
    EncodingSlot& operator=(const EncodingSlot&) = delete;
    ~EncodingSlot() { drop(); }

    // Empty when nothing is kept for `form`; with `valuesWatched`, also when
    // a held value changed since the bytes were kept.
    std::string_view find(std::uint32_t form, bool valuesWatched) const;
    bool keep(std::uint32_t form, std::string_view bytes);
    // By the object's sole changer, so no reader holds the bytes meanwhile.
    void drop() {
        if (block_.load(std::memory_order_relaxed) != nullptr)
            release(block_.exchange(nullptr, std::memory_order_acq_rel));
    }

private:
    static void release(KeptBytes* block);
    std::atomic<KeptBytes*> block_{nullptr};
};

// A property that an instance holds had its value set. Which instances hold
// it is not recorded, so every kept instance form is out of date from here.
void heldValueChanged();

PEGASUS_NAMESPACE_END

#endif
