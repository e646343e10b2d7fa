#include "support/OffscreenMain.h"

int main(int argc, char** argv) {
    return amberquill::runOffscreen(argc, argv);
}
