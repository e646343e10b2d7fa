// A scan of the desktop's registered applications. Warm file cache: the entries have just been written.
#include "platform/linux/applications/entries/DesktopEntryApplications.h"
#include "platform/linux/applications/entries/EntryIndex.h"
#include "support/TemporaryTree.h"

#include <benchmark/benchmark.h>

namespace amberquill::desktop {
namespace {

// An entry like those of distributions: about forty translations, an action, about 3 KiB.
QByteArray entryNumber(int number) {
    const QByteArray digits = QByteArray::number(number);
    QByteArray text = "[Desktop Entry]\nVersion=1.0\nType=Application\nName=Application " + digits + "\n";
    for (const char* const language :
         {"ar", "bg", "ca",       "cs", "da", "de", "el", "en_GB", "eo",   "es", "et",
          "eu", "fa", "fi",       "fr", "gl", "he", "hr", "hu",    "id",   "it", "ja",
          "ko", "lt", "lv",       "nb", "nl", "pl", "pt", "pt_BR", "ro",   "ru", "sk",
          "sl", "sr", "sr@latin", "sv", "tr", "uk", "vi", "zh_CN", "zh_TW"}) {
        text += QByteArray("Name[") + language + "]=Anwendung \xC3\xA4\xC3\xB6\xC3\xBC " + digits + "\n";
        text += QByteArray("Comment[") + language + "]=What this one does, in a language of its own\n";
    }
    return text + "Exec=/bin/true %U\nTryExec=true\nIcon=application-" + digits +
           "\nTerminal=false\nCategories=Utility;Development;\nMimeType=text/plain;text/html;\n"
           "NotShowIn=KDE;\nStartupNotify=true\nActions=new;\n\n[Desktop Action new]\nName=New\n"
           "Exec=/bin/true --new\n";
}

// The folders of 200, 1000, … entries, made once for all runs.
const TemporaryTree& treeOf(int entries) {
    static std::map<int, TemporaryTree> trees;
    const bool isNew = !trees.contains(entries);
    TemporaryTree& tree = trees[entries];
    if (isNew) {
        for (int number = 0; number < entries; ++number) {
            tree.write("share/applications/org.example.Application" + std::to_string(number) + ".desktop",
                       entryNumber(number));
        }
    }
    return tree;
}

EntrySettings settingsFor(const TemporaryTree& tree) {
    return {.dataFolders = {{tree.path("share")}},
            .locale = entryLocaleFor({"de_AT.UTF-8"}),
            .currentDesktops = {QStringLiteral("GNOME")},
            .programFolders = {QStringLiteral("/usr/local/bin"), QStringLiteral("/usr/bin")}};
}

void scan(benchmark::State& state) {
    const auto entries = static_cast<int>(state.range(0));
    const DesktopEntryApplications applications(settingsFor(treeOf(entries)));
    for ([[maybe_unused]] auto _ : state) {
        const auto listed = applications.list();
        if (listed.size() != static_cast<std::size_t>(entries)) {
            state.SkipWithError("not all entries are listed");
            return;
        }
    }
    state.SetComplexityN(entries);
}
BENCHMARK(scan)->Arg(200)->Arg(1000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->Complexity();

void indexOnly(benchmark::State& state) {
    const QStringList folders{treeOf(static_cast<int>(state.range(0))).path("share/applications")};
    for ([[maybe_unused]] auto _ : state) {
        ScannedFolders scanned;
        benchmark::DoNotOptimize(indexEntries(folders, scanned));
    }
}
BENCHMARK(indexOnly)->Arg(10'000)->Unit(benchmark::kMillisecond);

void parseOne(benchmark::State& state) {
    const QByteArray bytes = entryNumber(1);
    const EntryLocale locale = entryLocaleFor({"de_AT.UTF-8"});
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(parseDesktopEntry(bytes, locale));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * bytes.size());
}
BENCHMARK(parseOne);

} // namespace
} // namespace amberquill::desktop

BENCHMARK_MAIN();
