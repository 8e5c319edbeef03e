# The folder is the layer: a file may include its own folder and those listed here, nothing else of ours.
#   cmake -DROOT=<repository> -P layering.cmake
set(text "")
cmake_minimum_required(VERSION 3.25)

set(mpeg12_ts "")
set(mpeg12_pes mpeg12_ts)
set(mpeg_ts_analysis/report "")
set(mpeg_ts_analysis/state mpeg12_ts)
set(mpeg_ts_analysis/health mpeg_ts_analysis/report mpeg_ts_analysis/state mpeg12_ts)
set(mpeg_ts_analysis/descriptors mpeg_ts_analysis/report mpeg_ts_analysis/state mpeg12_ts text)
set(mpeg_ts_analysis/tables mpeg_ts_analysis/report mpeg_ts_analysis/state mpeg_ts_analysis/health
    mpeg_ts_analysis/descriptors mpeg12_ts text)
set(mpeg_ts_analysis/teletext mpeg_ts_analysis/report mpeg_ts_analysis/state mpeg12_ts)
set(mpeg_ts_analysis/driver mpeg_ts_analysis/report mpeg_ts_analysis/state mpeg_ts_analysis/health
    mpeg_ts_analysis/descriptors mpeg_ts_analysis/tables mpeg_ts_analysis/teletext mpeg12_ts mpeg12_pes text)

set(mpeg_ts_overview/model mpeg12_ts)
set(mpeg_ts_overview/input mpeg_ts_overview/model ${mpeg_ts_overview/model})
set(mpeg_ts_overview/timeline mpeg_ts_overview/input ${mpeg_ts_overview/input})
set(mpeg_ts_overview/tables mpeg_ts_overview/timeline ${mpeg_ts_overview/timeline})
set(mpeg_ts_overview/meters mpeg_ts_overview/tables ${mpeg_ts_overview/tables})
# Contents, the transcript and the checks do not know each other.
set(mpeg_ts_overview/contents mpeg_ts_overview/meters ${mpeg_ts_overview/meters} text)
set(mpeg_ts_overview/transcript mpeg_ts_overview/meters ${mpeg_ts_overview/meters} mpeg_ts_analysis/report
    mpeg_ts_analysis/state mpeg_ts_analysis/health mpeg_ts_analysis/descriptors mpeg_ts_analysis/tables
    mpeg_ts_analysis/teletext text)
set(mpeg_ts_overview/checks mpeg_ts_overview/meters ${mpeg_ts_overview/meters})
set(mpeg_ts_overview/output mpeg_ts_overview/contents mpeg_ts_overview/transcript mpeg_ts_overview/checks
    ${mpeg_ts_overview/contents})
set(mpeg_ts_overview/driver mpeg_ts_overview/output ${mpeg_ts_overview/output})

file(GLOB_RECURSE sources RELATIVE "${ROOT}" "${ROOT}/text/*.[ch]*" "${ROOT}/mpeg12_ts/*.[ch]*"
     "${ROOT}/mpeg12_pes/*.[ch]*" "${ROOT}/mpeg_ts_analysis/*.[ch]*" "${ROOT}/mpeg_ts_overview/*.[ch]*")
set(faults 0)
set(includes_seen 0)
foreach(source IN LISTS sources)
    cmake_path(GET source PARENT_PATH layer)
    file(STRINGS "${ROOT}/${source}" lines REGEX "^#include \"")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" included "${line}")
        cmake_path(GET included PARENT_PATH target)
        math(EXPR includes_seen "${includes_seen} + 1")
        if(NOT target STREQUAL layer AND NOT target IN_LIST ${layer})
            message(SEND_ERROR "${source} may not include ${included}")
            math(EXPR faults "${faults} + 1")
        endif()
    endforeach()
endforeach()
if(includes_seen LESS 100)
    message(SEND_ERROR "only ${includes_seen} includes were seen: this check looks in the wrong place")
endif()
message(STATUS "${includes_seen} includes, ${faults} against the layers")
