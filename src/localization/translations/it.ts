<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>SpokenTexts</name>
    <message>
        <source>%1, folder, %2 app</source>
        <extracomment>%1: the folder&apos;s name</extracomment>
        <translation>%1, cartella, %2 app</translation>
    </message>
    <message numerus="yes">
        <source>%1, folder, %2 apps</source>
        <extracomment>%1: the folder&apos;s name, %2: how many applications it holds, never 1</extracomment>
        <translation>
            <numerusform>%1, cartella, %2 app</numerusform>
            <numerusform>%1, cartella, %2 app</numerusform>
        </translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <extracomment>%1: the page shown, %2: how many there are</extracomment>
        <translation>Pagina %1 di %2</translation>
    </message>
    <message>
        <source>Clear</source>
        <extracomment>The button that empties the search field</extracomment>
        <translation>Cancella</translation>
    </message>
</context>
<context>
    <name>UpdateTexts</name>
    <message>
        <source>A new version of Amberquill is available</source>
        <translation>È disponibile una nuova versione di Amberquill</translation>
    </message>
    <message>
        <source>Amberquill %1 is available. You have version %2.</source>
        <extracomment>%1: the new version, %2: this one</extracomment>
        <translation>È disponibile Amberquill %1. Hai la versione %2.</translation>
    </message>
    <message>
        <source>Release Notes</source>
        <translation>Note sulla versione</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Salta questa versione</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Ricordamelo più tardi</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Installa aggiornamento</translation>
    </message>
    <message>
        <source>This copy of Amberquill cannot replace itself: install the new version with your system’s package manager, or get it from its release page.</source>
        <translation>Questa copia di Amberquill non può sostituirsi da sola: installa la nuova versione con il gestore di pacchetti del sistema o scaricala dalla sua pagina.</translation>
    </message>
    <message>
        <source>Open Release Page</source>
        <translation>Apri la pagina della versione</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>Controllo degli aggiornamenti…</translation>
    </message>
    <message>
        <source>Downloading the update…</source>
        <translation>Download dell’aggiornamento…</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <extracomment>%1 and %2: sizes with their units</extracomment>
        <translation>%1 di %2</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Sospendi</translation>
    </message>
    <message>
        <source>The download is paused</source>
        <translation>Il download è sospeso</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Riprendi</translation>
    </message>
    <message>
        <source>Installing the update…</source>
        <translation>Installazione dell’aggiornamento…</translation>
    </message>
    <message>
        <source>The update is installed</source>
        <translation>L’aggiornamento è installato</translation>
    </message>
    <message>
        <source>Restart Amberquill to use version %1.</source>
        <extracomment>%1: the new version</extracomment>
        <translation>Riavvia Amberquill per usare la versione %1.</translation>
    </message>
    <message>
        <source>Restart Now</source>
        <translation>Riavvia ora</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Più tardi</translation>
    </message>
    <message>
        <source>Update Failed</source>
        <translation>Aggiornamento non riuscito</translation>
    </message>
    <message>
        <source>The list of updates could not be fetched. Check your connection and try again.</source>
        <translation>Impossibile scaricare l’elenco degli aggiornamenti. Controlla la connessione e riprova.</translation>
    </message>
    <message>
        <source>The list of updates could not be read.</source>
        <translation>Impossibile leggere l’elenco degli aggiornamenti.</translation>
    </message>
    <message>
        <source>There is no valid download for the new version.</source>
        <translation>Per la nuova versione non c’è alcun download valido.</translation>
    </message>
    <message>
        <source>The update could not be downloaded. Check your connection and try again.</source>
        <translation>Impossibile scaricare l’aggiornamento. Controlla la connessione e riprova.</translation>
    </message>
    <message>
        <source>The download could not be saved. Make sure that there is enough free space.</source>
        <translation>Impossibile salvare il download. Verifica che ci sia abbastanza spazio libero.</translation>
    </message>
    <message>
        <source>This copy of Amberquill has no key to check updates with. Nothing was installed.</source>
        <translation>Questa copia di Amberquill non ha una chiave per verificare gli aggiornamenti. Non è stato installato nulla.</translation>
    </message>
    <message>
        <source>The update is not signed. It was not installed.</source>
        <translation>L’aggiornamento non è firmato. Non è stato installato.</translation>
    </message>
    <message>
        <source>The update’s signature is not valid: it may have been tampered with. It was deleted and not installed.</source>
        <translation>La firma dell’aggiornamento non è valida: potrebbe essere stato manomesso. È stato eliminato e non installato.</translation>
    </message>
    <message>
        <source>The download does not have the announced size. It was deleted and not installed.</source>
        <translation>Il file scaricato non ha la dimensione annunciata. È stato eliminato e non installato.</translation>
    </message>
    <message>
        <source>The update is not newer than this version. It was not installed.</source>
        <translation>L’aggiornamento non è più recente di questa versione. Non è stato installato.</translation>
    </message>
    <message>
        <source>The program’s file could not be replaced. The version that you have still works.</source>
        <translation>Impossibile sostituire il file del programma. La versione che hai continua a funzionare.</translation>
    </message>
</context>
</TS>
