# CPack runs this behind each package it made. Its archives list the files as the file system happens to, with the owner
# and the time they had during the build; here they are packed again, sorted, as root's, with the time that
# SOURCE_DATE_EPOCH says (seconds since 1970). A .deb comes out of CPack like that already.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    return()
endif()

get_filename_component(folder "${CPACK_TEMPORARY_INSTALL_DIRECTORY}" DIRECTORY)
get_filename_component(name "${CPACK_TEMPORARY_INSTALL_DIRECTORY}" NAME)

function(run_in_folder)
    execute_process(COMMAND bash -c "set -e -o pipefail; ${ARGV0}" WORKING_DIRECTORY "${folder}"
                    COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(package IN LISTS CPACK_PACKAGE_FILES)
    if(package MATCHES "\\.tar\\.gz$")
        run_in_folder("tar --sort=name --mtime=@$ENV{SOURCE_DATE_EPOCH} --owner=root:0 --group=root:0 --format=gnu -c '${name}' \
            | gzip -9 -n >'${package}'")
    elseif(package MATCHES "\\.zip$")
        run_in_folder("find '${name}' -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} '{}' + ; rm '${package}'; \
            find '${name}' -type f -print | LC_ALL=C sort | TZ=UTC zip -q -X -9 -@ '${package}'")
    endif()
endforeach()
