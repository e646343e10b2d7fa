# amberquill_wayland_protocol(<name> <file>...) makes the library amberquill_<name>_protocol from the code that
# wayland-scanner generates: <file's name>-client-protocol.h, and -server-protocol.h for tests that act as compositor.
find_program(WAYLAND_SCANNER wayland-scanner REQUIRED)

function(amberquill_wayland_protocol name)
    set(generated ${CMAKE_CURRENT_BINARY_DIR}/protocol)
    file(MAKE_DIRECTORY ${generated})
    foreach(protocol IN LISTS ARGN)
        cmake_path(GET protocol STEM stem)
        foreach(kind IN ITEMS client-header server-header private-code)
            if(kind STREQUAL "private-code")
                set(output ${generated}/${stem}-protocol.c)
            else()
                string(REPLACE "-header" "" side ${kind})
                set(output ${generated}/${stem}-${side}-protocol.h)
            endif()
            set(file ${CMAKE_CURRENT_SOURCE_DIR}/${protocol})
            add_custom_command(OUTPUT ${output}
                COMMAND ${WAYLAND_SCANNER} ${kind} ${file} ${output}
                DEPENDS ${file}
                VERBATIM)
            list(APPEND outputs ${output})
        endforeach()
    endforeach()
    add_library(amberquill_${name}_protocol STATIC ${outputs})
    target_include_directories(amberquill_${name}_protocol SYSTEM PUBLIC ${generated})
    target_link_libraries(amberquill_${name}_protocol PUBLIC PkgConfig::WAYLAND_CLIENT)
endfunction()
