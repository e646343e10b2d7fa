"""The texts of the launcher's menu and dialogs in three languages."""

import json
from dataclasses import dataclass

from harness import until
from launcher.read_aloud import ReadAloud

GRIDS = "5 × 4, 6 × 4, 7 × 5*, 8 × 5, 8 × 6, 9 × 6"
LANGUAGES = ("English", "Italiano", "Español", "Français", "Deutsch", "中文", "日本語")


@dataclass(frozen=True)
class Texts:
    language: str  # its own name for itself
    grid: str
    background: str
    languages: str
    commands: str
    presence: str
    last: tuple
    export: str
    import_: str
    reset: list
    replace: list
    no_layout: list
    not_read: list
    not_written: list

    @property
    def menu(self):
        languages = ", ".join(each + "*" * (each == self.language) for each in LANGUAGES)
        first = f"{self.grid} [{GRIDS}], {self.background}, {self.languages}, {languages}], -, {self.commands}"
        return ", -, ".join((first, *self.last)).replace(", -, #", f", {self.presence}")


GERMAN = Texts(
    language="Deutsch",
    grid="Raster",
    background="Hintergrund [Blau*, Lila, Grün]",
    languages="Sprache [Automatisch (System)",
    commands="Nach Name sortieren, Anordnung zurücksetzen…, Anordnung exportieren…, Anordnung importieren…, "
    "App-Liste aktualisieren, -, Beim Anmelden öffnen, Nach Updates suchen…, Automatisch nach Updates suchen*",
    presence="-, Sichtbarkeit, Im Dock anzeigen!*, In der Menüleiste anzeigen",
    last=("#", "Kurzbefehl", "Amberquill beenden"),
    export="Anordnung exportieren",
    import_="Anordnung importieren",
    reset=[
        "Anordnung zurücksetzen?",
        "Alle Ordner werden entfernt und die Apps nach Name sortiert.",
        "Zurücksetzen",
        "Abbrechen",
    ],
    replace=[
        "Aktuelle Anordnung ersetzen?",
        "App-Reihenfolge, Ordner und Raster werden aus der Datei übernommen. Nicht auf diesem Mac installierte Apps "
        "werden übersprungen, unbekannte Apps kommen in den Ordner „Weitere Apps“.",
        "Importieren",
        "Abbrechen",
    ],
    no_layout=["Import fehlgeschlagen", "Die Datei ist keine Amberquill-Anordnung.", "OK"],
    not_read=[
        "Import fehlgeschlagen",
        "broken.json: Die Datei oder das Verzeichnis konnte nicht gefunden werden",
        "OK",
    ],
    not_written=[
        "Export fehlgeschlagen",
        "nowhere.json: Die Datei oder das Verzeichnis konnte nicht gefunden werden",
        "OK",
    ],
)

FRENCH = Texts(
    language="Français",
    grid="Grille",
    background="Fond [Bleu*, Violet, Vert]",
    languages="Langue [Automatique (système)",
    commands="Trier par nom, Réinitialiser la disposition…, Exporter la disposition…, Importer la disposition…, "
    "Actualiser la liste des apps, -, Ouvrir à l’ouverture de session, Rechercher les mises à jour…, "
    "Rechercher automatiquement les mises à jour*",
    presence="-, Visibilité, Afficher dans le Dock!*, Afficher dans la barre des menus",
    last=("#", "Raccourci", "Quitter Amberquill"),
    export="Exporter la disposition",
    import_="Importer la disposition",
    reset=[
        "Réinitialiser la disposition\u00a0?",
        "Tous les dossiers seront supprimés et les apps triées par nom.",
        "Réinitialiser",
        "Annuler",
    ],
    replace=[
        "Remplacer la disposition actuelle\u00a0?",
        "L’ordre des apps, les dossiers et la grille seront repris du fichier. Les apps non installées sur ce Mac sont "
        "ignorées\u00a0; celles que le fichier ne connaît pas vont dans le dossier «\u00a0Autres apps\u00a0».",
        "Importer",
        "Annuler",
    ],
    no_layout=["Échec de l’importation", "Ce fichier n’est pas une disposition Amberquill.", "OK"],
    not_read=["Échec de l’importation", "broken.json: Aucun fichier ou dossier", "OK"],
    not_written=["Échec de l’exportation", "nowhere.json: Aucun fichier ou dossier", "OK"],
)

JAPANESE = Texts(
    language="日本語",
    grid="グリッド",
    background="背景 [ブルー*, パープル, グリーン]",
    languages="言語 [自動（システム）",
    commands="名前順に並べ替え, レイアウトをリセット…, レイアウトを書き出す…, レイアウトを読み込む…, "
    "アプリ一覧を更新, -, ログイン時に開く, アップデートを確認…, アップデートを自動的に確認*",
    presence="-, 表示, Dockに表示!*, メニューバーに表示",
    last=("#", "ショートカット", "Amberquillを終了"),
    export="レイアウトを書き出す",
    import_="レイアウトを読み込む",
    reset=[
        "レイアウトをリセットしますか？",
        "すべてのフォルダが削除され、アプリは名前順に並べ替えられます。",
        "リセット",
        "キャンセル",
    ],
    replace=[
        "現在のレイアウトを置き換えますか？",
        "アプリの順序、フォルダ、グリッドはファイルから読み込まれます。このMacにインストールされていないアプリは"
        "スキップされ、ファイルにないアプリは「その他のアプリ」フォルダに入ります。",
        "読み込む",
        "キャンセル",
    ],
    no_layout=["読み込みに失敗しました", "このファイルはAmberquillのレイアウトではありません。", "OK"],
    not_read=["読み込みに失敗しました", "broken.json: そのようなファイルやディレクトリはありません", "OK"],
    not_written=["書き出しに失敗しました", "nowhere.json: そのようなファイルやディレクトリはありません", "OK"],
)


class TextsOnTheScreen(ReadAloud):
    def setUp(self):
        self.begin_session(1280, 720)
        self.made = [self.applications.add_entry(f"App {number}", f"e{number}") for number in range(1, 9)]
        self.desktop = self.session.home / "Desktop"
        self.desktop.mkdir()
        self.broken = self.desktop / "broken.json"
        # Not even root can create a folder there.
        self.nowhere = self.desktop / "nowhere.json"
        self.nowhere.symlink_to("/proc/nowhere/layout.json")

    def expect_file_dialog(self, title):
        """Waits until the file dialog takes keys."""

        def takes_keys():
            objects = self.objects_in("dialog", title)
            return any(each["role"] == "text" and "focused" in each["states"] for each in objects)

        until(takes_keys, f"the dialog {title}")

    def expect_alert(self, texts):
        """Waits until an alert with these texts and buttons, in any order, takes keys."""
        read = []

        def takes_keys():
            nonlocal read
            objects = [each for each in self.objects_in("alert", "Amberquill") if each["name"]]
            read = [each["name"] for each in objects]
            has_focus = any(each["role"] == "push button" and "focused" in each["states"] for each in objects)
            return has_focus and sorted(read) == sorted(texts)

        try:
            until(takes_keys, f"{texts}")
        except AssertionError as error:
            raise AssertionError(f"{error}; read: {read}") from None

    def ask_for_the_import(self, texts):
        self.broken.write_bytes(b"{")
        self.choose(self.IMPORT)
        self.expect_file_dialog(texts.import_)
        self.session.type(self.broken.name)
        self.session.press("Return")
        self.expect_alert(texts.replace)

    def expect_end_of_dialogs(self, launcher):
        self.expect_no_other_window(launcher)
        until(lambda: self.session.focused_window() == self.window, "the launcher's focus")

    def expect_texts(self, language, texts):
        preferences = self.session.config / "Amberquill" / "preferences.json"
        preferences.parent.mkdir()
        preferences.write_text(json.dumps({"appLanguage": language}), encoding="utf-8")
        reader = self.follow_menus()
        launcher = self.begin_shown_launcher(self.made)
        until(lambda: self.find("push button", "App 1"), "its objects")
        self.session.press("Menu")
        self.assertEqual(reader.expect("menu ").removeprefix("menu "), texts.menu)
        self.session.press("Escape")
        self.expect_end_of_dialogs(launcher)
        self.choose(self.RESET)
        self.expect_alert(texts.reset)
        self.session.press("Escape")
        self.expect_end_of_dialogs(launcher)
        self.ask_for_the_import(texts)
        self.session.press("Return")
        self.expect_alert(texts.no_layout)
        self.session.press("Return")
        self.expect_end_of_dialogs(launcher)
        self.ask_for_the_import(texts)
        self.broken.unlink()
        self.session.press("Return")
        self.expect_alert(texts.not_read)
        self.session.press("Return")
        self.expect_end_of_dialogs(launcher)
        self.choose(self.EXPORT)
        self.expect_file_dialog(texts.export)
        self.session.type(self.nowhere.name)
        self.session.press("Return")
        self.expect_alert(texts.not_written)
        self.session.press("Return")
        self.expect_end_of_dialogs(launcher)
        self.end_launcher(launcher)

    def expect_cancel(self, languages, title, cancel):
        """Expects the text of Qt's own button in a session with these languages."""
        launcher = self.begin_shown_launcher(self.made, LANGUAGE=languages)
        self.choose(self.EXPORT)
        self.expect_file_dialog(title)
        buttons = [each["name"] for each in self.objects_in("dialog", title) if each["role"] == "push button"]
        self.assertIn(cancel, buttons)
        self.session.press("Escape")
        self.expect_end_of_dialogs(launcher)
        self.end_launcher(launcher)

    def test_qts_texts_are_in_the_first_system_language_that_the_launcher_supports(self):
        self.expect_cancel("pt_BR:fr_FR", FRENCH.export, "Annuler")
        self.expect_cancel("pl_PL", "Export Layout", "Cancel")

    def test_in_german(self):
        self.expect_texts("de", GERMAN)

    def test_in_french(self):
        self.expect_texts("fr", FRENCH)

    def test_in_japanese(self):
        self.expect_texts("ja", JAPANESE)
