# Shared helpers for declaring the project's libraries the same way everywhere.

# nvb_export_library(<target> <header-root> <include-subdir>)
# Versions, installs and exports a library whose headers are included relative
# to <header-root>; installed, that root is include/nvb/<include-subdir>.
function(nvb_export_library target header_root subdir)
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${header_root}>
        $<INSTALL_INTERFACE:${NVB_INSTALL_INCLUDEDIR}/${subdir}>)
    install(TARGETS ${target} EXPORT NvbGuiComponentsTargets
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
            RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# nvb_install_headers(<header-root> <include-subdir>): every header below the
# root, with its relative path.
function(nvb_install_headers header_root subdir)
    install(DIRECTORY ${header_root}/
            DESTINATION ${NVB_INSTALL_INCLUDEDIR}/${subdir}
            FILES_MATCHING PATTERN "*.h")
endfunction()

# nvb_add_subdirectories(<dir>...): adds the feature folders that exist, so a
# folder joins its library by carrying its own CMakeLists.txt.
macro(nvb_add_subdirectories)
    foreach(_nvb_dir ${ARGN})
        if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${_nvb_dir}/CMakeLists.txt)
            add_subdirectory(${_nvb_dir})
        endif()
    endforeach()
endmacro()
