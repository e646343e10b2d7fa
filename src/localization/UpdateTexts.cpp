#include "localization/UpdateTexts.h"

#include "localization/L.h"

namespace amberquill {

namespace {

// Columns: English, Italian, Spanish, French, German, Chinese, Japanese. No-break spaces are written as
// escapes so that they can be seen.
// clang-format off
constexpr std::array<std::array<const char16_t*, allAppLanguages.size() - 1>, updateTextCount> updateTable = {{
    // FoundTitle
    {u"A new version of Amberquill is available",
     u"È disponibile una nuova versione di Amberquill",
     u"Hay una nueva versión de Amberquill",
     u"Une nouvelle version d’Amberquill est disponible",
     u"Eine neue Version von Amberquill ist verfügbar",
     u"Amberquill 有新版本可用",
     u"Amberquillの新しいバージョンがあります"},
    // FoundMessage
    {u"Amberquill %1 is available. You have version %2.",
     u"È disponibile Amberquill %1. Hai la versione %2.",
     u"Amberquill %1 está disponible. Tienes la versión %2.",
     u"Amberquill %1 est disponible. Vous avez la version %2.",
     u"Amberquill %1 ist verfügbar. Du hast Version %2.",
     u"Amberquill %1 现已可用。当前版本为 %2。",
     u"Amberquill %1を利用できます。お使いのバージョンは%2です。"},
    // ReleaseNotes
    {u"Release Notes",
     u"Note sulla versione",
     u"Notas de la versión",
     u"Notes de version",
     u"Versionshinweise",
     u"版本说明",
     u"リリースノート"},
    // Skip
    {u"Skip This Version",
     u"Salta questa versione",
     u"Omitir esta versión",
     u"Ignorer cette version",
     u"Diese Version überspringen",
     u"跳过此版本",
     u"このバージョンをスキップ"},
    // RemindLater
    {u"Remind Me Later",
     u"Ricordamelo più tardi",
     u"Recordármelo más tarde",
     u"Me le rappeler plus tard",
     u"Später erinnern",
     u"稍后提醒我",
     u"あとで通知"},
    // Install
    {u"Install Update",
     u"Installa aggiornamento",
     u"Instalar actualización",
     u"Installer la mise à jour",
     u"Update installieren",
     u"安装更新",
     u"アップデートをインストール"},
    // PackageManaged
    {u"This copy of Amberquill cannot replace itself: install the new version with your system’s package manager, or get it from its release page.",
     u"Questa copia di Amberquill non può sostituirsi da sola: installa la nuova versione con il gestore di pacchetti del sistema o scaricala dalla sua pagina.",
     u"Esta copia de Amberquill no puede reemplazarse a sí misma: instala la nueva versión con el gestor de paquetes del sistema o descárgala de su página.",
     u"Cette copie d’Amberquill ne peut pas se remplacer elle-même\u00a0: installez la nouvelle version avec le gestionnaire de paquets du système ou téléchargez-la sur sa page.",
     u"Dieses Amberquill kann sich nicht selbst ersetzen: Installiere die neue Version mit der Paketverwaltung deines Systems oder lade sie von ihrer Seite.",
     u"此 Amberquill 无法自行替换：请使用系统的软件包管理器安装新版本，或从发布页面下载。",
     u"このAmberquillは自分自身を置き換えられません。システムのパッケージマネージャで新しいバージョンをインストールするか、リリースページから入手してください。"},
    // OpenReleasePage
    {u"Open Release Page",
     u"Apri la pagina della versione",
     u"Abrir la página de la versión",
     u"Ouvrir la page de la version",
     u"Seite der Version öffnen",
     u"打开发布页面",
     u"リリースページを開く"},
    // Checking
    {u"Checking for updates…",
     u"Controllo degli aggiornamenti…",
     u"Buscando actualizaciones…",
     u"Recherche de mises à jour…",
     u"Es wird nach Updates gesucht…",
     u"正在检查更新…",
     u"アップデートを確認中…"},
    // Downloading
    {u"Downloading the update…",
     u"Download dell’aggiornamento…",
     u"Descargando la actualización…",
     u"Téléchargement de la mise à jour…",
     u"Das Update wird geladen…",
     u"正在下载更新…",
     u"アップデートをダウンロード中…"},
    // Progress
    {u"%1 of %2",
     u"%1 di %2",
     u"%1 de %2",
     u"%1 sur %2",
     u"%1 von %2",
     u"已下载 %1，共 %2",
     u"%1 / %2"},
    // Pause
    {u"Pause",
     u"Sospendi",
     u"Pausar",
     u"Suspendre",
     u"Anhalten",
     u"暂停",
     u"一時停止"},
    // Paused
    {u"The download is paused",
     u"Il download è sospeso",
     u"La descarga está en pausa",
     u"Le téléchargement est suspendu",
     u"Der Download ist angehalten",
     u"下载已暂停",
     u"ダウンロードを一時停止中"},
    // Resume
    {u"Resume",
     u"Riprendi",
     u"Reanudar",
     u"Reprendre",
     u"Fortsetzen",
     u"继续",
     u"再開"},
    // Installing
    {u"Installing the update…",
     u"Installazione dell’aggiornamento…",
     u"Instalando la actualización…",
     u"Installation de la mise à jour…",
     u"Das Update wird installiert…",
     u"正在安装更新…",
     u"アップデートをインストール中…"},
    // InstalledTitle
    {u"The update is installed",
     u"L’aggiornamento è installato",
     u"La actualización está instalada",
     u"La mise à jour est installée",
     u"Das Update ist installiert",
     u"更新已安装",
     u"アップデートをインストールしました"},
    // InstalledMessage
    {u"Restart Amberquill to use version %1.",
     u"Riavvia Amberquill per usare la versione %1.",
     u"Reinicia Amberquill para usar la versión %1.",
     u"Redémarrez Amberquill pour utiliser la version %1.",
     u"Starte Amberquill neu, um Version %1 zu verwenden.",
     u"重新启动 Amberquill 以使用版本 %1。",
     u"バージョン%1を使うには、Amberquillを再起動してください。"},
    // RestartNow
    {u"Restart Now",
     u"Riavvia ora",
     u"Reiniciar ahora",
     u"Redémarrer maintenant",
     u"Jetzt neu starten",
     u"立即重新启动",
     u"今すぐ再起動"},
    // Later
    {u"Later",
     u"Più tardi",
     u"Más tarde",
     u"Plus tard",
     u"Später",
     u"稍后",
     u"あとで"},
    // FailedTitle
    {u"Update Failed",
     u"Aggiornamento non riuscito",
     u"Error al actualizar",
     u"Échec de la mise à jour",
     u"Update fehlgeschlagen",
     u"更新失败",
     u"アップデートに失敗しました"},
    // FeedNotFetched
    {u"The list of updates could not be fetched. Check your connection and try again.",
     u"Impossibile scaricare l’elenco degli aggiornamenti. Controlla la connessione e riprova.",
     u"No se ha podido descargar la lista de actualizaciones. Comprueba tu conexión e inténtalo de nuevo.",
     u"La liste des mises à jour n’a pas pu être téléchargée. Vérifiez votre connexion et réessayez.",
     u"Die Liste der Updates konnte nicht geladen werden. Prüfe deine Verbindung und versuche es noch einmal.",
     u"无法下载更新列表。请检查网络连接后重试。",
     u"アップデートの一覧をダウンロードできませんでした。接続を確認して、もう一度お試しください。"},
    // FeedUnreadable
    {u"The list of updates could not be read.",
     u"Impossibile leggere l’elenco degli aggiornamenti.",
     u"No se ha podido leer la lista de actualizaciones.",
     u"La liste des mises à jour n’a pas pu être lue.",
     u"Die Liste der Updates konnte nicht gelesen werden.",
     u"无法读取更新列表。",
     u"アップデートの一覧を読み込めませんでした。"},
    // NoDownload
    {u"There is no valid download for the new version.",
     u"Per la nuova versione non c’è alcun download valido.",
     u"No hay ninguna descarga válida de la nueva versión.",
     u"Il n’y a pas de téléchargement valable pour la nouvelle version.",
     u"Für die neue Version gibt es keinen gültigen Download.",
     u"新版本没有可用的下载文件。",
     u"新しいバージョンには有効なダウンロードがありません。"},
    // DownloadFailed
    {u"The update could not be downloaded. Check your connection and try again.",
     u"Impossibile scaricare l’aggiornamento. Controlla la connessione e riprova.",
     u"No se ha podido descargar la actualización. Comprueba tu conexión e inténtalo de nuevo.",
     u"La mise à jour n’a pas pu être téléchargée. Vérifiez votre connexion et réessayez.",
     u"Das Update konnte nicht geladen werden. Prüfe deine Verbindung und versuche es noch einmal.",
     u"无法下载更新。请检查网络连接后重试。",
     u"アップデートをダウンロードできませんでした。接続を確認して、もう一度お試しください。"},
    // NotStored
    {u"The download could not be saved. Make sure that there is enough free space.",
     u"Impossibile salvare il download. Verifica che ci sia abbastanza spazio libero.",
     u"No se ha podido guardar la descarga. Comprueba que haya suficiente espacio libre.",
     u"Le téléchargement n’a pas pu être enregistré. Vérifiez qu’il reste assez d’espace libre.",
     u"Der Download konnte nicht gespeichert werden. Prüfe, ob genug Speicherplatz frei ist.",
     u"无法保存下载文件。请确认有足够的可用空间。",
     u"ダウンロードを保存できませんでした。十分な空き容量があるか確認してください。"},
    // NoKey
    {u"This copy of Amberquill has no key to check updates with. Nothing was installed.",
     u"Questa copia di Amberquill non ha una chiave per verificare gli aggiornamenti. Non è stato installato nulla.",
     u"Esta copia de Amberquill no tiene ninguna clave para comprobar actualizaciones. No se ha instalado nada.",
     u"Cette copie d’Amberquill n’a pas de clé pour vérifier les mises à jour. Rien n’a été installé.",
     u"Dieses Amberquill hat keinen Schlüssel, um Updates zu prüfen. Es wurde nichts installiert.",
     u"此 Amberquill 没有用于验证更新的密钥。未安装任何内容。",
     u"このAmberquillにはアップデートを検証する鍵がありません。何もインストールされていません。"},
    // NoSignature
    {u"The update is not signed. It was not installed.",
     u"L’aggiornamento non è firmato. Non è stato installato.",
     u"La actualización no está firmada. No se ha instalado.",
     u"La mise à jour n’est pas signée. Elle n’a pas été installée.",
     u"Das Update ist nicht signiert. Es wurde nicht installiert.",
     u"此更新未签名，未安装。",
     u"アップデートに署名がありません。インストールされていません。"},
    // WrongSignature
    {u"The update’s signature is not valid: it may have been tampered with. It was deleted and not installed.",
     u"La firma dell’aggiornamento non è valida: potrebbe essere stato manomesso. È stato eliminato e non installato.",
     u"La firma de la actualización no es válida: podría haber sido manipulada. Se ha eliminado y no se ha instalado.",
     u"La signature de la mise à jour n’est pas valide\u00a0: elle a peut-être été altérée. Elle a été supprimée et n’a pas été installée.",
     u"Die Signatur des Updates ist ungültig: Es könnte manipuliert sein. Es wurde gelöscht und nicht installiert.",
     u"更新的签名无效，可能已被篡改。更新已被删除，未安装。",
     u"アップデートの署名が無効です。改ざんされた可能性があります。ファイルは削除され、インストールされていません。"},
    // WrongLength
    {u"The download does not have the announced size. It was deleted and not installed.",
     u"Il file scaricato non ha la dimensione annunciata. È stato eliminato e non installato.",
     u"La descarga no tiene el tamaño anunciado. Se ha eliminado y no se ha instalado.",
     u"Le fichier téléchargé n’a pas la taille annoncée. Il a été supprimé et n’a pas été installé.",
     u"Der Download hat nicht die angekündigte Größe. Er wurde gelöscht und nicht installiert.",
     u"下载文件的大小与公布的不符。文件已被删除，未安装。",
     u"ダウンロードしたファイルのサイズが公表されたものと異なります。ファイルは削除され、インストールされていません。"},
    // OlderVersion
    {u"The update is not newer than this version. It was not installed.",
     u"L’aggiornamento non è più recente di questa versione. Non è stato installato.",
     u"La actualización no es más reciente que esta versión. No se ha instalado.",
     u"La mise à jour n’est pas plus récente que cette version. Elle n’a pas été installée.",
     u"Das Update ist nicht neuer als diese Version. Es wurde nicht installiert.",
     u"该更新并不比当前版本新，未安装。",
     u"このアップデートは現在のバージョンより新しくありません。インストールされていません。"},
    // NotReplaceable
    {u"The program’s file could not be replaced. The version that you have still works.",
     u"Impossibile sostituire il file del programma. La versione che hai continua a funzionare.",
     u"No se ha podido reemplazar el archivo del programa. La versión que tienes sigue funcionando.",
     u"Le fichier du programme n’a pas pu être remplacé. La version que vous avez fonctionne toujours.",
     u"Die Datei des Programms konnte nicht ersetzt werden. Deine bisherige Version läuft weiter.",
     u"无法替换程序文件。现有版本仍可正常使用。",
     u"プログラムのファイルを置き換えられませんでした。現在のバージョンは引き続き使えます。"},
}};
// clang-format on

} // namespace

QString updateText(UpdateText text) {
    const auto column =
        static_cast<std::size_t>(L::effectiveLanguage()) - static_cast<std::size_t>(AppLanguage::English);
    return QString::fromUtf16(updateTable.at(static_cast<std::size_t>(text)).at(column));
}

} // namespace amberquill
