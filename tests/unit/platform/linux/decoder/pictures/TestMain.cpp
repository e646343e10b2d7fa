#include "platform/linux/decoder/pictures/IconDecoder.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv); // tells Qt where its image plugins are
    testing::InitGoogleTest(&argc, argv);
    amberquill::desktop::prepareDecoders();
    return RUN_ALL_TESTS();
}
