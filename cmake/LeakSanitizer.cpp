// What the leak sanitizer is told in each program that draws SVG: libxml2 forgets the values of entities of
// documents that it finds broken, and fontconfig keeps what it knows of fonts to the end.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() {
    return "leak:libxml2.so\nleak:libfontconfig.so\n";
}
