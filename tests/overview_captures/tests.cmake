# What the overview and the analyser say of the same captures.
set(capture_samples atsc.ts dvb.ts encoder.ts scte35.ts teletext.ts)
list(TRANSFORM capture_samples PREPEND "${CMAKE_SOURCE_DIR}/samples/")

foreach(comparison report transcript)
    set(compare python3 "${CMAKE_CURRENT_SOURCE_DIR}/overview_captures/compare_${comparison}.py"
                $<TARGET_FILE:mpeg_ts_analysis> $<TARGET_FILE:mpeg_ts_overview>)
    add_test(NAME overview_captures.${comparison} COMMAND ${compare})
    # And of the samples, which are always there.
    add_test(NAME overview_captures.${comparison}_of_samples COMMAND ${compare} ${capture_samples})
    set_tests_properties(overview_captures.${comparison} PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 600)
endforeach()
