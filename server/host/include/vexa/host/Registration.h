// The provider's registration (mof/VexaProviderRegistration.mof), compiled
// into the server so that it knows the served classes without the file.
#ifndef VEXA_HOST_REGISTRATION_H
#define VEXA_HOST_REGISTRATION_H

namespace vexa::host {

extern const char* const PROVIDER_REGISTRATION_SOURCE;
const char* providerRegistrationMof();

} // namespace vexa::host

#endif
