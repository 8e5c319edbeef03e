#include "mpeg_ts_overview/contents/stream_headers.h"

void stream_headers::look_for(uint16_t pid, codec_family family)
{
    uint16_t &number = number_of[pid];
    if (number == 0) {
        searches.emplace_back();
        number = static_cast<uint16_t>(searches.size());
    }
    std::unique_ptr<search> &here = searches[number - 1u];
    if (here && here->family == family) return;
    here = std::make_unique<search>(search{family, header_finder(family)});
    wanted[pid] = true;
}

void stream_headers::on_packet(const ts_packet &packet, const packet_sequence &sequence)
{
    if (sequence.duplicate) return;
    header_finder &finder = searches[number_of[packet.pid] - 1u]->finder;
    const bool unreadable = packet.transport_error_indicator || packet.transport_scrambling_control != 0;

    if (sequence.broken || unreadable) finder.on_gap();
    if (!unreadable && packet.payload != packet.fence)
        finder.on_payload(packet.payload, packet.fence, packet.payload_unit_start_indicator);
    wanted[packet.pid] = !finder.is_done();
}

void stream_headers::on_sync_loss()
{
    for (const std::unique_ptr<search> &lost : searches) lost->finder.on_gap();
}

void stream_headers::on_end()
{
    for (const std::unique_ptr<search> &ended : searches) ended->finder.on_end();
}

const codec_details *stream_headers::details_of(uint16_t pid, codec_family family) const
{
    const uint16_t number = number_of[pid];
    if (number == 0 || searches[number - 1u]->family != family) return nullptr;
    const std::optional<codec_details> &found = searches[number - 1u]->finder.details();
    return found ? &*found : nullptr;
}
