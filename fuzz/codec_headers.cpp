// Elementary streams: what each reader of codec headers makes of them, and the same stream looked for in
// packets.
#include "fuzz/support.h"
#include "fuzz/text_promises.h"

#include "mpeg_ts_overview/contents/codec_ac3.h"
#include "mpeg_ts_overview/contents/codec_adts.h"
#include "mpeg_ts_overview/contents/codec_details_text.h"
#include "mpeg_ts_overview/contents/codec_h264.h"
#include "mpeg_ts_overview/contents/codec_hevc.h"
#include "mpeg_ts_overview/contents/codec_mpeg_audio.h"
#include "mpeg_ts_overview/contents/codec_mpeg_video.h"
#include "mpeg_ts_overview/contents/stream_headers.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace {

using byte_list = std::vector<uint8_t>;
using reader = std::optional<codec_details> (*)(const uint8_t *start, const uint8_t *fence);

constexpr uint16_t pid = 0x100;
/// A finder reads no more at a time.
constexpr size_t piece_size = 8192;

struct family_reader {
    codec_family family;
    reader read;
    bool is_video;
};

constexpr family_reader readers[] = {
    {codec_family::mpeg_video, mpeg_video_details, true },
    {codec_family::h264,       h264_details,       true },
    {codec_family::hevc,       hevc_details,       true },
    {codec_family::mpeg_audio, mpeg_audio_details, false},
    {codec_family::adts,       adts_details,       false},
    {codec_family::ac3,        ac3_details,        false},
};

std::optional<codec_details> read(const family_reader &by, const byte_list &stream)
{
    return by.read(stream.data(), stream.data() + stream.size());
}

/// All that was found in one line, or "nothing".
std::string words_of(const std::optional<codec_details> &details)
{
    if (!details) return "nothing";
    return details->name + "|" + codec_details_text(*details) + "|" + details->profile + "|" + details->level;
}

void check_picture(const codec_details &details)
{
    constexpr unsigned beyond_any_size = 1u << 18;
    constexpr unsigned long long greatest_rate = 300;

    fuzz_promise(details.width.has_value() && details.height.has_value());
    fuzz_promise(*details.width > 0 && *details.width < beyond_any_size);
    fuzz_promise(*details.height > 0 && *details.height < beyond_any_size);
    fuzz_promise(!details.sample_rate_hz && !details.channels && !details.low_frequency_channel);
    if (!details.rate) return;
    const auto [num, den] = *details.rate;
    fuzz_promise(den > 0 && num >= den && num <= greatest_rate * den && std::gcd(num, den) == 1);
}

void check_sound(const codec_details &details)
{
    fuzz_promise(!details.width && !details.height && !details.rate && !details.interlaced);
    fuzz_promise(details.sample_rate_hz && *details.sample_rate_hz >= 7350 &&
                 *details.sample_rate_hz <= 96000);
    fuzz_promise(!details.channels || (*details.channels > 0 && *details.channels <= 8));
    fuzz_promise(!details.bit_rate_bps || (*details.bit_rate_bps > 0 && *details.bit_rate_bps < 10000000));
}

void check_details(const codec_details &details, bool is_video)
{
    fuzz_promise(!details.name.empty());
    const std::string words = words_of(details);
    promise_no_controls(words);
    fuzz_promise(words.size() < 200 && words.find('\n') == std::string::npos);
    if (is_video)
        check_picture(details);
    else
        check_sound(details);
}

/// A parameter set that a beginning of the stream has is also the first of the whole.
void check_beginning(const family_reader &by, const byte_list &stream, const std::string &found, size_t size)
{
    if (by.family != codec_family::h264 && by.family != codec_family::hevc) return;
    const byte_list beginning(stream.begin(),
                              stream.begin() + static_cast<ptrdiff_t>(std::min(size, stream.size())));
    const std::string words = words_of(read(by, beginning));
    fuzz_promise(words == "nothing" || words == found);
}

struct header_search {
    stream_headers headers;
    codec_family family;

    explicit header_search(codec_family wanted) : family(wanted) { headers.look_for(pid, family); }

    void take(const byte_list &payload, bool unit_start, const packet_sequence &sequence = {},
              bool error = false)
    {
        ts_packet packet;
        packet.pid = pid;
        packet.payload = payload.data();
        packet.fence = payload.data() + payload.size();
        packet.payload_unit_start_indicator = unit_start;
        packet.transport_error_indicator = error;
        if (headers.wants(pid)) headers.on_packet(packet, sequence);
    }

    std::optional<codec_details> end()
    {
        headers.on_end();
        const codec_details *const found = headers.details_of(pid, family);
        return found == nullptr ? std::nullopt : std::optional(*found);
    }
};

/// In one PES packet, cut into payloads anyhow, the finder finds what the reader does.
void check_search(const family_reader &by, const byte_list &stream, size_t payload_size)
{
    const std::string found = words_of(read(by, stream));
    if (stream.empty() || stream.size() > piece_size) return;
    header_search search(by.family);
    search.take({0, 0, 1, 0xE0, 0, 0, 0x80, 0, 0}, true);
    for (size_t at = 0; at < stream.size(); at += payload_size) {
        const auto from = stream.begin() + static_cast<ptrdiff_t>(at);
        const auto to = stream.begin() + static_cast<ptrdiff_t>(std::min(at + payload_size, stream.size()));
        search.take(byte_list(from, to), false);
    }
    fuzz_promise(words_of(search.end()) == found);
}

/// The stream as packets of any kind: each is a byte of flags, a size, and the payload.
void search_packets(const family_reader &by, fuzz_input in)
{
    header_search search(by.family);
    while (in.left() > 0) {
        const unsigned flags = in.byte();
        const fuzz_input part = in.part(in.byte() % 185);
        byte_list payload(part.p, part.fence);
        if ((flags & 6) == 6) payload.insert(payload.begin(), {0, 0, 1, 0xE0, 0, 0, 0x80, 0, 0});
        packet_sequence sequence;
        sequence.broken = (flags & 0xF0) == 0xF0;
        sequence.duplicate = (flags & 0xF0) == 0xE0;
        search.take(payload, (flags & 2) != 0, sequence, (flags & 0xF0) == 0xD0);
        if ((flags & 0xF0) == 0xC0) search.headers.on_sync_loss();
    }
    if (const auto details = search.end()) check_details(*details, by.is_video);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    const unsigned choice = in.byte();
    const family_reader &by = readers[(choice & 7) % std::size(readers)];
    const unsigned cut = in.byte();
    const byte_list stream(in.p, in.fence);

    const std::optional<codec_details> details = read(by, stream);
    const std::string found = words_of(details);
    if (details) check_details(*details, by.is_video);
    check_beginning(by, stream, found, stream.size() * cut / 256);
    byte_list behind_others(size_t{choice >> 3} * 256, 0x55);
    behind_others.insert(behind_others.end(), stream.begin(), stream.end());
    check_search(by, behind_others, 1 + cut % 184);
    search_packets(by, in);
    return 0;
}
