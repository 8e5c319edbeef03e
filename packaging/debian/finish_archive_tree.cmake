# Runs inside cpack once the tree of mpeg-ts-archive is installed, and makes it what Debian wants.
set(usr "${CPACK_TEMPORARY_DIRECTORY}/usr")
set(documents "${usr}/share/doc/${CPACK_DEBIAN_PACKAGE_NAME}")
set(overrides "${usr}/share/lintian/overrides")
file(MAKE_DIRECTORY "${documents}" "${overrides}")

file(COPY "${CPACK_DEBIAN_COPYRIGHT}" DESTINATION "${documents}")
file(COPY_FILE "${CPACK_DEBIAN_DOCUMENTS}/changelog" "${documents}/changelog.Debian")
file(WRITE "${overrides}/${CPACK_DEBIAN_PACKAGE_NAME}" "# No package of the distribution's own: there is no bug report that asks for it.
${CPACK_DEBIAN_PACKAGE_NAME}: initial-upload-closes-no-bugs *
")
execute_process(COMMAND gzip -9n "${documents}/changelog.Debian" "${usr}/share/man/man1/mpeg_ts_archive.1"
                COMMAND_ERROR_IS_FATAL ANY)
