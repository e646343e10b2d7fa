#include "platform/linux/applications/bundles/BundlePropertyList.h"

#include "platform/common/Utf8.h"
#include "platform/linux/applications/bundles/PropertyListGuard.h"
#include "platform/linux/environment/BaseFolders.h"
#include "platform/linux/files/RegularFile.h"

#include <QLoggingCategory>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <plist/plist.h>
#include <type_traits>

namespace amberquill::desktop {
namespace {

Q_LOGGING_CATEGORY(bundlesLog, "amberquill.bundles", QtCriticalMsg)

struct FreeList {
    void operator()(plist_t list) const { plist_free(list); }
};
using List = std::unique_ptr<std::remove_pointer_t<plist_t>, FreeList>;

// A property list's top dictionary. Null: unsafe, broken, or not a dictionary.
List parseDictionary(QByteArrayView bytes) {
    if (!isSafePropertyList(bytes)) {
        return {};
    }
    plist_t parsed = nullptr;
    const auto size = static_cast<std::uint32_t>(bytes.size());
    if (isBinaryPropertyList(bytes)) {
        plist_from_bin(bytes.data(), size, &parsed);
    } else {
        plist_from_xml(bytes.data(), size, &parsed);
    }
    List list(parsed);
    return list && plist_get_node_type(list.get()) == PLIST_DICT ? std::move(list) : List();
}

QString textOf(plist_t value) {
    if (value == nullptr || plist_get_node_type(value) != PLIST_STRING) {
        return {};
    }
    // Not plist_get_string_val(), which aborts on a text with a NUL in it.
    std::uint64_t size = 0;
    const char* const text = plist_get_string_ptr(value, &size);
    const QByteArrayView bytes(text, text == nullptr ? 0 : static_cast<qsizetype>(size));
    return bytes.isValidUtf8() && !bytes.contains('\0') ? textOfUtf8(bytes) : QString();
}

QString textOf(const List& list, const char* key) {
    return textOf(plist_dict_get_item(list.get(), key));
}

// A bare file name. A path could lead out of the bundle, so it counts as absent.
QString fileNameOf(const List& list, const char* key) {
    const QString name = textOf(list, key);
    const bool isName =
        !name.contains(QLatin1Char('/')) && name != QLatin1String(".") && name != QLatin1String("..");
    return isName ? name : QString();
}

QString firstOf(const QString& name, const QString& otherwise) {
    return name.isEmpty() ? otherwise : name;
}

} // namespace

std::optional<BundlePropertyList> parseBundlePropertyList(QByteArrayView bytes) {
    const List list = parseDictionary(bytes);
    if (!list) {
        return std::nullopt;
    }
    BundlePropertyList result;
    result.identifier = textOf(list, "CFBundleIdentifier");
    result.executable = firstOf(fileNameOf(list, "CFBundleExecutable"), fileNameOf(list, "NSExecutable"));
    result.iconFile = firstOf(fileNameOf(list, "CFBundleIconFile"), fileNameOf(list, "NSIcon"));
    return result;
}

std::optional<QHash<QString, QString>> propertyListTexts(QByteArrayView bytes) {
    const List list = parseDictionary(bytes);
    if (!list) {
        return std::nullopt;
    }
    QHash<QString, QString> texts;
    plist_dict_iter position = nullptr;
    plist_dict_new_iter(list.get(), &position);
    const std::unique_ptr<void, decltype(&std::free)> freed(position, &std::free);
    while (true) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(list.get(), position, &key, &value);
        const std::unique_ptr<char, decltype(&std::free)> freedKey(key, &std::free);
        if (value == nullptr) {
            return texts;
        }
        if (plist_get_node_type(value) == PLIST_STRING && key != nullptr) {
            texts.insert(QString::fromUtf8(key), textOf(value));
        }
    }
}

std::optional<BundlePropertyList> readBundlePropertyList(const QString& bundlePath) {
    const auto folder = absolutePath(bundlePath.toUtf8());
    if (!folder) {
        return std::nullopt;
    }
    QByteArray buffer;
    for (const bool gnustep : {false, true}) {
        const QString file =
            pathBelow(*folder, gnustep ? u"Resources/Info-gnustep.plist" : u"Contents/Info.plist");
        const auto bytes =
            readRegularFile(AT_FDCWD, file.toUtf8().constData(), maximumPropertyListBytes, buffer);
        auto list = bytes ? parseBundlePropertyList(*bytes) : std::nullopt;
        if (list) {
            list->folder = *folder;
            list->gnustep = gnustep;
            return list;
        }
        if (bytes) {
            qCDebug(bundlesLog) << "property list refused:" << file;
        }
    }
    qCDebug(bundlesLog) << "not a bundle:" << *folder;
    return std::nullopt;
}

std::optional<QString> PropertyListBundles::bundleIdentifier(const QString& bundlePath) const {
    auto list = readBundlePropertyList(bundlePath);
    if (!list || list->identifier.isEmpty()) {
        return std::nullopt;
    }
    return std::move(list->identifier);
}

} // namespace amberquill::desktop
