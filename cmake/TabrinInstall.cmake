# What `cmake --install` puts where, and how other builds find it: as CMake package, by pkg-config, or as files.
include(CMakePackageConfigHelpers)

set(cmake_dir "${CMAKE_INSTALL_LIBDIR}/cmake/tabrin")
if(WIN32)
    # Nobody looks for share/doc/tabrin there.
    set(doc_dir doc)
    set(examples_dir examples)
else()
    set(doc_dir "${CMAKE_INSTALL_DATAROOTDIR}/doc/tabrin")
    set(examples_dir "${doc_dir}/examples")
endif()

# Folders too are to look the same whoever builds.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# --- The library -------------------------------------------------------------------------------------------------

set_target_properties(tabrin64 PROPERTIES EXPORT_NAME tabrin)
install(
    TARGETS tabrin64
    EXPORT tabrinTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES include/tabrin.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

# MinGW makes an import library that its own linker reads. That of Visual C++ wants another form, which LLVM's tool makes
# from the list of exported names.
set(visual_import_library "${CMAKE_BINARY_DIR}/tabrin64.lib")
if(MINGW)
    find_program(TABRIN_LLVM_DLLTOOL NAMES llvm-dlltool-14 llvm-dlltool
                 DOC "Makes the import library for Visual C++")
    if(TABRIN_LLVM_DLLTOOL)
        set(exports "${CMAKE_CURRENT_SOURCE_DIR}/src/api/tabrin64.def")
        add_custom_command(
            OUTPUT "${visual_import_library}"
            COMMAND "${TABRIN_LLVM_DLLTOOL}" -m i386:x86-64 -d "${exports}" -D tabrin64.dll -l "${visual_import_library}"
            DEPENDS "${exports}"
            VERBATIM)
        add_custom_target(tabrin_visual_import_library ALL DEPENDS "${visual_import_library}")
        install(FILES "${visual_import_library}" DESTINATION ${CMAKE_INSTALL_LIBDIR})
    else()
        message(STATUS "No llvm-dlltool: there will be no import library for Visual C++")
    endif()
endif()

# --- For other builds --------------------------------------------------------------------------------------------

install(
    EXPORT tabrinTargets
    NAMESPACE tabrin::
    DESTINATION ${cmake_dir})
configure_package_config_file(cmake/tabrinConfig.cmake.in "${CMAKE_BINARY_DIR}/tabrinConfig.cmake"
                              INSTALL_DESTINATION ${cmake_dir} PATH_VARS CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file("${CMAKE_BINARY_DIR}/tabrinConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_BINARY_DIR}/tabrinConfig.cmake" "${CMAKE_BINARY_DIR}/tabrinConfigVersion.cmake"
        DESTINATION ${cmake_dir})

file(RELATIVE_PATH TABRIN_PREFIX_FROM_PKGCONFIG "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file(cmake/tabrin.pc.in "${CMAKE_BINARY_DIR}/tabrin.pc" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/tabrin.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# --- For people --------------------------------------------------------------------------------------------------

if(TABRIN_BUILD_TOOLS)
    install(TARGETS tabrin_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    if(NOT WIN32)
        install(FILES tools/tabrin/tabrin.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
    endif()
endif()

install(FILES README.md THIRD-PARTY-NOTICES.md DESTINATION ${doc_dir})
install(
    FILES CHANGELOG.md
    DESTINATION ${doc_dir}
    OPTIONAL)
install(
    DIRECTORY docs
    DESTINATION ${doc_dir}
    OPTIONAL)
install(FILES examples/dbc_dump.c examples/list_signals.c examples/build_database.cpp examples/engine.dbc
        DESTINATION ${examples_dir})
