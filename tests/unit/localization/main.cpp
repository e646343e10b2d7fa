#include <QByteArray>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // The same locale on every machine.
    qputenv("LC_ALL", "de_CH.UTF-8");
    qunsetenv("LANGUAGE");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
