// The distribution's libcpp-httplib is built without ThreadSanitizer: its
// own synchronisation (atomics, the fast path of function-local statics) is
// invisible to the sanitizer, which then reports races inside the library
// that are not there. Calls made from that library are not checked; every
// program that links it carries this, as a source of its own, because an
// unreferenced object in a static library would be left out.
#if defined(__SANITIZE_THREAD__)
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libcpp-httplib.so\n";
}
#endif
