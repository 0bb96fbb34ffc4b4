#include <Pegasus/Common/OperationContext.h>

#include <vector>

PEGASUS_NAMESPACE_BEGIN

// The context owns clones of the containers given to it and releases them
// with destroy(), so each container decides how it was allocated.
class OperationContextRep {
public:
    std::vector<OperationContext::Container*> containers;

    OperationContextRep() = default;
    OperationContextRep(const OperationContextRep& other) {
        containers.reserve(other.containers.size());
        try {
            for (const OperationContext::Container* container : other.containers) {
                containers.push_back(container->clone());
            }
        } catch (...) {
            releaseAll();
            throw;
        }
    }
    OperationContextRep& operator=(const OperationContextRep&) = delete;
    ~OperationContextRep() { releaseAll(); }

    void releaseAll() {
        for (OperationContext::Container* container : containers) {
            container->destroy();
        }
        containers.clear();
    }

    size_t indexOf(const String& name) const {
        for (size_t i = 0; i < containers.size(); ++i) {
            if (String::equal(containers[i]->getName(), name)) {
                return i;
            }
        }
        return containers.size();
    }
};

namespace {

const char objectNotFound[] = "object not found";
const char objectAlreadyExists[] = "object already exists.";

} // namespace

OperationContext::Container::~Container() {}

OperationContext::OperationContext() : _rep(new OperationContextRep) {}

OperationContext::OperationContext(const OperationContext& context)
    : _rep(new OperationContextRep(*context._rep)) {}

OperationContext::~OperationContext() { delete _rep; }

OperationContext& OperationContext::operator=(const OperationContext& context) {
    if (this != &context) {
        // Clone first so that a failing clone leaves this context untouched.
        OperationContextRep* copy = new OperationContextRep(*context._rep);
        delete _rep;
        _rep = copy;
    }
    return *this;
}

void OperationContext::clear() { _rep->releaseAll(); }

const OperationContext::Container& OperationContext::get(const String& containerName) const {
    const size_t index = _rep->indexOf(containerName);
    if (index == _rep->containers.size()) {
        throw Exception(objectNotFound);
    }
    return *_rep->containers[index];
}

Boolean OperationContext::contains(const String& containerName) const {
    return _rep->indexOf(containerName) != _rep->containers.size();
}

void OperationContext::set(const Container& container) {
    const size_t index = _rep->indexOf(container.getName());
    if (index == _rep->containers.size()) {
        throw Exception(objectNotFound);
    }
    Container* replacement = container.clone();
    _rep->containers[index]->destroy();
    _rep->containers[index] = replacement;
}

void OperationContext::insert(const Container& container) {
    if (_rep->indexOf(container.getName()) != _rep->containers.size()) {
        throw Exception(objectAlreadyExists);
    }
    Container* copy = container.clone();
    try {
        _rep->containers.push_back(copy);
    } catch (...) {
        copy->destroy();
        throw;
    }
}

void OperationContext::remove(const String& containerName) {
    const size_t index = _rep->indexOf(containerName);
    if (index == _rep->containers.size()) {
        throw Exception(objectNotFound);
    }
    _rep->containers[index]->destroy();
    _rep->containers.erase(_rep->containers.begin() + static_cast<std::ptrdiff_t>(index));
}

PEGASUS_NAMESPACE_END
