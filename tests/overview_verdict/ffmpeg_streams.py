"""Streams that ffmpeg makes with common settings: name to arguments behind the inputs.

Inputs: 0 and 1 are pictures, 2 and 3 are tones, 4 are subtitles.
"""

import os
import resource
import subprocess

from subtitle_pictures import subtitle_pictures

SECONDS = 12
MOST_BYTES = 100_000_000  # where a stream stalls, the null packets of a constant rate would fill the disk
PICTURES = "-map 0:v -map 2:a "
AVC = "-c:v libx264 -preset ultrafast -g 25 -b:v 600k -maxrate 600k -bufsize 600k "
HEVC = "-c:v libx265 -preset ultrafast -x265-params log-level=none:pools=1:bframes=3 "
TWO_PROGRAMS = ("-map 0:v -map 2:a -map 1:v -map 3:a "
                "-program title=One:st=0:st=1 -program title=Two:st=2:st=3 "
                + AVC + "-c:a mp2 -b:a 128k ")

STREAMS = {
    "avc_variable": PICTURES + AVC + "-c:a aac",
    "avc_constant": PICTURES + AVC + "-c:a mp2 -b:a 128k -muxrate 4M",
    "avc_with_b_pictures": PICTURES + AVC + "-bf 3 -c:a aac -muxrate 4M",
    "avc_many_flags": PICTURES + AVC + "-c:a ac3 -muxrate 4M -mpegts_flags resend_headers+pat_pmt_at_frames",
    "avc_system_b": PICTURES + AVC + "-c:a ac3 -muxrate 4M -mpegts_flags system_b",
    "avc_own_numbers": PICTURES + AVC + "-c:a aac -muxrate 4M "
                       "-mpegts_service_type advanced_codec_digital_hdtv "
                       "-mpegts_pmt_start_pid 0x30 -mpegts_start_pid 0x200 -mpegts_transport_stream_id 7 "
                       "-mpegts_original_network_id 0x233A "
                       "-metadata service_name=One -metadata service_provider=Us",
    "avc_initial_discontinuity": PICTURES + AVC + "-c:a aac -mpegts_flags initial_discontinuity",
    "avc_network": PICTURES + AVC + "-c:a aac -muxrate 4M -mpegts_flags nit",
    "avc_slow_pcr": PICTURES + AVC + "-c:a aac -muxrate 4M -pcr_period 40",
    "avc_stamps_of_arrival": PICTURES + AVC + "-c:a ac3 -mpegts_m2ts_mode 1 -muxrate 6M",
    "avc_stamps_of_arrival_variable": PICTURES + AVC + "-c:a ac3 -mpegts_m2ts_mode 1",
    "avc_50_pictures": PICTURES + "-r 50 " + AVC + "-c:a eac3 -b:a 192k -muxrate 6M",
    "avc_29_97_pictures": PICTURES + "-r 30000/1001 " + AVC + "-c:a ac3 -muxrate 6M",
    "aac_in_latm": PICTURES + AVC + "-c:a aac -mpegts_flags latm -muxrate 4M",
    "hevc_variable": PICTURES + HEVC + "-b:v 400k -c:a eac3",
    "hevc_constant": PICTURES + HEVC + "-b:v 400k -maxrate 400k -bufsize 400k -c:a aac -muxrate 4M",
    "mpeg2_constant": PICTURES + "-c:v mpeg2video -g 12 -bf 2 "
                      "-b:v 1M -maxrate 1M -bufsize 800k -c:a mp2 -muxrate 5M",
    "mpeg2_variable": PICTURES + "-c:v mpeg2video -g 12 -c:a mp2",
    "avc_interlaced": PICTURES + "-c:v libx264 -preset ultrafast -x264-params tff=1 "
                      "-flags +ilme+ildct -b:v 600k -c:a mp2 -muxrate 4M",
    "avc_10_pictures": PICTURES + "-r 10 " + AVC + "-c:a aac",
    "avc_time_wraps_variable": PICTURES + AVC + "-c:a aac -output_ts_offset 95437",
    "avc_time_wraps_constant": PICTURES + AVC + "-c:a mp2 -muxrate 4M -output_ts_offset 95437",
    "avc_and_opus": PICTURES + AVC + "-c:a libopus -muxrate 4M",
    "audio_only_mp2": "-map 2:a -c:a mp2",
    "audio_only_aac_constant": "-map 2:a -c:a aac -muxrate 500k",
    "audio_only_opus": "-map 2:a -c:a libopus",
    "two_audios": "-map 0:v -map 2:a -map 3:a -metadata:s:a:0 language=deu -metadata:s:a:1 language=eng "
                  + AVC + "-c:a mp2 -b:a 128k -muxrate 4M",
    "video_only": "-map 0:v " + AVC + "-muxrate 4M",
    "two_programs": TWO_PROGRAMS + "-muxrate 6M",
    "two_programs_variable": TWO_PROGRAMS,
    "subtitles": PICTURES + "-map 4:s " + AVC + "-c:a aac -c:s dvbsub",
}

# True of these, and wrong: why, by check.
NOT_SO_HEALTHY = {
    "avc_without_delay": (PICTURES + AVC + "-c:a aac -muxdelay 0 -muxpreload 0",
                          {"X.1": "the PCR runs on at the DTS, what is sent behind it is late"}),
    "avc_5_pictures": (PICTURES + "-r 5 " + AVC + "-c:a aac",
                       {"2.3a": "a PCR with each picture, 200 ms apart",
                        "2.3b": "the same differences, above 100 ms"}),
    "audio_only_mp2_slow": ("-map 2:a -c:a mp2 -b:a 128k",
                            {"2.3a": "a PCR with each PES packet of 7 frames, 168 ms apart",
                             "2.3b": "the same differences, above 100 ms"}),
}


def arguments_of(name):
    return STREAMS[name] if name in STREAMS else NOT_SO_HEALTHY[name][0]


def limit_file_size():
    resource.setrlimit(resource.RLIMIT_FSIZE, (MOST_BYTES, MOST_BYTES))


def make(name, folder):
    """The file of that stream."""
    path = os.path.join(folder, name + ".ts")
    subtitles = os.path.join(folder, "subtitles.sup")
    with open(subtitles, "wb") as file:
        file.write(subtitle_pictures(SECONDS))
    inputs = []
    for source in ("testsrc2=size=320x180:rate=25", "testsrc=size=320x180:rate=25",
                   "sine=frequency=500:sample_rate=48000", "sine=frequency=800:sample_rate=48000"):
        inputs += ["-f", "lavfi", "-i", source]
    command = ["ffmpeg", "-nostdin", "-v", "error", "-y"] + inputs + ["-i", subtitles]
    command += arguments_of(name).split() + ["-t", str(SECONDS), "-threads", "1"]
    command += ["-f", "mpegts", path]
    subprocess.run(command, check=True, timeout=600, preexec_fn=limit_file_size)
    return path
