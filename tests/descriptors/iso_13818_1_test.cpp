#include "tests/support/report_test.h"

struct iso_13818_1 : report_test {};

TEST_F(iso_13818_1, video_stream_names_the_frame_rate_and_reads_the_overlapping_flag)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x02, hex("1B 44 5F"))),
              "        video_stream_descriptor() [ISO/IEC 13818-1 2.6.2]\n"
              "            multiple_frame_rate_flag=0\n"
              "            frame_rate_code=3 -> 25fps     (25/1)\n"
              "            MPEG_1_only_flag=0\n"
              "            constrained_parameter_flag=1\n"
              "            still_picture_flag=1\n"
              "            profile_and_level_indication=0x44\n"
              "            chroma_format=1\n"
              "            frame_rate_extension_flag=2\n");
}
