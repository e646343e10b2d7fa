#include "platform/linux/applications/icons/IconFolder.h"

#include "platform/linux/files/FolderReader.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace amberquill::desktop {

namespace {

// More names than any icon theme has in one folder; what is beyond them does not exist for the launcher.
constexpr std::size_t maximumFolderNames = 100'000;

// Measured: looking for one icon's four endings takes as long as reading this much of a folder.
constexpr std::int64_t bytesReadInOneQuestion = 400;
constexpr std::int64_t largeFolder = std::int64_t{16} * 1024;

bool endsInCaseless(std::string_view name, std::string_view ending) {
    return name.size() > ending.size() &&
           std::equal(ending.begin(), ending.end(), name.end() - static_cast<std::ptrdiff_t>(ending.size()),
                      [](char wanted, char given) {
                          return wanted == (given >= 'A' && given <= 'Z' ? given - 'A' + 'a' : given);
                      });
}

} // namespace

std::string_view endingText(IconEnding ending) {
    switch (ending) {
    case IconEnding::Png:
        return ".png";
    case IconEnding::Svg:
        return ".svg";
    case IconEnding::Svgz:
        return ".svgz";
    case IconEnding::Xpm:
        break;
    }
    return ".xpm";
}

IconEnding IconEndings::first() const {
    const auto* const found = std::find_if(iconEndings.begin(), iconEndings.end(),
                                           [this](auto ending) { return contains(ending); });
    return found == iconEndings.end() ? IconEnding::Xpm : *found;
}

std::string_view withoutIconEnding(std::string_view name) {
    for (const auto ending : iconEndings) {
        if (endsInCaseless(name, endingText(ending))) {
            return name.substr(0, name.size() - endingText(ending).size());
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
    , questionsBeforeReading_(size < largeFolder ? 0 : size / bytesReadInOneQuestion) {}

IconEndings IconFolder::endings(std::string_view name) {
    if (!isRead_) {
        if (questionsBeforeReading_ > 0) {
            --questionsBeforeReading_;
            return lookedFor(name);
        }
        read();
    }
    const auto found = names_.find(name);
    return found == names_.end() ? IconEndings() : found->second;
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
        for (const auto ending : iconEndings) {
            if (name.substr(dot) == endingText(ending) && names_.size() < maximumFolderNames) {
                names_[std::string(name.substr(0, dot))].insert(ending);
            }
        }
    }
}

IconEndings IconFolder::lookedFor(std::string_view name) const {
    IconEndings found;
    std::string file = path_ + '/';
    file.append(name);
    const auto stem = file.size();
    for (const auto ending : iconEndings) {
        file.resize(stem);
        file.append(endingText(ending));
        if (isRegularFile(file)) {
            found.insert(ending);
        }
    }
    return found;
}

} // namespace amberquill::desktop
