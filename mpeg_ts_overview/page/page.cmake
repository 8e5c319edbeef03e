# The page is joined with dygraphs when the program is built; ${page_template} is the source that holds it.
find_path(DYGRAPHS_DIR dygraph.min.js PATHS /usr/share/javascript/dygraphs REQUIRED NO_DEFAULT_PATH)
find_file(DYGRAPHS_LICENCE copyright PATHS /usr/share/doc/libjs-dygraphs REQUIRED NO_DEFAULT_PATH)
file(GLOB page_files CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/page/*.*")
set(page_template "${CMAKE_CURRENT_BINARY_DIR}/page_template.cpp")
add_custom_command(
    OUTPUT "${page_template}"
    COMMAND ${CMAKE_COMMAND} "-DPAGE=${CMAKE_CURRENT_SOURCE_DIR}/page" "-DDYGRAPHS=${DYGRAPHS_DIR}"
            "-DLICENCE=${DYGRAPHS_LICENCE}" "-DSOURCE=${page_template}"
            -P "${CMAKE_CURRENT_SOURCE_DIR}/page/join_page.cmake"
    DEPENDS ${page_files} "${DYGRAPHS_DIR}/dygraph.min.js" "${DYGRAPHS_DIR}/dygraph.min.css" "${DYGRAPHS_LICENCE}"
    COMMENT "Joining the page"
    VERBATIM)
