#include "platform/linux/applications/icons/lookup/IconFolder.h"

#include "platform/linux/files/FolderReader.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace amberquill::desktop {

namespace {

// More names than any icon theme has in one folder. Further names are ignored.
constexpr std::size_t maximumFolderNames = 100'000;

// Measured: probing one icon's four extensions takes as long as reading this much of a folder.
constexpr std::int64_t folderBytesPerProbe = 400;
constexpr std::int64_t largeFolderBytes = std::int64_t{16} * 1024;

bool endsInCaseless(std::string_view name, std::string_view extension) {
    return name.size() > extension.size() &&
           std::equal(extension.begin(), extension.end(),
                      name.end() - static_cast<std::ptrdiff_t>(extension.size()),
                      [](char wanted, char given) {
                          return wanted == (given >= 'A' && given <= 'Z' ? given - 'A' + 'a' : given);
                      });
}

} // namespace

std::string_view extensionText(IconExtension extension) {
    switch (extension) {
    case IconExtension::Png:
        return ".png";
    case IconExtension::Svg:
        return ".svg";
    case IconExtension::Svgz:
        return ".svgz";
    case IconExtension::Xpm:
        break;
    }
    return ".xpm";
}

IconExtension IconExtensions::first() const {
    const auto* const found = std::find_if(iconExtensions.begin(), iconExtensions.end(),
                                           [this](auto extension) { return contains(extension); });
    return found == iconExtensions.end() ? IconExtension::Xpm : *found;
}

std::string_view withoutIconExtension(std::string_view name) {
    for (const auto extension : iconExtensions) {
        if (endsInCaseless(name, extensionText(extension))) {
            return name.substr(0, name.size() - extensionText(extension).size());
        }
    }
    return name;
}

bool isRegularFile(const std::string& path) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

IconFolder::IconFolder(std::string path, std::int64_t size)
    : path_(std::move(path))
    , probesBeforeReading_(size < largeFolderBytes ? 0 : size / folderBytesPerProbe) {}

IconExtensions IconFolder::extensions(std::string_view name) {
    if (!isRead_) {
        if (probesBeforeReading_ > 0) {
            --probesBeforeReading_;
            return probe(name);
        }
        read();
    }
    const auto found = names_.find(name);
    return found == names_.end() ? IconExtensions() : found->second;
}

void IconFolder::read() {
    isRead_ = true;
    FolderReader reader(openFolder(AT_FDCWD, path_.c_str()));
    if (!reader.isOpen()) {
        return;
    }
    while (const auto child = reader.next()) {
        if (const auto type = reader.typeOf(*child); type != DT_REG && type != DT_LNK) {
            continue;
        }
        const auto name = child->nameView();
        const auto dot = name.rfind('.');
        if (dot == std::string_view::npos || dot == 0) {
            continue;
        }
        for (const auto extension : iconExtensions) {
            if (name.substr(dot) == extensionText(extension) && names_.size() < maximumFolderNames) {
                names_[std::string(name.substr(0, dot))].insert(extension);
            }
        }
    }
}

IconExtensions IconFolder::probe(std::string_view name) const {
    IconExtensions found;
    std::string file = path_ + '/';
    file.append(name);
    const auto stem = file.size();
    for (const auto extension : iconExtensions) {
        file.resize(stem);
        file.append(extensionText(extension));
        if (isRegularFile(file)) {
            found.insert(extension);
        }
    }
    return found;
}

} // namespace amberquill::desktop
