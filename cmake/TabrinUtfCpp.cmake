# Offers utfcpp, a library of headers, as target tabrin_utfcpp: from its CMake package (as vcpkg installs it), else from
# a folder that holds utf8.h and utf8/.
#
# The folder is searched in places named here and not in the usual ones: a system-wide /usr/include/utf8.h would make
# /usr/include an include directory, and the headers of a Linux system must never reach a compiler for Windows.
add_library(tabrin_utfcpp INTERFACE)

find_package(utf8cpp CONFIG QUIET)
if(TARGET utf8cpp::utf8cpp)
    target_link_libraries(tabrin_utfcpp INTERFACE utf8cpp::utf8cpp)
elseif(TARGET utf8cpp)
    target_link_libraries(tabrin_utfcpp INTERFACE utf8cpp)
else()
    find_path(
        TABRIN_UTFCPP_INCLUDE_DIR
        NAMES utf8/checked.h
        HINTS /usr/include/utf8cpp /usr/local/include/utf8cpp
        NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED
        DOC "Folder with utf8.h and utf8/ of utfcpp and nothing else")
    target_include_directories(tabrin_utfcpp SYSTEM INTERFACE "${TABRIN_UTFCPP_INCLUDE_DIR}")
endif()
