# One static library per floor of src/. A floor uses the floors it names and no other: scripts/floors.py checks that.

set(AMBERQUILL_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Werror)

add_library(amberquill_common_options INTERFACE)
target_compile_options(amberquill_common_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:${AMBERQUILL_WARNINGS}>)
target_compile_definitions(amberquill_common_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)
add_library(amberquill_options INTERFACE)
target_link_libraries(amberquill_options INTERFACE amberquill_common_options)
target_compile_options(amberquill_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wshadow>)

if(AMBERQUILL_SANITIZE)
    # GCC warns about fences in Qt's headers, which the thread sanitizer does not support. We use none.
    if(AMBERQUILL_SANITIZE STREQUAL "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-tsan)
    endif()
    add_compile_options(-fsanitize=${AMBERQUILL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${AMBERQUILL_SANITIZE})
    if(AMBERQUILL_SANITIZE STREQUAL "thread")
        add_library(amberquill_thread_sanitizer OBJECT ${CMAKE_SOURCE_DIR}/cmake/ThreadSanitizer.cpp)
        set(programs $<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>)
        link_libraries($<${programs}:$<TARGET_OBJECTS:amberquill_thread_sanitizer>>)
    endif()
endif()

# All floors share one precompiled header: building one for each would take longer than it saves.
file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/precompiled.cpp CONTENT "")
add_library(amberquill_precompiled OBJECT ${CMAKE_BINARY_DIR}/precompiled.cpp)
target_link_libraries(amberquill_precompiled PRIVATE amberquill_options Qt6::Core Qt6::Gui)
target_precompile_headers(amberquill_precompiled PRIVATE ${CMAKE_SOURCE_DIR}/src/precompiled.h)
# CMake's own option has the clone's path in it, which ccache would see. clang finds the precompiled header without.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set(CMAKE_CXX_COMPILE_OPTIONS_USE_PCH -include <PCH_HEADER>)
endif()

# amberquill_floor(<name> SOURCES <files> [PUBLIC <libraries>] [PRIVATE <libraries>] [GENERATES_CODE])
# makes the library amberquill_<name>. With GENERATES_CODE, the code that Qt's tools add to it may shadow names.
function(amberquill_floor name)
    cmake_parse_arguments(FLOOR "GENERATES_CODE" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    set(target amberquill_${name})
    add_library(${target} STATIC ${FLOOR_SOURCES})
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${target} PUBLIC ${FLOOR_PUBLIC} PRIVATE ${FLOOR_PRIVATE})
    if(FLOOR_GENERATES_CODE)
        target_link_libraries(${target} PRIVATE amberquill_common_options)
        # Files with options of their own cannot be compiled together.
        if(NOT CMAKE_UNITY_BUILD)
            set_source_files_properties(${FLOOR_SOURCES} PROPERTIES COMPILE_OPTIONS "-Wshadow")
        endif()
    else()
        target_link_libraries(${target} PRIVATE amberquill_options)
    endif()
    target_precompile_headers(${target} REUSE_FROM amberquill_precompiled)
    amberquill_unify(${target} ${CMAKE_SOURCE_DIR}/src)
endfunction()
