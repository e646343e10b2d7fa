#include <QCoreApplication>
#include <gtest/gtest.h>

// When a secure connection fails and its manager is destroyed at once, Qt's network thread may end before it
// frees its OpenSSL objects. Our code does not call OpenSSL itself; all other leaks are reported.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() {
    return "leak:libcrypto.so\n";
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
