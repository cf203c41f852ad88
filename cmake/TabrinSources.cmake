# Collects the sources of some folders. A source that exists once for each platform says so in its name:
# *_win32.cpp is left out elsewhere, *_posix.cpp on Windows. Headers are listed too, for the sake of IDEs.
function(tabrin_collect_sources result)
    set(sources)
    foreach(folder IN LISTS ARGN)
        file(GLOB found CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp"
             "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.h")
        list(APPEND sources ${found})
    endforeach()
    if(WIN32)
        list(FILTER sources EXCLUDE REGEX "_posix\\.cpp$")
    else()
        list(FILTER sources EXCLUDE REGEX "_win32\\.cpp$")
    endif()
    set(${result} ${sources} PARENT_SCOPE)
endfunction()
