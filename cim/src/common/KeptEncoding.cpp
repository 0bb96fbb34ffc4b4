#include "CIMObjectRep.h"
#include "EncodingSlot.h"
#include "RepAccess.h"
#include <vexa/cim/KeptEncoding.h>

#include <cstring>
#include <new>

PEGASUS_NAMESPACE_BEGIN

struct KeptBytes {
    std::uint32_t form;
    // Instance forms are good while no held value changed since they were
    // kept; path forms hold no properties and ignore it.
    Uint64 valueChanges;
    std::size_t size;
    char* bytes() { return reinterpret_cast<char*>(this + 1); }
};

namespace {

std::atomic<Uint64> valueChanges{0};
std::atomic<std::size_t> budget{0};
std::atomic<std::size_t> used{0};

bool reserve(std::size_t bytes) {
    std::size_t now = used.load(std::memory_order_relaxed);
    do {
        if (bytes > budget.load(std::memory_order_relaxed) ||
            now > budget.load(std::memory_order_relaxed) - bytes)
            return false;
    } while (!used.compare_exchange_weak(now, now + bytes, std::memory_order_relaxed));
    return true;
}

} // namespace

void heldValueChanged() { valueChanges.fetch_add(1, std::memory_order_acq_rel); }

std::string_view EncodingSlot::find(std::uint32_t form, bool valuesWatched) const {
    KeptBytes* block = block_.load(std::memory_order_acquire);
    if (block == nullptr || block->form != form ||
        (valuesWatched && block->valueChanges != valueChanges.load(std::memory_order_acquire)))
        return {};
    return std::string_view(block->bytes(), block->size);
}

bool EncodingSlot::keep(std::uint32_t form, std::string_view bytes) {
    if (bytes.empty() || block_.load(std::memory_order_acquire) != nullptr)
        return false;
    const std::size_t total = sizeof(KeptBytes) + bytes.size();
    if (!reserve(total))
        return false;
    KeptBytes* block = static_cast<KeptBytes*>(::operator new(total));
    block->form = form;
    block->valueChanges = valueChanges.load(std::memory_order_acquire);
    block->size = bytes.size();
    std::memcpy(block->bytes(), bytes.data(), bytes.size());
    KeptBytes* none = nullptr;
    if (block_.compare_exchange_strong(none, block, std::memory_order_acq_rel))
        return true;
    release(block); // another reader kept the same form first
    return false;
}

void EncodingSlot::release(KeptBytes* block) {
    if (block == nullptr)
        return;
    used.fetch_sub(sizeof(KeptBytes) + block->size, std::memory_order_relaxed);
    ::operator delete(block);
}

PEGASUS_NAMESPACE_END

namespace vexa::cim {

using Pegasus::RepAccess;

std::string_view keptEncoding(const Pegasus::CIMConstInstance& instance, std::uint32_t form) {
    const Pegasus::CIMObjectRep* rep = RepAccess::rep(instance);
    if (rep == nullptr)
        return {};
    return rep->encoding.find(form, true);
}

bool keepEncoding(const Pegasus::CIMConstInstance& instance, std::uint32_t form,
                  std::string_view bytes) {
    Pegasus::CIMObjectRep* rep = RepAccess::rep(instance);
    return rep != nullptr && rep->encoding.keep(form, bytes);
}

void setKeptEncodingBudget(std::size_t bytes) {
    Pegasus::budget.store(bytes, std::memory_order_relaxed);
}

std::size_t keptEncodingBytes() { return Pegasus::used.load(std::memory_order_relaxed); }

} // namespace vexa::cim
