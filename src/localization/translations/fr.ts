<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>SpokenTexts</name>
    <message>
        <source>%1, folder, %2 app</source>
        <extracomment>%1: the folder&apos;s name</extracomment>
        <translation>%1, dossier, %2 app</translation>
    </message>
    <message numerus="yes">
        <source>%1, folder, %2 apps</source>
        <extracomment>%1: the folder&apos;s name, %2: how many applications it holds, never 1</extracomment>
        <translation>
            <numerusform>%1, dossier, %2 apps</numerusform>
            <numerusform>%1, dossier, %2 apps</numerusform>
        </translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <extracomment>%1: the page shown, %2: how many there are</extracomment>
        <translation>Page %1 sur %2</translation>
    </message>
    <message>
        <source>Clear</source>
        <extracomment>The button that empties the search field</extracomment>
        <translation>Effacer</translation>
    </message>
</context>
<context>
    <name>UpdateTexts</name>
    <message>
        <source>A new version of Amberquill is available</source>
        <translation>Une nouvelle version d’Amberquill est disponible</translation>
    </message>
    <message>
        <source>Amberquill %1 is available. You have version %2.</source>
        <extracomment>%1: the new version, %2: this one</extracomment>
        <translation>Amberquill %1 est disponible. Vous avez la version %2.</translation>
    </message>
    <message>
        <source>Release Notes</source>
        <translation>Notes de version</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Ignorer cette version</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Me le rappeler plus tard</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Installer la mise à jour</translation>
    </message>
    <message>
        <source>This copy of Amberquill cannot replace itself: install the new version with your system’s package manager, or get it from its release page.</source>
        <translation>Cette copie d’Amberquill ne peut pas se remplacer elle-même&#xa0;: installez la nouvelle version avec le gestionnaire de paquets du système ou téléchargez-la sur sa page.</translation>
    </message>
    <message>
        <source>Open Release Page</source>
        <translation>Ouvrir la page de la version</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>Recherche de mises à jour…</translation>
    </message>
    <message>
        <source>Downloading the update…</source>
        <translation>Téléchargement de la mise à jour…</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <extracomment>%1 and %2: sizes with their units</extracomment>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Suspendre</translation>
    </message>
    <message>
        <source>The download is paused</source>
        <translation>Le téléchargement est suspendu</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Reprendre</translation>
    </message>
    <message>
        <source>Installing the update…</source>
        <translation>Installation de la mise à jour…</translation>
    </message>
    <message>
        <source>The update is installed</source>
        <translation>La mise à jour est installée</translation>
    </message>
    <message>
        <source>Restart Amberquill to use version %1.</source>
        <extracomment>%1: the new version</extracomment>
        <translation>Redémarrez Amberquill pour utiliser la version %1.</translation>
    </message>
    <message>
        <source>Restart Now</source>
        <translation>Redémarrer maintenant</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Plus tard</translation>
    </message>
    <message>
        <source>Update Failed</source>
        <translation>Échec de la mise à jour</translation>
    </message>
    <message>
        <source>The list of updates could not be fetched. Check your connection and try again.</source>
        <translation>La liste des mises à jour n’a pas pu être téléchargée. Vérifiez votre connexion et réessayez.</translation>
    </message>
    <message>
        <source>The list of updates could not be read.</source>
        <translation>La liste des mises à jour n’a pas pu être lue.</translation>
    </message>
    <message>
        <source>There is no valid download for the new version.</source>
        <translation>Il n’y a pas de téléchargement valable pour la nouvelle version.</translation>
    </message>
    <message>
        <source>The update could not be downloaded. Check your connection and try again.</source>
        <translation>La mise à jour n’a pas pu être téléchargée. Vérifiez votre connexion et réessayez.</translation>
    </message>
    <message>
        <source>The download could not be saved. Make sure that there is enough free space.</source>
        <translation>Le téléchargement n’a pas pu être enregistré. Vérifiez qu’il reste assez d’espace libre.</translation>
    </message>
    <message>
        <source>This copy of Amberquill has no key to check updates with. Nothing was installed.</source>
        <translation>Cette copie d’Amberquill n’a pas de clé pour vérifier les mises à jour. Rien n’a été installé.</translation>
    </message>
    <message>
        <source>The update is not signed. It was not installed.</source>
        <translation>La mise à jour n’est pas signée. Elle n’a pas été installée.</translation>
    </message>
    <message>
        <source>The update’s signature is not valid: it may have been tampered with. It was deleted and not installed.</source>
        <translation>La signature de la mise à jour n’est pas valide&#xa0;: elle a peut-être été altérée. Elle a été supprimée et n’a pas été installée.</translation>
    </message>
    <message>
        <source>The download does not have the announced size. It was deleted and not installed.</source>
        <translation>Le fichier téléchargé n’a pas la taille annoncée. Il a été supprimé et n’a pas été installé.</translation>
    </message>
    <message>
        <source>The update is not newer than this version. It was not installed.</source>
        <translation>La mise à jour n’est pas plus récente que cette version. Elle n’a pas été installée.</translation>
    </message>
    <message>
        <source>The program’s file could not be replaced. The version that you have still works.</source>
        <translation>Le fichier du programme n’a pas pu être remplacé. La version que vous avez fonctionne toujours.</translation>
    </message>
</context>
</TS>
