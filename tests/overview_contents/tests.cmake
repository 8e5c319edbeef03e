add_tests_of(overview_contents
    atsc_guide_test.cpp
    atsc_text_test.cpp
    character_table_test.cpp
    codec_audio_test.cpp
    codec_descriptors_test.cpp
    codec_details_text_test.cpp
    codec_h264_test.cpp
    codec_hevc_test.cpp
    codec_mpeg_video_test.cpp
    contents_test.cpp
    cues_test.cpp
    day_clock_test.cpp
    dvb_text_test.cpp
    event_texts_test.cpp
    guide_test.cpp
    header_finder_test.cpp
    network_test.cpp
    program_clock_test.cpp
    programs_test.cpp
    scsu_test.cpp
    segmentation_test.cpp
    services_test.cpp
    splice_info_test.cpp
    stream_description_test.cpp
    stream_headers_test.cpp
    teletext_characters_test.cpp
    teletext_hamming_test.cpp
    teletext_loss_test.cpp
    teletext_pages_test.cpp
    teletext_units_test.cpp
    utf8_text_test.cpp)
target_link_libraries(overview_contents_tests PRIVATE overview_contents)

# What the first headers say, against another reader of them.
add_test(NAME overview_contents.details_are_those_of_ffprobe
         COMMAND python3 "${CMAKE_CURRENT_SOURCE_DIR}/overview_contents/compare_with_ffprobe.py"
                 $<TARGET_FILE:mpeg_ts_overview>)
set_tests_properties(overview_contents.details_are_those_of_ffprobe
                     PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 900 COST 500)
