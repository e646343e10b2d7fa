#pragma once

#include <QByteArray>
#include <cstdlib>
#include <map>
#include <plist/plist.h>
#include <string>
#include <vector>

// Property lists for tests, written by the library or byte by byte.
namespace amberquill {

inline QByteArray xmlPropertyList(const QByteArray& body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + body + "\n</plist>\n";
}

inline QByteArray xmlDictionary(const std::map<std::string, std::string>& texts) {
    QByteArray body = "<dict>\n";
    for (const auto& [key, text] : texts) {
        body += "<key>" + QByteArray::fromStdString(key) + "</key><string>" +
                QByteArray::fromStdString(text) + "</string>\n";
    }
    return xmlPropertyList(body + "</dict>");
}

inline QByteArray binaryDictionary(const std::map<std::string, std::string>& texts) {
    const plist_t list = plist_new_dict();
    for (const auto& [key, text] : texts) {
        plist_dict_set_item(list, key.c_str(), plist_new_string(text.c_str()));
    }
    char* bytes = nullptr;
    std::uint32_t size = 0;
    plist_to_bin(list, &bytes, &size);
    QByteArray result(bytes, static_cast<qsizetype>(size));
    std::free(bytes);
    plist_free(list);
    return result;
}

// A binary list of these raw objects. The first is the top object; offsets and references have two bytes.
inline QByteArray binaryOf(const std::vector<QByteArray>& objects) {
    const auto number = [](std::size_t value, int bytes) {
        QByteArray text;
        for (int byte = bytes - 1; byte >= 0; --byte) {
            text.append(static_cast<char>((value >> (8 * byte)) & 0xFFU));
        }
        return text;
    };
    QByteArray list = "bplist00";
    QByteArray table;
    for (const QByteArray& object : objects) {
        table += number(static_cast<std::size_t>(list.size()), 2);
        list += object;
    }
    const auto tableStart = static_cast<std::size_t>(list.size());
    return list + table + QByteArray(6, '\0') + "\x02\x02" + number(objects.size(), 8) + number(0, 8) +
           number(tableStart, 8);
}

} // namespace amberquill
