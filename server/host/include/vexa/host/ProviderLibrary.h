// A provider library loaded the way a CIM server loads one: dlopen with
// RTLD_GLOBAL, the provider made by its exported PegasusCreateProvider, its
// interfaces found by dynamic_cast, initialised with a CIMOMHandle.
#ifndef VEXA_HOST_PROVIDERLIBRARY_H
#define VEXA_HOST_PROVIDERLIBRARY_H

#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMIndicationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>
#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/CIMProvider.h>

#include <stdexcept>
#include <string>

namespace vexa::host {

class ProviderLibrary {
public:
    // Loads `path`, creates the provider `providerName` and initialises it.
    // Throws std::runtime_error saying which step failed and why.
    ProviderLibrary(const std::string& path, const std::string& providerName);
    // The library stays loaded for the life of the process: its threads may
    // still be running, and nothing joins them.
    ~ProviderLibrary() = default;
    ProviderLibrary(const ProviderLibrary&) = delete;
    ProviderLibrary& operator=(const ProviderLibrary&) = delete;

    // Null when the provider does not implement the interface.
    Pegasus::CIMInstanceProvider* instances() const { return instances_; }
    Pegasus::CIMAssociationProvider* associations() const { return associations_; }
    Pegasus::CIMIndicationProvider* indications() const { return indications_; }
    Pegasus::CIMMethodProvider* methods() const { return methods_; }

    // Calls terminate() (the provider deletes itself) and then the library's
    // exported stopServer(0) when it has one, which lets its own threads end.
    // Afterwards the interfaces must not be used. Safe to call twice.
    void shutDown();

private:
    void* library_ = nullptr;
    Pegasus::CIMProvider* provider_ = nullptr;
    Pegasus::CIMOMHandle cimom_;
    Pegasus::CIMInstanceProvider* instances_ = nullptr;
    Pegasus::CIMAssociationProvider* associations_ = nullptr;
    Pegasus::CIMIndicationProvider* indications_ = nullptr;
    Pegasus::CIMMethodProvider* methods_ = nullptr;
};

// Text of any exception a provider may throw (Pegasus::Exception is not a
// std::exception); call inside a catch block.
std::string currentExceptionText();

} // namespace vexa::host

#endif
