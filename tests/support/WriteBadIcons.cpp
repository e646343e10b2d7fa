// write_bad_icons FOLDER writes the bad icons of the tests into the folder and prints for each its name and
// the result of decoding it (picture, none, either, overload).
#include "support/BadIcons.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <cstdio>

namespace {

const char* nameOf(amberquill::BadIcon::Outcome outcome) {
    using enum amberquill::BadIcon::Outcome;
    switch (outcome) {
    case Picture:
        return "picture";
    case NoPicture:
        return "none";
    case Either:
        return "either";
    case Overload:
        return "overload";
    }
    return "";
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv); // tells Qt where its image plugins are
    if (argc != 2) {
        std::fputs("write_bad_icons FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QFile::decodeName(argv[1]));
    for (const auto& icon : amberquill::badIcons()) {
        QFile file(folder.filePath(QString::fromStdString(icon.name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(icon.bytes) != icon.bytes.size()) {
            std::fprintf(stderr, "cannot write %s\n", icon.name.c_str());
            return 1;
        }
        std::printf("%s %s\n", icon.name.c_str(), nameOf(icon.outcome));
    }
    return 0;
}
