# The header-only libraries of the companion program as targets tabrin_cli11 and tabrin_json: from their CMake packages,
# else from the folder that the packages of the build machine put them into.
#
# That folder is usually /usr/include, and the headers of a Linux system must never reach a compiler for Windows. So a
# folder in the build tree gets links to these libraries and to nothing else.
include_guard(GLOBAL)

# tabrin_add_header_library(<target> <package> <target of the package> <folder of the headers> <one of the headers>)
function(tabrin_add_header_library target package imported folder header)
    add_library(${target} INTERFACE)
    find_package(${package} CONFIG QUIET)
    if(TARGET ${imported})
        target_link_libraries(${target} INTERFACE ${imported})
        return()
    endif()
    string(TOUPPER "TABRIN_${package}_INCLUDE_DIR" variable)
    find_path(
        ${variable}
        NAMES "${folder}/${header}"
        HINTS /usr/include /usr/local/include
        NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED
        DOC "Folder with ${folder}/${header}")
    set(links "${CMAKE_BINARY_DIR}/header_libraries/${target}")
    file(MAKE_DIRECTORY "${links}")
    file(CREATE_LINK "${${variable}}/${folder}" "${links}/${folder}" COPY_ON_ERROR SYMBOLIC)
    target_include_directories(${target} SYSTEM INTERFACE "${links}")
endfunction()

tabrin_add_header_library(tabrin_cli11 CLI11 CLI11::CLI11 CLI CLI.hpp)
tabrin_add_header_library(tabrin_json nlohmann_json nlohmann_json::nlohmann_json nlohmann json.hpp)
