# The same sources give the same bytes, in whatever folder and at whatever time they are built. (With the compiler and
# linker of the same Debian release: other versions give other code.)
if(NOT MSVC)
    add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.>
                        $<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${CMAKE_BINARY_DIR}=./build>)
    if(MINGW)
        add_link_options(LINKER:--no-insert-timestamp)
    else()
        add_link_options(LINKER:--build-id=sha1)
    endif()
endif()
