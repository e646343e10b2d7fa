#pragma once

#include <QByteArray>
#include <QtEndian>
#include <map>
#include <string>
#include <vector>

namespace amberquill {

// A dconf database with these keys, each a text or a boolean. Keys are stored below their folders, as by the
// settings service.
inline QByteArray dconfDatabase(const std::map<std::string, std::string>& texts, quint32 buckets = 5,
                                const std::map<std::string, bool>& booleans = {}) {
    const auto word = [](quint32 number) {
        QByteArray bytes(4, '\0');
        qToLittleEndian(number, bytes.data());
        return bytes;
    };
    const auto hashOf = [](const std::string& key) {
        quint32 hash = 5381;
        for (const char character : key) {
            hash = hash * 33 + static_cast<quint32>(static_cast<signed char>(character));
        }
        return hash;
    };
    struct Entry {
        std::string path;
        bool isFolder;
        QByteArray value; // as a variant
    };
    std::map<std::string, Entry> entries;
    const auto add = [&entries](const std::string& key, const QByteArray& value) {
        for (auto slash = key.find('/'); slash != std::string::npos; slash = key.find('/', slash + 1)) {
            entries.insert({key.substr(0, slash + 1), {key.substr(0, slash + 1), true, {}}});
        }
        entries[key] = {key, false, value};
    };
    for (const auto& [key, text] : texts) {
        add(key, QByteArray::fromStdString(text) + QByteArray("\0\0s", 3));
    }
    for (const auto& [key, boolean] : booleans) {
        add(key, QByteArray(1, boolean ? '\1' : '\0') + QByteArray("\0b", 2));
    }
    std::vector<Entry> sorted; // by bucket
    std::vector<quint32> firsts;
    for (quint32 bucket = 0; bucket < buckets; ++bucket) {
        firsts.push_back(static_cast<quint32>(sorted.size()));
        for (const auto& [path, entry] : entries) {
            if (hashOf(path) % buckets == bucket) {
                sorted.push_back(entry);
            }
        }
    }
    const auto parentOf = [&](const std::string& path) {
        const auto end = path.rfind('/', path.size() - 2);
        const auto parent = path.size() < 2 || end == std::string::npos ? "" : path.substr(0, end + 1);
        for (quint32 i = 0; i < sorted.size(); ++i) {
            if (!parent.empty() && sorted[i].path == parent) {
                return std::pair(i, parent.size());
            }
        }
        return std::pair(0xFFFFFFFFU, std::size_t{0});
    };
    constexpr quint32 tableAt = 24;
    const auto tableSize = 8 + 4 * buckets + 24 * static_cast<quint32>(sorted.size());
    QByteArray table = word(0) + word(buckets);
    for (const auto first : firsts) {
        table += word(first);
    }
    QByteArray data; // keys and values, after the table
    const auto place = [&](const QByteArray& bytes) {
        const auto at = tableAt + tableSize + static_cast<quint32>(data.size());
        data += bytes;
        return at;
    };
    for (const auto& entry : sorted) {
        const auto [parent, known] = parentOf(entry.path);
        const auto key = QByteArray::fromStdString(entry.path.substr(known));
        const auto keyAt = place(key);
        const auto valueAt = place(entry.value);
        const auto type = static_cast<quint32>(entry.isFolder ? 'L' : 'v');
        table += word(hashOf(entry.path)) + word(parent) + word(keyAt) +
                 word(static_cast<quint32>(key.size()) | (type << 16U)) + word(valueAt) +
                 word(valueAt + static_cast<quint32>(entry.value.size()));
    }
    return "GVariant" + word(0) + word(0) + word(tableAt) + word(tableAt + tableSize) + table + data;
}

} // namespace amberquill
