#ifndef QZSIM_TEXT_COPY_H
#define QZSIM_TEXT_COPY_H

#include <cstddef>
#include <cstring>
#include <string>

namespace qzsim {

// Bounded copy into a fixed text field; the result is always terminated.
template <std::size_t N>
void copyText(char (&dst)[N], const char* src) {
    if (src == nullptr) {
        dst[0] = '\0';
        return;
    }
    std::size_t n = strnlen(src, N - 1);
    std::memcpy(dst, src, n);
    dst[n] = '\0';
}

template <std::size_t N>
void copyText(char (&dst)[N], const std::string& src) {
    copyText(dst, src.c_str());
}

// A field filled by a caller may lack its terminator; read it safely.
template <std::size_t N>
std::string fieldText(const char (&src)[N]) {
    return std::string(src, strnlen(src, N));
}

template <std::size_t N>
bool fieldOverflows(const char (&src)[N]) {
    return strnlen(src, N) == N;
}

} // namespace qzsim

#endif
