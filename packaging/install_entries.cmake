# Runs at the installation: writes the desktop entry and the bus's service file with the program's real path.
if(IS_ABSOLUTE "${AMBERQUILL_BINDIR}")
    set(program ${AMBERQUILL_BINDIR}/amberquill)
else()
    set(program ${CMAKE_INSTALL_PREFIX}/${AMBERQUILL_BINDIR}/amberquill)
endif()
if(IS_ABSOLUTE "${AMBERQUILL_DATADIR}")
    set(data ${AMBERQUILL_DATADIR})
else()
    set(data ${CMAKE_INSTALL_PREFIX}/${AMBERQUILL_DATADIR})
endif()

# Both formats quote like a shell. Paths with characters that either would interpret are refused.
if(program MATCHES "[\"`$\\%\n]")
    message(FATAL_ERROR "No desktop starts a program by this path: ${program}")
endif()
set(AMBERQUILL_EXEC ${program})
if(NOT program MATCHES "^[A-Za-z0-9/._+-]+$")
    set(AMBERQUILL_EXEC "\"${program}\"")
endif()

# Written to the final place at once: several installations may run at the same time.
set(id org.amberquill.Amberquill)
foreach(file IN ITEMS applications/${id}.desktop dbus-1/services/${id}.service)
    get_filename_component(name ${file} NAME)
    message(STATUS "Installing: $ENV{DESTDIR}${data}/${file}")
    configure_file(${AMBERQUILL_SOURCE}/${name}.in $ENV{DESTDIR}${data}/${file}
        @ONLY FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    list(APPEND CMAKE_INSTALL_MANIFEST_FILES ${data}/${file})
endforeach()

# KDE takes the shortcuts of entries in a folder of its own.
set(link ${data}/kglobalaccel/${id}.desktop)
message(STATUS "Installing: $ENV{DESTDIR}${link}")
file(MAKE_DIRECTORY $ENV{DESTDIR}${data}/kglobalaccel)
file(CREATE_LINK ../applications/${id}.desktop $ENV{DESTDIR}${link} SYMBOLIC)
list(APPEND CMAKE_INSTALL_MANIFEST_FILES ${link})
