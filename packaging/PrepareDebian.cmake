# Makes of the files to be packed what Debian expects: manual pages and change logs are compressed, and the licences of
# the header libraries that are compiled into the program go along.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
set(doc ${share}/doc/vantor)

configure_file(${CMAKE_CURRENT_LIST_DIR}/debian-changelog ${doc}/changelog.Debian COPYONLY)
file(RENAME ${doc}/CHANGELOG.md ${doc}/changelog)
execute_process(COMMAND gzip -9n ${doc}/changelog ${doc}/changelog.Debian ${share}/man/man1/vantor.1 COMMAND_ERROR_IS_FATAL ANY)
foreach(package IN ITEMS libcli11-dev nlohmann-json3-dev libboost-dev)
    configure_file(/usr/share/doc/${package}/copyright ${doc}/copyright.${package} COPYONLY)
endforeach()
