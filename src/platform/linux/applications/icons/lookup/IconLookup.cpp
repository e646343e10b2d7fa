#include "platform/linux/applications/icons/lookup/IconLookup.h"

#include "platform/linux/applications/icons/lookup/IconTheme.h"
#include "platform/linux/environment/BaseFolders.h"

#include <QFile>
#include <array>
#include <deque>
#include <map>
#include <unordered_set>

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t maximumThemes = 32;
constexpr std::size_t maximumAnswers = 20'000;
constexpr qsizetype maximumPath = 4096;
constexpr std::size_t maximumIconName = 255;

// The size of an icon without a theme is unknown, so drawings come first.
constexpr std::array unthemedExtensions{IconExtension::Svg, IconExtension::Svgz, IconExtension::Png,
                                        IconExtension::Xpm};

// Whether it is one file name, which cannot lead out of its folder.
bool isPlainName(std::string_view name) {
    return !name.empty() && name.size() <= maximumIconName && name != "." && name != ".." &&
           name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

} // namespace

QStringList iconBaseFolders(const QString& home, const DataFolders& dataFolders) {
    QStringList folders{pathBelow(home, u".icons")};
    folders += dataFolders.below(u"icons");
    folders += u"/usr/share/pixmaps"_s;
    return folders;
}

// The themes in the order of the search, the base folders' own icons, and the answers so far.
class IconLookup::Cache {
public:
    Cache(const QStringList& baseFolders, const QString& theme) {
        for (const auto& folder : baseFolders) {
            baseFolders_.push_back(QFile::encodeName(folder).toStdString());
        }
        pending_.push_back(QFile::encodeName(theme).toStdString());
    }

    std::optional<std::string> find(const std::string& icon, int edge, int skip) {
        if (skip > 0) {
            return search(icon, edge, skip);
        }
        const auto key = std::pair(icon, edge);
        if (const auto known = answers_.find(key); known != answers_.end()) {
            return known->second;
        }
        if (answers_.size() >= maximumAnswers) {
            answers_.clear();
        }
        return answers_.emplace(key, search(icon, edge, skip)).first->second;
    }

private:
    static constexpr std::string_view fallbackTheme = "hicolor";
    // GTK falls back to this theme, so desktop entries name icons that only it has.
    static constexpr std::string_view lastTheme = "Adwaita";

    std::optional<std::string> search(const std::string& icon, int edge, int skip) {
        const auto stem = withoutIconExtension(icon);
        auto file = searchName(stem, edge, skip);
        if (!file && stem.size() != icon.size()) {
            file = searchName(icon, edge, skip);
        }
        return file;
    }

    std::optional<std::string> searchName(std::string_view name, int edge, int& skip) {
        for (std::size_t i = 0; i < themes_.size() || openNextTheme(); ++i) {
            if (auto file = themes_[i].find(name, edge, skip)) {
                return file;
            }
        }
        if (auto file = searchUnthemed(name, skip)) {
            return file;
        }
        if (opened_.insert(std::string(lastTheme)).second) {
            last_.emplace(lastTheme, baseFolders_);
        }
        return last_ ? last_->find(name, edge, skip) : std::nullopt;
    }

    // Opens the next theme, when an icon was not in those before: parents depth first, each once, the
    // fallback theme last. False: there is no other.
    bool openNextTheme() {
        while (!pending_.empty() && themes_.size() < maximumThemes) {
            const auto name = std::move(pending_.front());
            pending_.pop_front();
            if (isIconThemeName(name) && name != fallbackTheme && opened_.insert(name).second) {
                const auto& parents = themes_.emplace_back(name, baseFolders_).inherits();
                pending_.insert(pending_.begin(), parents.begin(), parents.end());
                return true;
            }
        }
        pending_.clear();
        if (opened_.insert(std::string(fallbackTheme)).second) {
            themes_.emplace_back(fallbackTheme, baseFolders_);
            return true;
        }
        return false;
    }

    std::optional<std::string> searchUnthemed(std::string_view name, int& skip) {
        if (unthemed_.empty()) {
            for (const auto& folder : baseFolders_) {
                unthemed_.emplace_back(folder, 0);
            }
        }
        for (std::size_t i = 0; i < unthemed_.size(); ++i) {
            const auto extensions = unthemed_[i].extensions(name);
            for (const auto extension : unthemedExtensions) {
                if (!extensions.contains(extension)) {
                    continue;
                }
                auto file = baseFolders_[i] + '/' + std::string(name) + std::string(extensionText(extension));
                if (isRegularFile(file) && skip-- == 0) {
                    return file;
                }
            }
        }
        return std::nullopt;
    }

    std::vector<std::string> baseFolders_;
    std::deque<std::string> pending_; // names of themes to open
    std::unordered_set<std::string> opened_;
    std::vector<IconTheme> themes_;
    std::vector<IconFolder> unthemed_; // one for each base folder; filled when needed
    std::optional<IconTheme> last_;    // opened when needed; none if it is one of `themes_`
    std::map<std::pair<std::string, int>, std::optional<std::string>> answers_;
};

IconLookup::IconLookup(QStringList baseFolders, QString theme)
    : baseFolders_(std::move(baseFolders))
    , theme_(std::move(theme)) {}

IconLookup::~IconLookup() = default;

std::optional<QString> IconLookup::find(const QString& icon, int edge, int skip) const {
    if (icon.size() > maximumPath) {
        return std::nullopt;
    }
    const auto bytes = QFile::encodeName(icon).toStdString();
    if (bytes.starts_with('/')) {
        const bool isUsable = skip == 0 && bytes.find('\0') == std::string::npos && isRegularFile(bytes);
        return isUsable ? std::optional(icon) : std::nullopt;
    }
    if (!isPlainName(bytes)) {
        return std::nullopt;
    }
    const std::lock_guard lock(mutex_);
    if (!cache_) {
        cache_ = std::make_unique<Cache>(baseFolders_, theme_);
    }
    const auto file = cache_->find(bytes, edge, skip);
    if (!file) {
        return std::nullopt;
    }
    return QFile::decodeName(QByteArray::fromStdString(*file));
}

void IconLookup::forget() {
    const std::lock_guard lock(mutex_);
    cache_.reset();
}

} // namespace amberquill::desktop
