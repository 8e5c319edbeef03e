# Standard output has one door: nothing in the analyser but report/report.cpp may write to it.
#   cmake -DROOT=<repository> -P one_door.cmake
cmake_minimum_required(VERSION 3.25)

file(GLOB_RECURSE sources RELATIVE "${ROOT}" "${ROOT}/mpeg_ts_analysis/*.[ch]*" "${ROOT}/mpeg12_ts/*.[ch]*"
     "${ROOT}/mpeg12_pes/*.[ch]*" "${ROOT}/text/*.[ch]*")
list(LENGTH sources count)
if(count LESS 80)
    message(SEND_ERROR "only ${count} sources were found: this check looks in the wrong place")
endif()
foreach(source IN LISTS sources)
    if(source STREQUAL "mpeg_ts_analysis/report/report.cpp")
        continue()
    endif()
    file(STRINGS "${ROOT}/${source}" lines)
    foreach(line IN LISTS lines)
        if(line MATCHES "(^|[^a-z_])(printf|puts|putchar|vprintf) ?\\(" OR line MATCHES "std::cout|[^a-z_]stdout|STDOUT_FILENO, ")
            message(SEND_ERROR "${source}: ${line}")
        endif()
        if(line MATCHES "<cassert>|<assert.h>")
            message(SEND_ERROR "${source}: assertions go through invariant.h: ${line}")
        endif()
    endforeach()
endforeach()
