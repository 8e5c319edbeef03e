// The services with their streams, rates as bars.
import {button, element, part} from "./elements.js";
import {counted_text, hex_text, percent_text, pid_text, rate_text, rows_text} from "./figures.js";

const programs_at_first = 60;
const null_pid = 0x1fff;

const running = ["", "not running", "starts in a few seconds", "pausing", "running", "off air"];

export function name_of_program(program) {
    return program.service_name || "program " + program.number;
}

export function programs_part(found) {
    const {programs, rates, transport_stream} = found;
    if (programs.length === 0) return null;
    const streams = programs.flatMap((program) => program.streams);
    const greatest = Math.max(1, ...streams.map((stream) => stream.mean_bps ?? 0));
    const rate_of = new Map(rates.pids.map((row) => [row.pid, row.mean_bps]));
    const cards = element("div", {class: "cards"});
    const show = (from, to) =>
        cards.append(...programs.slice(from, to).map((each) => program_card(each, greatest, rate_of)));
    show(0, programs_at_first);
    const more =
        programs.length <= programs_at_first
            ? null
            : button("show all", null, () => {
                  show(programs_at_first);
                  more.remove();
              });
    const all_are_here = !("programs" in found.all_rows);
    const network = transport_stream.network_name ? ", network " + transport_stream.network_name : "";
    return part(
        "programs",
        "Programs",
        rows_text(found, "programs", programs.length, "program", "programs") +
            (all_are_here ? ", " + counted_text(streams.length, "stream", "streams") : "") +
            network,
        cards,
        more,
    );
}

/// Streams, tables and clock together; null when no rate is known.
function rate_of_program({pmt_pid, pcr_pid, streams, ca_systems}, rate_of) {
    const pids = [pmt_pid, pcr_pid, ...streams.map(({pid}) => pid), ...ca_systems.map(({pid}) => pid)];
    const rates = [...new Set(pids)]
        .filter((pid) => pid !== null_pid)
        .map((pid) => rate_of.get(pid) ?? null)
        .filter((rate) => rate !== null);
    return rates.length === 0 ? null : rates.reduce((sum, rate) => sum + rate, 0);
}

function program_card(program, greatest, rate_of) {
    const tags = [
        program.channel === null ? "" : "channel " + program.channel,
        program.service_type?.name,
        running[program.running_status ?? 0],
        program.free_CA_mode || program.ca_systems.length ? "scrambled" : "",
        ...program.ca_systems.map((system) => "CA " + hex_text(system.id, 4) + " on " + pid_text(system.pid)),
    ];
    const pcr = program.pcr_pid === null ? "no PMT" : "PCR " + pid_text(program.pcr_pid);
    return element(
        "article",
        {class: "card"},
        element(
            "h3",
            {},
            element("span", {class: "id"}, hex_text(program.number, 4)),
            name_of_program(program),
            program.provider_name ? element("span", {class: "provider"}, program.provider_name) : null,
            element("span", {class: "rate"}, rate_text(rate_of_program(program, rate_of))),
        ),
        element(
            "p",
            {class: "tags"},
            program.absent ? element("span", {class: "fault"}, "absent") : null,
            tags.filter(Boolean).map((tag) => element("span", {}, tag)),
            element("span", {}, "PMT " + pid_text(program.pmt_pid)),
            element("span", {}, pcr),
        ),
        element(
            "table",
            {class: "streams"},
            element(
                "tbody",
                {},
                program.streams.map((stream) => stream_row(stream, greatest)),
            ),
        ),
    );
}

function stream_row(stream, greatest) {
    const bar = element("span", {class: "bar " + stream.kind});
    if (stream.mean_bps) bar.style.width = Math.max(0.5, (100 * stream.mean_bps) / greatest) + "%";
    const rate = stream.absent ? element("span", {class: "fault"}, "absent") : rate_text(stream.mean_bps);
    return element(
        "tr",
        {},
        element("td", {class: "id"}, pid_text(stream.pid)),
        element("td", {}, stream.name, " ", element("span", {class: "details"}, stream.details ?? "")),
        element("td", {}, stream.language ?? ""),
        element("td", {class: "number", title: percent_text(stream.share)}, rate),
        element("td", {class: "bars"}, bar),
    );
}
