// Prints the files that the launcher chooses for icons: find_icons THEME SIZES BASE_FOLDER..., with sizes in
// logical pixels and an optional scale of the screen, as in "48,96@2". Reads one name per line. Writes one
// line for each name and size: the file, or an empty line.
#include "platform/linux/applications/icons/lookup/IconLookup.h"

#include <QFile>
#include <iostream>
#include <string>

using namespace amberquill::desktop;

int main(int count, char** arguments) {
    if (count < 4) {
        std::cerr << "find_icons THEME SIZES BASE_FOLDER...\n";
        return 2;
    }
    std::vector<int> edges; // in device pixels
    const auto sizes = QString::fromLatin1(arguments[2]).split(u',');
    for (const auto& size : sizes) {
        const auto scale = size.section(u'@', 1);
        edges.push_back(size.section(u'@', 0, 0).toInt() * (scale.isEmpty() ? 1 : scale.toInt()));
    }
    QStringList baseFolders;
    for (int i = 3; i < count; ++i) {
        baseFolders += QFile::decodeName(arguments[i]);
    }
    const IconLookup lookup(baseFolders, QFile::decodeName(arguments[1]));
    for (std::string name; std::getline(std::cin, name);) {
        for (const int edge : edges) {
            const auto file = lookup.find(QFile::decodeName(QByteArray::fromStdString(name)), edge);
            std::cout << QFile::encodeName(file.value_or(QString())).constData() << '\n';
        }
    }
    return 0;
}
