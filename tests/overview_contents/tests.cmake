add_tests_of(overview_contents
    atsc_text_test.cpp
    character_table_test.cpp
    codec_audio_test.cpp
    codec_details_text_test.cpp
    codec_h264_test.cpp
    codec_hevc_test.cpp
    codec_mpeg_video_test.cpp
    dvb_text_test.cpp
    header_finder_test.cpp
    scsu_test.cpp
    utf8_text_test.cpp)
target_link_libraries(overview_contents_tests PRIVATE overview_contents)
