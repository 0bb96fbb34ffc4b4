// The server's TLS certificate and key, loaded once at start-up.
#ifndef VEXA_HOST_TLSCONTEXT_H
#define VEXA_HOST_TLSCONTEXT_H

#include <openssl/ssl.h>

#include <memory>
#include <string>

namespace vexa::host {

class TlsContext {
public:
    // Throws std::runtime_error naming the file and what is wrong with it.
    // The key file must hold the private key of the certificate file's
    // first certificate; the certificate file may go on with its chain.
    static std::unique_ptr<TlsContext> load(const std::string& certificateFile,
                                            const std::string& keyFile);
    ~TlsContext();
    TlsContext(const TlsContext&) = delete;
    TlsContext& operator=(const TlsContext&) = delete;

    SSL_CTX* get() const { return context_; }

private:
    explicit TlsContext(SSL_CTX* context) : context_(context) {}
    SSL_CTX* context_;
};

} // namespace vexa::host

#endif
