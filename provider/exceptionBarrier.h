// Where exceptions stop. A request of the CIM server may end in a CIM error,
// never in another exception; code on the provider's threads and in the
// management library's callbacks lets nothing out, since an exception that
// leaves a thread's function ends the whole server process.
#ifndef VEXA_PROVIDER_EXCEPTIONBARRIER_H
#define VEXA_PROVIDER_EXCEPTIONBARRIER_H

#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>

#include <qzantras/ts_log.h>

#include <cxxabi.h>

#include <exception>
#include <string>

// The text of a C++ exception as a CIM string: bytes outside printable ASCII
// become '?', since the text may be anything and String refuses bad UTF-8.
inline Pegasus::String exceptionText(const char* what) {
    std::string text;
    for (const char* p = what; *p != '\0'; ++p) {
        const unsigned char c = static_cast<unsigned char>(*p);
        text += (c >= 0x20 && c < 0x7f) ? static_cast<char>(c) : '?';
    }
    return Pegasus::String(text.c_str());
}

// Runs a request's body; a failure that is not already a CIM error is logged
// and answered as CIM_ERR_FAILED with its text. The locks the body took are
// released by their guards on the way out.
template <class Body>
void answerFailuresAsCimErrors(const char* function, Body&& body) {
    try {
        body();
    } catch (const Pegasus::CIMException&) {
        throw;
    } catch (const Pegasus::Exception& e) {
        ts_log(2, function, "request failed: %s\n", (const char*)e.getMessage().getCString());
        throw Pegasus::CIMException(Pegasus::CIM_ERR_FAILED, e.getMessage());
    } catch (const std::exception& e) {
        const Pegasus::String text = exceptionText(e.what());
        ts_log(2, function, "request failed: %s\n", (const char*)text.getCString());
        throw Pegasus::CIMException(Pegasus::CIM_ERR_FAILED, text);
    }
}

// Runs code on a thread of ours or of the library; a failure is logged and
// swallowed, and false returned. The unwinding of a cancelled or exiting
// thread passes through.
template <class Body>
bool containFailure(const char* function, Body&& body) {
    try {
        body();
        return true;
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (const Pegasus::Exception& e) {
        ts_log(2, function, "failed: %s\n", (const char*)e.getMessage().getCString());
    } catch (const std::exception& e) {
        ts_log(2, function, "failed: %s\n", (const char*)exceptionText(e.what()).getCString());
    } catch (...) {
        ts_log(2, function, "failed: unknown exception\n");
    }
    return false;
}

#endif
