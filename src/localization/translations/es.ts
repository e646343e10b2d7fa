<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>SpokenTexts</name>
    <message>
        <source>%1, folder, %2 app</source>
        <extracomment>%1: the folder&apos;s name</extracomment>
        <translation>%1, carpeta, %2 app</translation>
    </message>
    <message numerus="yes">
        <source>%1, folder, %2 apps</source>
        <extracomment>%1: the folder&apos;s name, %2: how many applications it holds, never 1</extracomment>
        <translation>
            <numerusform>%1, carpeta, %2 apps</numerusform>
            <numerusform>%1, carpeta, %2 apps</numerusform>
        </translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <extracomment>%1: the page shown, %2: how many there are</extracomment>
        <translation>Página %1 de %2</translation>
    </message>
    <message>
        <source>Clear</source>
        <extracomment>The button that empties the search field</extracomment>
        <translation>Borrar</translation>
    </message>
</context>
<context>
    <name>UpdateTexts</name>
    <message>
        <source>A new version of Amberquill is available</source>
        <translation>Hay una nueva versión de Amberquill</translation>
    </message>
    <message>
        <source>Amberquill %1 is available. You have version %2.</source>
        <extracomment>%1: the new version, %2: this one</extracomment>
        <translation>Amberquill %1 está disponible. Tienes la versión %2.</translation>
    </message>
    <message>
        <source>Release Notes</source>
        <translation>Notas de la versión</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Omitir esta versión</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Recordármelo más tarde</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Instalar actualización</translation>
    </message>
    <message>
        <source>This copy of Amberquill cannot replace itself: install the new version with your system’s package manager, or get it from its release page.</source>
        <translation>Esta copia de Amberquill no puede reemplazarse a sí misma: instala la nueva versión con el gestor de paquetes del sistema o descárgala de su página.</translation>
    </message>
    <message>
        <source>Open Release Page</source>
        <translation>Abrir la página de la versión</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>Buscando actualizaciones…</translation>
    </message>
    <message>
        <source>Downloading the update…</source>
        <translation>Descargando la actualización…</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <extracomment>%1 and %2: sizes with their units</extracomment>
        <translation>%1 de %2</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>The download is paused</source>
        <translation>La descarga está en pausa</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Reanudar</translation>
    </message>
    <message>
        <source>Installing the update…</source>
        <translation>Instalando la actualización…</translation>
    </message>
    <message>
        <source>The update is installed</source>
        <translation>La actualización está instalada</translation>
    </message>
    <message>
        <source>Restart Amberquill to use version %1.</source>
        <extracomment>%1: the new version</extracomment>
        <translation>Reinicia Amberquill para usar la versión %1.</translation>
    </message>
    <message>
        <source>Restart Now</source>
        <translation>Reiniciar ahora</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Más tarde</translation>
    </message>
    <message>
        <source>Update Failed</source>
        <translation>Error al actualizar</translation>
    </message>
    <message>
        <source>The list of updates could not be fetched. Check your connection and try again.</source>
        <translation>No se ha podido descargar la lista de actualizaciones. Comprueba tu conexión e inténtalo de nuevo.</translation>
    </message>
    <message>
        <source>The list of updates could not be read.</source>
        <translation>No se ha podido leer la lista de actualizaciones.</translation>
    </message>
    <message>
        <source>There is no valid download for the new version.</source>
        <translation>No hay ninguna descarga válida de la nueva versión.</translation>
    </message>
    <message>
        <source>The update could not be downloaded. Check your connection and try again.</source>
        <translation>No se ha podido descargar la actualización. Comprueba tu conexión e inténtalo de nuevo.</translation>
    </message>
    <message>
        <source>The download could not be saved. Make sure that there is enough free space.</source>
        <translation>No se ha podido guardar la descarga. Comprueba que haya suficiente espacio libre.</translation>
    </message>
    <message>
        <source>This copy of Amberquill has no key to check updates with. Nothing was installed.</source>
        <translation>Esta copia de Amberquill no tiene ninguna clave para comprobar actualizaciones. No se ha instalado nada.</translation>
    </message>
    <message>
        <source>The update is not signed. It was not installed.</source>
        <translation>La actualización no está firmada. No se ha instalado.</translation>
    </message>
    <message>
        <source>The update’s signature is not valid: it may have been tampered with. It was deleted and not installed.</source>
        <translation>La firma de la actualización no es válida: podría haber sido manipulada. Se ha eliminado y no se ha instalado.</translation>
    </message>
    <message>
        <source>The download does not have the announced size. It was deleted and not installed.</source>
        <translation>La descarga no tiene el tamaño anunciado. Se ha eliminado y no se ha instalado.</translation>
    </message>
    <message>
        <source>The update is not newer than this version. It was not installed.</source>
        <translation>La actualización no es más reciente que esta versión. No se ha instalado.</translation>
    </message>
    <message>
        <source>The program’s file could not be replaced. The version that you have still works.</source>
        <translation>No se ha podido reemplazar el archivo del programa. La versión que tienes sigue funcionando.</translation>
    </message>
</context>
</TS>
