#include "localization/TranslatedTexts.h"

#include "localization/L.h"

#include <QCoreApplication>
#include <QTranslator>
#include <array>

// Q_INIT_RESOURCE does not work in a namespace.
static void loadTranslations() {
    Q_INIT_RESOURCE(amberquill_translations);
}

namespace amberquill {

namespace {

// In the order of UpdateText.
// clang-format off
constexpr std::array updateSources = {
    QT_TRANSLATE_NOOP("UpdateTexts", "A new version of Amberquill is available"),
    //: %1: the new version, %2: this one
    QT_TRANSLATE_NOOP("UpdateTexts", "Amberquill %1 is available. You have version %2."),
    QT_TRANSLATE_NOOP("UpdateTexts", "Release Notes"),
    QT_TRANSLATE_NOOP("UpdateTexts", "Skip This Version"),
    QT_TRANSLATE_NOOP("UpdateTexts", "Remind Me Later"),
    QT_TRANSLATE_NOOP("UpdateTexts", "Install Update"),
    QT_TRANSLATE_NOOP("UpdateTexts", "This copy of Amberquill cannot replace itself: install the new version with your system’s package manager, or get it from its release page."),
    QT_TRANSLATE_NOOP("UpdateTexts", "Open Release Page"),
    QT_TRANSLATE_NOOP("UpdateTexts", "Checking for updates…"),
    QT_TRANSLATE_NOOP("UpdateTexts", "Downloading the update…"),
    //: %1 and %2: sizes with their units
    QT_TRANSLATE_NOOP("UpdateTexts", "%1 of %2"),
    QT_TRANSLATE_NOOP("UpdateTexts", "Pause"),
    QT_TRANSLATE_NOOP("UpdateTexts", "The download is paused"),
    QT_TRANSLATE_NOOP("UpdateTexts", "Resume"),
    QT_TRANSLATE_NOOP("UpdateTexts", "Installing the update…"),
    QT_TRANSLATE_NOOP("UpdateTexts", "The update is installed"),
    //: %1: the new version
    QT_TRANSLATE_NOOP("UpdateTexts", "Restart Amberquill to use version %1."),
    QT_TRANSLATE_NOOP("UpdateTexts", "Restart Now"),
    QT_TRANSLATE_NOOP("UpdateTexts", "Later"),
    QT_TRANSLATE_NOOP("UpdateTexts", "Update Failed"),
    QT_TRANSLATE_NOOP("UpdateTexts", "The list of updates could not be fetched. Check your connection and try again."),
    QT_TRANSLATE_NOOP("UpdateTexts", "The list of updates could not be read."),
    QT_TRANSLATE_NOOP("UpdateTexts", "There is no valid download for the new version."),
    QT_TRANSLATE_NOOP("UpdateTexts", "The update could not be downloaded. Check your connection and try again."),
    QT_TRANSLATE_NOOP("UpdateTexts", "The download could not be saved. Make sure that there is enough free space."),
    QT_TRANSLATE_NOOP("UpdateTexts", "This copy of Amberquill has no key to check updates with. Nothing was installed."),
    QT_TRANSLATE_NOOP("UpdateTexts", "The update is not signed. It was not installed."),
    QT_TRANSLATE_NOOP("UpdateTexts", "The update’s signature is not valid: it may have been tampered with. It was deleted and not installed."),
    QT_TRANSLATE_NOOP("UpdateTexts", "The download does not have the announced size. It was deleted and not installed."),
    QT_TRANSLATE_NOOP("UpdateTexts", "The update is not newer than this version. It was not installed."),
    QT_TRANSLATE_NOOP("UpdateTexts", "The program’s file could not be replaced. The version that you have still works."),
};
// clang-format on
static_assert(updateSources.size() == updateTextCount);

// The translation of an English text, or the text itself if there is none. A language is loaded at its first
// text, not at the start of the program.
QString translated(const char* context, const char* source, int count = -1) {
    static QTranslator translator;
    static AppLanguage loaded = AppLanguage::English;
    if (const AppLanguage language = L::effectiveLanguage(); language != loaded) {
        loadTranslations();
        loaded = language;
        // Without a file, as for English, load() leaves the translator empty.
        static_cast<void>(translator.load(QStringLiteral(":/translations/") + rawValue(language)));
    }
    const QString text = translator.translate(context, source, nullptr, count);
    return text.isNull() ? QString::fromUtf8(source) : text;
}

} // namespace

QString updateText(UpdateText text) {
    return translated("UpdateTexts", updateSources.at(static_cast<std::size_t>(text)));
}

QString spokenFolder(const QString& name, qsizetype apps) {
    // "1" has its own text: French grammar counts 0 as singular, but an empty folder takes the plural here.
    const QString text =
        apps == 1
            ? translated("SpokenTexts",
                         //: %1: the folder's name
                         QT_TRANSLATE_NOOP("SpokenTexts", "%1, folder, %2 app"))
            : translated("SpokenTexts",
                         //: %1: the folder's name, %2: how many applications it holds, never 1
                         QT_TRANSLATE_N_NOOP("SpokenTexts", "%1, folder, %2 apps"), static_cast<int>(apps));
    return text.arg(name, QString::number(apps));
}

QString spokenPage(int number, int count) {
    //: %1: the page shown, %2: how many there are
    return translated("SpokenTexts", QT_TRANSLATE_NOOP("SpokenTexts", "Page %1 of %2"))
        .arg(QString::number(number), QString::number(count));
}

QString spokenClear() {
    //: The button that empties the search field
    return translated("SpokenTexts", QT_TRANSLATE_NOOP("SpokenTexts", "Clear"));
}

} // namespace amberquill
