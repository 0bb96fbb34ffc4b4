#include "vexa/host/TlsContext.h"

#include <openssl/err.h>
#include <openssl/x509.h>

#include <stdexcept>

namespace vexa::host {

namespace {

std::string lastSslError() {
    unsigned long code = ERR_peek_last_error();
    char text[256] = "no reason given";
    if (code != 0) {
        ERR_error_string_n(code, text, sizeof(text));
    }
    ERR_clear_error();
    return text;
}

} // namespace

std::unique_ptr<TlsContext> TlsContext::load(const std::string& certificateFile,
                                             const std::string& keyFile) {
    ERR_clear_error();
    SSL_CTX* context = SSL_CTX_new(TLS_server_method());
    if (context == nullptr) {
        throw std::runtime_error("cannot set up TLS: " + lastSslError());
    }
    std::unique_ptr<TlsContext> loaded(new TlsContext(context));
    SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
    // Answers are written in pieces as the client takes them.
    SSL_CTX_set_mode(context, SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
    if (SSL_CTX_use_certificate_chain_file(context, certificateFile.c_str()) != 1) {
        throw std::runtime_error("--tls-cert " + certificateFile +
                                 ": not a readable PEM certificate (" + lastSslError() + ")");
    }
    if (SSL_CTX_use_PrivateKey_file(context, keyFile.c_str(), SSL_FILETYPE_PEM) != 1) {
        if (ERR_GET_REASON(ERR_peek_last_error()) == X509_R_KEY_VALUES_MISMATCH) {
            ERR_clear_error();
            throw std::runtime_error("--tls-key " + keyFile +
                                     " is not the key of the certificate " + certificateFile);
        }
        throw std::runtime_error("--tls-key " + keyFile +
                                 ": not a readable PEM private key without a passphrase (" +
                                 lastSslError() + ")");
    }
    if (SSL_CTX_check_private_key(context) != 1) {
        throw std::runtime_error("--tls-key " + keyFile + " is not the key of the certificate " +
                                 certificateFile);
    }
    return loaded;
}

TlsContext::~TlsContext() { SSL_CTX_free(context_); }

} // namespace vexa::host
