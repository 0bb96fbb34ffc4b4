#include "vexa/host/ProviderLibrary.h"

#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>

#include <dlfcn.h>

PEGASUS_USING_PEGASUS;

namespace vexa::host {

namespace {

typedef CIMProvider* (*CreateProviderFunction)(const String&);
typedef void (*StopServerFunction)(int);

} // namespace

std::string currentExceptionText() {
    try {
        throw;
    } catch (const CIMException& error) {
        std::string text = (const char*)error.getMessage().getCString();
        std::string code = cimStatusCodeToString(error.getCode());
        return text.empty() ? code : code + ": " + text;
    } catch (const Exception& error) {
        return (const char*)error.getMessage().getCString();
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "Unknown error.";
    }
}

ProviderLibrary::ProviderLibrary(const std::string& path, const std::string& providerName) {
    library_ = dlopen(path.c_str(), RTLD_LAZY | RTLD_GLOBAL);
    if (library_ == nullptr) {
        const char* reason = dlerror();
        throw std::runtime_error("cannot load the provider library " + path + ": " +
                                 (reason ? reason : "unknown reason") +
                                 " (build it, or name it with --provider PATH)");
    }
    auto create =
        reinterpret_cast<CreateProviderFunction>(dlsym(library_, "PegasusCreateProvider"));
    if (create == nullptr) {
        throw std::runtime_error(path + " is not a provider library: it has no entry point "
                                        "PegasusCreateProvider");
    }
    provider_ = create(String(providerName.c_str()));
    if (provider_ == nullptr) {
        throw std::runtime_error(path + " does not make a provider named " + providerName);
    }
    instances_ = dynamic_cast<CIMInstanceProvider*>(provider_);
    associations_ = dynamic_cast<CIMAssociationProvider*>(provider_);
    indications_ = dynamic_cast<CIMIndicationProvider*>(provider_);
    methods_ = dynamic_cast<CIMMethodProvider*>(provider_);
    try {
        provider_->initialize(cimom_);
    } catch (...) {
        std::string reason = currentExceptionText();
        try {
            provider_->terminate();
        } catch (...) {
        }
        provider_ = nullptr;
        // A provider that says nothing of its own throws a bare success code
        // and leaves the reason to its log.
        bool saidNothing = reason == cimStatusCodeToString(CIM_ERR_SUCCESS);
        throw std::runtime_error("provider " + providerName + " failed to initialise" +
                                 (saidNothing ? std::string() : " (" + reason + ")"));
    }
}

void ProviderLibrary::shutDown() {
    if (provider_ != nullptr) {
        CIMProvider* provider = provider_;
        provider_ = nullptr;
        instances_ = nullptr;
        associations_ = nullptr;
        indications_ = nullptr;
        methods_ = nullptr;
        try {
            provider->terminate();
        } catch (...) {
        }
    }
    if (library_ != nullptr) {
        auto stop = reinterpret_cast<StopServerFunction>(dlsym(library_, "stopServer"));
        if (stop != nullptr) {
            stop(0);
        }
    }
}

} // namespace vexa::host
