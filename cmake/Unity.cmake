# amberquill_unify(<target> <folder>)
# Where several files are compiled as one (CMAKE_UNITY_BUILD): the file that includes the sources of a target. It names
# them as they are found from <folder>, which the target has on its include path. CMake's own such files name them by
# absolute paths, and then what ccache keeps of one clone hardly serves another. CMake goes on to do so for what is
# generated; a source with options of its own is compiled by itself.
function(amberquill_unify target folder)
    if(CMAKE_UNITY_BUILD)
        # At the end of its folder, when all is known about its sources.
        cmake_language(EVAL CODE "cmake_language(DEFER CALL amberquill_write_unity_file [[${target}]] [[${folder}]])")
    endif()
endfunction()

function(amberquill_write_unity_file target folder)
    get_target_property(sources ${target} SOURCES)
    set(includes "")
    foreach(source IN LISTS sources)
        get_source_file_property(options ${source} COMPILE_OPTIONS)
        get_source_file_property(definitions ${source} COMPILE_DEFINITIONS)
        cmake_path(ABSOLUTE_PATH source NORMALIZE OUTPUT_VARIABLE path)
        cmake_path(IS_PREFIX folder "${path}" is_ours)
        if(source MATCHES "\\.cpp$" AND is_ours AND NOT options AND NOT definitions)
            cmake_path(RELATIVE_PATH path BASE_DIRECTORY "${folder}" OUTPUT_VARIABLE name)
            string(APPEND includes "#include \"${name}\"\n")
            set_source_files_properties(${source} PROPERTIES HEADER_FILE_ONLY ON)
        endif()
    endforeach()
    if(includes)
        set(unity ${CMAKE_CURRENT_BINARY_DIR}/${target}_sources.cpp)
        file(GENERATE OUTPUT ${unity} CONTENT "${includes}")
        target_sources(${target} PRIVATE ${unity})
        set_source_files_properties(${unity} PROPERTIES SKIP_AUTOMOC ON SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
endfunction()
