#include "support/OffscreenMain.h"

#include <QApplication>

int main(int argc, char** argv) {
    return amberquill::runOffscreen<QApplication>(argc, argv);
}
