// What the recording is, and whether any check fails.
import {element, place} from "./elements.js";
import {
    count_text,
    counted_text,
    duration_text,
    hex_text,
    pid_text,
    rate_text,
    size_text,
    utc_text,
} from "./figures.js";

const time_bases = {
    pcr: "time by PCR",
    arrival: "time by arrival stamps",
    bitrate: "time by bit rate",
    none: "no times",
};

export function recording_header(found) {
    const {recording, checks} = found;
    const name = name_of(recording);
    document.title = name + " - transport stream overview";
    const failed = checks.filter((check) => check.result === "fail").length;
    const badge = element(
        "span",
        {class: failed ? "badge fault" : "badge", id: "badge"},
        failed === 0 ? "no check fails" : counted_text(failed, "check fails", "checks fail"),
    );
    return element(
        "header",
        {},
        element("div", {class: "title"}, element("h1", {}, name), badge),
        element(
            "dl",
            {class: "facts"},
            facts_of(found)
                .filter(([, value]) => value)
                .map(([title, value, fault]) =>
                    element(
                        "div",
                        {class: fault ? "fault" : null},
                        element("dt", {}, title),
                        element("dd", {}, value),
                    ),
                ),
        ),
    );
}

function name_of({path}) {
    return path === "-" ? "standard input" : path.split("/").pop() || path;
}

function facts_of({recording, transport_stream, clock, rates}) {
    const rate = rate_text(recording.mean_bps);
    const clock_of = recording.clock_pid === null ? "" : " of " + pid_text(recording.clock_pid);
    const reading = (at) =>
        at ? element("span", {}, utc_text(at.utc) + " UTC at ", place(at.t_s, at.packet)) : "";
    const counted = (count) => (count ? count_text(count) : "");
    const seconds = [rates.whole.min_bps, rates.whole.max_bps].map(rate_text);
    return [
        ["size", size_text(recording.bytes)],
        ["duration", duration_text(recording.duration_s)],
        ["rate", rate && rate + (recording.constant_bitrate ? " constant" : " variable")],
        ["lowest and highest second", seconds[0] === seconds[1] ? "" : seconds.join(" to ")],
        ["packets", count_text(recording.packets) + " of " + recording.packet_size + " bytes"],
        ["standard", recording.standard],
        ["time base", time_bases[recording.time_base] + clock_of],
        ["transport stream", stream_text(transport_stream)],
        ["network", transport_stream.network_name],
        ["time of day", reading(clock.first)],
        ["to", clock.last && clock.last.utc !== clock.first?.utc ? reading(clock.last) : ""],
        ["sync losses", counted(recording.sync_losses), true],
        ["bad sync bytes", counted(recording.sync_byte_errors), true],
        ["bytes skipped", counted(recording.skipped_bytes), true],
        ["bytes before the first packet", counted(recording.leading_bytes)],
        ["bytes behind the last packet", counted(recording.trailing_bytes)],
        ["path", ["-", name_of(recording)].includes(recording.path) ? "" : recording.path],
    ];
}

function stream_text({transport_stream_id, original_network_id}) {
    const network = original_network_id === null ? "" : " of network " + hex_text(original_network_id, 4);
    return transport_stream_id === null ? "" : hex_text(transport_stream_id, 4) + network;
}
