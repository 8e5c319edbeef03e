# What `cmake --install` puts down: the programs, their manuals, shell completions, and the stream library with its headers,
# a CMake package (find_package(mpeg12)) and a pkg-config file. Every path in them is relative to where they stand.
include(CMakePackageConfigHelpers)

set(library_targets mpeg12_ts mpeg12_pes text)
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/mpeg12")

# A library directory is shared with strangers: the archive of the text module carries the library's name there.
set_target_properties(text PROPERTIES OUTPUT_NAME mpeg12_text)

install(TARGETS mpeg_ts_analysis)
install(FILES docs/mpeg_ts_analysis.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES packaging/completion/mpeg_ts_analysis.bash RENAME mpeg_ts_analysis
        DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
install(FILES packaging/completion/_mpeg_ts_analysis DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")
install(FILES packaging/completion/mpeg_ts_analysis.fish
        DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
install(FILES LICENSE CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")

if(WITH_OVERVIEW)
    install(TARGETS mpeg_ts_overview)
    install(FILES docs/mpeg_ts_overview.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
    install(FILES docs/overview.schema.json DESTINATION "${CMAKE_INSTALL_DATADIR}/mpeg_ts_overview")
    install(FILES packaging/completion/mpeg_ts_overview.bash RENAME mpeg_ts_overview
            DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
    install(FILES packaging/completion/_mpeg_ts_overview DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")
    install(FILES packaging/completion/mpeg_ts_overview.fish
            DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")

    # mpeg_ts_archive has a package of its own: who has one machine needs neither Python nor a scheduler.
    install(FILES docs/mpeg_ts_archive.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT archive)
    install(FILES packaging/completion/mpeg_ts_archive.bash RENAME mpeg_ts_archive
            DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT archive)
    install(FILES packaging/completion/_mpeg_ts_archive DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions"
            COMPONENT archive)
    install(FILES packaging/completion/mpeg_ts_archive.fish
            DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT archive)
endif()

install(TARGETS ${library_targets} EXPORT mpeg12Targets)
foreach(library IN LISTS library_targets)
    install(DIRECTORY ${library} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
            FILES_MATCHING PATTERN "*.h" PATTERN "new_record.h" EXCLUDE)
endforeach()

# The analyser is optimised together with the library, which saves it 0.6 to 4 % of its instructions; hence objects with
# both bytecode and machine code. Installed archives lose the bytecode: only the compiler that wrote it can read it.
if(CMAKE_INTERPROCEDURAL_OPTIMIZATION)
    foreach(library IN LISTS library_targets)
        target_compile_options(${library} PRIVATE -ffat-lto-objects)
        string(CONCAT archive "\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/"
                              "$<TARGET_FILE_NAME:${library}>")
        install(CODE "execute_process(COMMAND \"${CMAKE_OBJCOPY}\" --enable-deterministic-archives
            -R .gnu.lto_* -R .gnu.debuglto_* -N __gnu_lto_slim \"${archive}\" COMMAND_ERROR_IS_FATAL ANY)")
    endforeach()
endif()

install(EXPORT mpeg12Targets NAMESPACE mpeg12:: DESTINATION "${package_dir}")
configure_package_config_file(packaging/mpeg12Config.cmake.in mpeg12Config.cmake INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(mpeg12ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/mpeg12Config.cmake" "${CMAKE_CURRENT_BINARY_DIR}/mpeg12ConfigVersion.cmake"
        DESTINATION "${package_dir}")

file(RELATIVE_PATH prefix_from_pkgconfig "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
configure_file(packaging/mpeg12.pc.in mpeg12.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/mpeg12.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
