# One static library per floor of src/. A floor links the floors it names and so can use no other.

set(AMBERQUILL_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

add_library(amberquill_options INTERFACE)
target_compile_options(amberquill_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:${AMBERQUILL_WARNINGS}>)
target_compile_definitions(amberquill_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(AMBERQUILL_SANITIZE)
    add_compile_options(-fsanitize=${AMBERQUILL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${AMBERQUILL_SANITIZE})
endif()

# amberquill_floor(<name> SOURCES <files> [PUBLIC <libraries>] [PRIVATE <libraries>])
# makes the library amberquill_<name>.
function(amberquill_floor name)
    cmake_parse_arguments(FLOOR "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    set(target amberquill_${name})
    add_library(${target} STATIC ${FLOOR_SOURCES})
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${target} PUBLIC ${FLOOR_PUBLIC} PRIVATE ${FLOOR_PRIVATE} amberquill_options)
    target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/src/precompiled.h)
endfunction()
