// Suppressions of the leak sanitizer for programs that draw SVG: libxml2 leaks the values of entities in
// broken documents, and fontconfig never frees its caches.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() {
    return "leak:libxml2.so\nleak:libfontconfig.so\n";
}
