#include "platform/linux/settings/DconfDatabase.h"

#include <cstdint>

namespace amberquill::desktop {

namespace {

constexpr std::string_view signature = "GVariant";
constexpr std::uint32_t noParent = 0xFFFFFFFFU;
constexpr std::size_t itemBytes = 24;
constexpr std::size_t maximumText = 1024;

// Reads a little-endian number. On a big-endian machine the file's signature differs, so it is not read.
std::optional<std::uint32_t> wordAt(std::string_view bytes, std::size_t offset) {
    if (offset > bytes.size() || bytes.size() - offset < 4) {
        return std::nullopt;
    }
    std::uint32_t word = 0;
    for (std::size_t i = 4; i-- > 0;) {
        word = (word << 8U) | static_cast<unsigned char>(bytes[offset + i]);
    }
    return word;
}

std::optional<std::string_view> part(std::string_view bytes, std::size_t begin, std::size_t size) {
    if (begin > bytes.size() || bytes.size() - begin < size) {
        return std::nullopt;
    }
    return bytes.substr(begin, size);
}

// A hash table in the file: a Bloom filter (not needed here), the buckets, then the items.
struct Table {
    std::uint32_t buckets = 0;
    std::size_t bucketsAt = 0;
    std::size_t itemsAt = 0;
    std::size_t items = 0;
};

struct Item {
    std::uint32_t hash = 0;
    std::uint32_t parent = 0; // the item whose key is this one's prefix
    std::string_view key;
    char type = 0;
    std::uint32_t valueBegin = 0;
    std::uint32_t valueEnd = 0;
};

std::optional<Table> rootTable(std::string_view file) {
    const auto begin = wordAt(file, 16);
    const auto end = wordAt(file, 20);
    if (!file.starts_with(signature) || wordAt(file, 8) != 0U || !begin || !end || *end > file.size()) {
        return std::nullopt;
    }
    const auto filter = wordAt(file, *begin);
    const auto buckets = wordAt(file, std::size_t{*begin} + 4);
    if (!filter || !buckets || *buckets == 0) {
        return std::nullopt;
    }
    constexpr std::uint32_t filterWords = (1U << 27U) - 1;
    Table table{.buckets = *buckets,
                .bucketsAt = std::size_t{*begin} + 8 + std::size_t{4} * (*filter & filterWords)};
    table.itemsAt = table.bucketsAt + std::size_t{4} * *buckets;
    if (table.itemsAt > *end) {
        return std::nullopt;
    }
    table.items = (*end - table.itemsAt) / itemBytes;
    return table;
}

std::optional<Item> itemAt(std::string_view file, const Table& table, std::size_t index) {
    const auto bytes =
        index < table.items ? part(file, table.itemsAt + index * itemBytes, itemBytes) : std::nullopt;
    if (!bytes) {
        return std::nullopt;
    }
    const auto lengthAndType = *wordAt(*bytes, 12);
    const auto key = part(file, *wordAt(*bytes, 8), lengthAndType & 0xFFFFU);
    if (!key) {
        return std::nullopt;
    }
    return Item{.hash = *wordAt(*bytes, 0),
                .parent = *wordAt(*bytes, 4),
                .key = *key,
                .type = static_cast<char>((lengthAndType >> 16U) & 0xFFU),
                .valueBegin = *wordAt(*bytes, 16),
                .valueEnd = *wordAt(*bytes, 20)};
}

// Whether the item's full key (its parents' keys, then its own) is `key`.
bool hasFullKey(std::string_view file, const Table& table, Item item, std::string_view key) {
    while (key.ends_with(item.key)) {
        key.remove_suffix(item.key.size());
        if (item.parent == noParent) {
            return key.empty();
        }
        const auto parent = item.key.empty() ? std::nullopt : itemAt(file, table, item.parent);
        if (!parent) {
            return false;
        }
        item = *parent;
    }
    return false;
}

std::uint32_t hashOf(std::string_view key) {
    std::uint32_t hash = 5381;
    for (const char character : key) {
        hash = hash * 33 + static_cast<std::uint32_t>(static_cast<signed char>(character));
    }
    return hash;
}

// The serialized variant under a key.
std::optional<std::string_view> valueOf(std::string_view database, std::string_view key) {
    const auto table = rootTable(database);
    if (!table) {
        return std::nullopt;
    }
    const auto hash = hashOf(key);
    const auto bucket = hash % table->buckets;
    const auto first = wordAt(database, table->bucketsAt + std::size_t{4} * bucket);
    const auto next = bucket + 1 < table->buckets
                          ? wordAt(database, table->bucketsAt + std::size_t{4} * (bucket + 1))
                          : static_cast<std::uint32_t>(table->items);
    for (auto index = std::size_t{first.value_or(0)}; first && next && index < *next; ++index) {
        const auto item = itemAt(database, *table, index);
        if (!item) {
            return std::nullopt;
        }
        if (item->hash != hash || item->type != 'v' || !hasFullKey(database, *table, *item, key)) {
            continue;
        }
        return item->valueEnd >= item->valueBegin
                   ? part(database, item->valueBegin, std::size_t{item->valueEnd} - item->valueBegin)
                   : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> dconfText(std::string_view database, std::string_view key) {
    // A serialized string ends with its terminator, a separator and its type.
    constexpr std::string_view end("\0\0s", 3);
    const auto value = valueOf(database, key);
    if (!value || !value->ends_with(end) || value->size() > maximumText) {
        return std::nullopt;
    }
    return std::string(value->substr(0, value->size() - end.size()));
}

std::optional<bool> dconfBoolean(std::string_view database, std::string_view key) {
    // A serialized boolean: one byte, a separator and the type.
    constexpr std::string_view end("\0b", 2);
    const auto value = valueOf(database, key);
    if (!value || value->size() != 1 + end.size() || !value->ends_with(end)) {
        return std::nullopt;
    }
    return value->front() != 0;
}

} // namespace amberquill::desktop
