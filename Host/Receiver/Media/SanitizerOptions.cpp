// What the sanitizers of a development build need to know about the libraries beneath the player.

#if defined(__SANITIZE_ADDRESS__)
// The sanitizers' library looks for these in the program.
#define FOR_SANITIZERS extern "C" __attribute__((visibility("default")))
FOR_SANITIZERS const char* __asan_default_options();
FOR_SANITIZERS const char* __lsan_default_suppressions();

// GLib is built without frame pointers. Without a full walk a leak's stack would end at its first function,
// and the list below could not tell one from the other.
const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0:malloc_context_size=16";
}

// GLib never frees its table of interned names, not even when a larger one takes its place, because others
// may be reading it. The first is made while GLib is being loaded, the next when GStreamer brings its many
// names. libsoup forgets the source that waits for an answer when a request is cancelled and its thread ends;
// the session that a pipeline's context holds leaves a few bytes behind when the context goes.
const char* __lsan_default_suppressions() {
    return "leak:ld-linux-\n"
           "leak:g_intern_static_string\n"
           "leak:g_intern_string\n"
           "leak:g_quark_from_static_string\n"
           "leak:g_quark_from_string\n"
           "leak:g_value_unset\n"
           "leak:libsoup-3.0\n";
}
#endif
