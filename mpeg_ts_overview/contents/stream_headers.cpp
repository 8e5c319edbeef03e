#include "mpeg_ts_overview/contents/stream_headers.h"

#include <algorithm>

void stream_headers::look_for(uint16_t pid, codec_family family)
{
    uint16_t &number = number_of[pid];
    if (number == 0) {
        searches.emplace_back();
        number = static_cast<uint16_t>(searches.size());
    }
    std::unique_ptr<search> &here = searches[number - 1u];
    if (here && here->family == family) return;
    if (here && here->finder.has_room()) --rooms;
    here = std::make_unique<search>(search{family, header_finder(family), false});
    wanted[pid] = true;
}

void stream_headers::on_packet(const ts_packet &packet, const packet_sequence &sequence)
{
    if (sequence.duplicate) return;
    search &here = *searches[number_of[packet.pid] - 1u];
    header_finder &finder = here.finder;
    const bool had_room = finder.has_room();
    if (!had_room && rooms == sought_header_limit) {
        here.passed_over = true;
        finder.on_gap();
        return;
    }
    const bool unreadable = packet.transport_error_indicator || packet.transport_scrambling_control != 0;

    if (sequence.broken || unreadable) finder.on_gap();
    if (!unreadable && packet.payload != packet.fence)
        finder.on_payload(packet.payload, packet.fence, packet.payload_unit_start_indicator);
    wanted[packet.pid] = !finder.is_done();
    if (had_room != finder.has_room()) rooms += had_room ? size_t(-1) : 1;
}

void stream_headers::on_sync_loss()
{
    rooms = 0;
    for (const std::unique_ptr<search> &lost : searches) {
        lost->finder.on_gap();
        rooms += lost->finder.has_room();
    }
}

void stream_headers::on_end()
{
    for (const std::unique_ptr<search> &ended : searches) ended->finder.on_end();
}

uint64_t stream_headers::not_found() const
{
    return static_cast<uint64_t>(
        std::count_if(searches.begin(), searches.end(), [](const std::unique_ptr<search> &one) {
            return one->passed_over && !one->finder.details();
        }));
}

const codec_details *stream_headers::details_of(uint16_t pid, codec_family family) const
{
    const uint16_t number = number_of[pid];
    if (number == 0 || searches[number - 1u]->family != family) return nullptr;
    const std::optional<codec_details> &found = searches[number - 1u]->finder.details();
    return found ? &*found : nullptr;
}
