#include <QCoreApplication>
#include <gtest/gtest.h>

// Where a secure connection fails and its manager goes at once, Qt's network thread sometimes ends before it
// has freed what OpenSSL made for it. Nothing of ours calls OpenSSL; all other leaks count.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() {
    return "leak:libcrypto.so\n";
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
