# What the overview and the analyser say of the same captures.
add_test(NAME overview_captures.agree_with_the_report
         COMMAND python3 "${CMAKE_CURRENT_SOURCE_DIR}/overview_captures/compare_with_report.py"
                 $<TARGET_FILE:mpeg_ts_analysis> $<TARGET_FILE:mpeg_ts_overview>)
set_tests_properties(overview_captures.agree_with_the_report PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 600)

# And of the samples, which are always there.
add_test(NAME overview_captures.samples_agree_with_the_report
         COMMAND python3 "${CMAKE_CURRENT_SOURCE_DIR}/overview_captures/compare_with_report.py"
                 $<TARGET_FILE:mpeg_ts_analysis> $<TARGET_FILE:mpeg_ts_overview>
                 "${CMAKE_SOURCE_DIR}/samples/atsc.ts" "${CMAKE_SOURCE_DIR}/samples/dvb.ts"
                 "${CMAKE_SOURCE_DIR}/samples/encoder.ts" "${CMAKE_SOURCE_DIR}/samples/scte35.ts"
                 "${CMAKE_SOURCE_DIR}/samples/teletext.ts")
