# Runs inside cpack once the tree of a package is installed, and makes it what Debian wants: documents in a folder of
# the package's name, manual pages and changelogs compressed, static libraries without what linking does not need, the
# pkg-config file where cross compilers look.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()

set(usr "${CPACK_TEMPORARY_DIRECTORY}/usr")
set(libraries "${usr}/${CPACK_DEBIAN_LIBDIR}")
set(documents "${usr}/share/doc/${CPACK_DEBIAN_PACKAGE_NAME}")
set(overrides "${usr}/share/lintian/overrides")
file(MAKE_DIRECTORY "${documents}" "${overrides}")

file(RENAME "${usr}/${CPACK_DEBIAN_SOURCE_DOCDIR}/CHANGELOG.md" "${documents}/changelog")
file(REMOVE_RECURSE "${usr}/${CPACK_DEBIAN_SOURCE_DOCDIR}")
file(COPY "${CPACK_DEBIAN_DOCUMENTS}/copyright" DESTINATION "${documents}")
file(COPY_FILE "${CPACK_DEBIAN_DOCUMENTS}/changelog" "${documents}/changelog.Debian")
file(COPY_FILE "${CMAKE_CURRENT_LIST_DIR}/lintian-overrides" "${overrides}/${CPACK_DEBIAN_PACKAGE_NAME}")

file(GLOB pages "${usr}/share/man/man1/*.1")
execute_process(COMMAND gzip -9n "${documents}/changelog" "${documents}/changelog.Debian" ${pages}
                COMMAND_ERROR_IS_FATAL ANY)

file(GLOB archives "${libraries}/*.a")
execute_process(COMMAND "${CPACK_DEBIAN_STRIP}" --strip-debug --remove-section=.comment --remove-section=.note
                        --enable-deterministic-archives ${archives}
                COMMAND_ERROR_IS_FATAL ANY)

if(CPACK_DEBIAN_LIBDIR STREQUAL "lib" AND CPACK_DEBIAN_MULTIARCH)
    file(READ "${libraries}/pkgconfig/mpeg12.pc" module)
    string(REPLACE "\${pcfiledir}/../.." "/usr" module "${module}")
    file(REMOVE_RECURSE "${libraries}/pkgconfig")
    file(WRITE "${libraries}/${CPACK_DEBIAN_MULTIARCH}/pkgconfig/mpeg12.pc" "${module}")
endif()
