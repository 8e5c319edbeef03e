# A package with everything that is installed but mpeg_ts_archive: cpack --config <build>/CPackConfig.cmake -G DEB (with -G TGZ
# everything); and one of mpeg_ts_archive: cpack --config <build>/CPackArchiveConfig.cmake -G DEB.
set(PACKAGE_MAINTAINER "mpeg_ts_analysis authors <authors@mpeg-ts-analysis.invalid>"
    CACHE STRING "who answers for the packages: a name and an address")

set(CPACK_GENERATOR "DEB;TGZ")
set(CPACK_PACKAGE_CONTACT "${PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_VENDOR "mpeg_ts_analysis authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "analyser of MPEG-2 transport stream recordings")
if(WITH_OVERVIEW)
    set(overview_description
"A second program, mpeg_ts_overview, tells what is in a recording, how it is
built, whether it is healthy by ETSI TR 101 290, and where not: as a summary,
as JSON, and as a page with plots.
.
")
endif()
set(CPACK_PACKAGE_DESCRIPTION
"Tells what is in an MPEG-2 transport stream recording, and what is wrong
with it. Reads 188-byte and 192-byte packets once and prints a text report:
MPEG-2, DVB, ATSC and SCTE-35 tables and their descriptors in words, teletext
pages, continuity errors, PCR gaps, jumps and drift, and on request every
packet.
.
${overview_description}The stream library that it is built on is included, with its headers.")
set(CPACK_STRIP_FILES ON)
set(CPACK_RESOURCE_FILE_LICENSE "${CMAKE_SOURCE_DIR}/LICENSE")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/packaging/debian/finish_tree.cmake")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_PACKAGE_NAME mpeg-ts-analysis)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

# For finish_tree.cmake, which runs inside cpack.
set(CPACK_DEBIAN_DOCUMENTS "${CMAKE_BINARY_DIR}/debian")
set(CPACK_DEBIAN_SOURCE_DOCDIR "${CMAKE_INSTALL_DOCDIR}")
set(CPACK_DEBIAN_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
set(CPACK_DEBIAN_MULTIARCH "${CMAKE_LIBRARY_ARCHITECTURE}")
set(CPACK_DEBIAN_STRIP "${CMAKE_STRIP}")
set(CPACK_PROJECT_CONFIG_FILE "${CMAKE_SOURCE_DIR}/packaging/debian/choose_component.cmake")
configure_file(packaging/debian/changelog.in debian/changelog @ONLY)
configure_file(packaging/debian/copyright.in debian/copyright @ONLY)

include(CPack)

if(WITH_OVERVIEW)
    set(CPACK_DEBIAN_PACKAGE_NAME mpeg-ts-archive)
    configure_file(packaging/debian/changelog.in archive/changelog @ONLY)
    configure_file(packaging/debian/archive_package.cmake.in CPackArchiveConfig.cmake @ONLY)
endif()
