"""The samples and captures of real broadcasts: which checks fail, and why that is right."""

SAMPLES = {
    "atsc.ts": {
        "A.1": "its four PCRs span 300 ms at the end, in which no MGT comes; the limit is 150 ms",
        "A.2": "nor does a PAT come in them; the limit is 100 ms",
    },
    "blu_ray.m2ts": {},
    "dvb.ts": {"X.1": "each DTS lies before the PCR that was sent ahead of it"},
    "encoder.ts": {"X.1": "its bit rate is too low for its streams: audio comes 119 ms and more late"},
    "scte35.ts": {},
    "teletext.ts": {},
}

CAPTURES = {
    "atsc_psip.ts": {},
    "atsc_rating_region.ts": {},
    "dvb_eit_schedule.ts": {},
    "dvb_eit_two_versions.ts": {
        "2.2": "the EIT section of 338 bytes that ends in packet 2972 has a wrong CRC_32",
    },
    "dvb_multiplex_teletext.ts": {
        "3.4a": "PID 579 sends private PES packets for 1.3 s; each program has its PMT, and none names it",
    },
    "dvb_nit_sdt_pmt.ts": {},
    "packets_of_204_bytes.ts": {},
    "scrambled_program.ts": {},
    "scte35_cable.ts": {},
    "teletext_one_program.ts": {},
}
