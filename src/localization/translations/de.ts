<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>SpokenTexts</name>
    <message>
        <source>%1, folder, %2 app</source>
        <extracomment>%1: the folder&apos;s name</extracomment>
        <translation>%1, Ordner, %2 App</translation>
    </message>
    <message numerus="yes">
        <source>%1, folder, %2 apps</source>
        <extracomment>%1: the folder&apos;s name, %2: how many applications it holds, never 1</extracomment>
        <translation>
            <numerusform>%1, Ordner, %2 Apps</numerusform>
            <numerusform>%1, Ordner, %2 Apps</numerusform>
        </translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <extracomment>%1: the page shown, %2: how many there are</extracomment>
        <translation>Seite %1 von %2</translation>
    </message>
    <message>
        <source>Clear</source>
        <extracomment>The button that empties the search field</extracomment>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>UpdateTexts</name>
    <message>
        <source>A new version of Amberquill is available</source>
        <translation>Eine neue Version von Amberquill ist verfügbar</translation>
    </message>
    <message>
        <source>Amberquill %1 is available. You have version %2.</source>
        <extracomment>%1: the new version, %2: this one</extracomment>
        <translation>Amberquill %1 ist verfügbar. Du hast Version %2.</translation>
    </message>
    <message>
        <source>Release Notes</source>
        <translation>Versionshinweise</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Diese Version überspringen</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Später erinnern</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Update installieren</translation>
    </message>
    <message>
        <source>This copy of Amberquill cannot replace itself: install the new version with your system’s package manager, or get it from its release page.</source>
        <translation>Dieses Amberquill kann sich nicht selbst ersetzen: Installiere die neue Version mit der Paketverwaltung deines Systems oder lade sie von ihrer Seite.</translation>
    </message>
    <message>
        <source>Open Release Page</source>
        <translation>Seite der Version öffnen</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>Es wird nach Updates gesucht…</translation>
    </message>
    <message>
        <source>Downloading the update…</source>
        <translation>Das Update wird geladen…</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <extracomment>%1 and %2: sizes with their units</extracomment>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>The download is paused</source>
        <translation>Der Download ist angehalten</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Installing the update…</source>
        <translation>Das Update wird installiert…</translation>
    </message>
    <message>
        <source>The update is installed</source>
        <translation>Das Update ist installiert</translation>
    </message>
    <message>
        <source>Restart Amberquill to use version %1.</source>
        <extracomment>%1: the new version</extracomment>
        <translation>Starte Amberquill neu, um Version %1 zu verwenden.</translation>
    </message>
    <message>
        <source>Restart Now</source>
        <translation>Jetzt neu starten</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>Update Failed</source>
        <translation>Update fehlgeschlagen</translation>
    </message>
    <message>
        <source>The list of updates could not be fetched. Check your connection and try again.</source>
        <translation>Die Liste der Updates konnte nicht geladen werden. Prüfe deine Verbindung und versuche es noch einmal.</translation>
    </message>
    <message>
        <source>The list of updates could not be read.</source>
        <translation>Die Liste der Updates konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>There is no valid download for the new version.</source>
        <translation>Für die neue Version gibt es keinen gültigen Download.</translation>
    </message>
    <message>
        <source>The update could not be downloaded. Check your connection and try again.</source>
        <translation>Das Update konnte nicht geladen werden. Prüfe deine Verbindung und versuche es noch einmal.</translation>
    </message>
    <message>
        <source>The download could not be saved. Make sure that there is enough free space.</source>
        <translation>Der Download konnte nicht gespeichert werden. Prüfe, ob genug Speicherplatz frei ist.</translation>
    </message>
    <message>
        <source>This copy of Amberquill has no key to check updates with. Nothing was installed.</source>
        <translation>Dieses Amberquill hat keinen Schlüssel, um Updates zu prüfen. Es wurde nichts installiert.</translation>
    </message>
    <message>
        <source>The update is not signed. It was not installed.</source>
        <translation>Das Update ist nicht signiert. Es wurde nicht installiert.</translation>
    </message>
    <message>
        <source>The update’s signature is not valid: it may have been tampered with. It was deleted and not installed.</source>
        <translation>Die Signatur des Updates ist ungültig: Es könnte manipuliert sein. Es wurde gelöscht und nicht installiert.</translation>
    </message>
    <message>
        <source>The download does not have the announced size. It was deleted and not installed.</source>
        <translation>Der Download hat nicht die angekündigte Größe. Er wurde gelöscht und nicht installiert.</translation>
    </message>
    <message>
        <source>The update is not newer than this version. It was not installed.</source>
        <translation>Das Update ist nicht neuer als diese Version. Es wurde nicht installiert.</translation>
    </message>
    <message>
        <source>The program’s file could not be replaced. The version that you have still works.</source>
        <translation>Die Datei des Programms konnte nicht ersetzt werden. Deine bisherige Version läuft weiter.</translation>
    </message>
</context>
</TS>
