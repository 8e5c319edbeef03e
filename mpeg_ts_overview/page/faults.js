// Faults that the tables tell of and places where time breaks: dots by group, and the groups as a table.
import {element, note, part, place} from "./elements.js";
import {count_text, counted_text, hex_text, pid_text, rows_text, time_text} from "./figures.js";
import {dots_plot} from "./dots_plot.js";
import {table} from "./table.js";

const lines_at_most = 24;
const kinds = {
    irregular_span: {name: "PCR span not regular", label: "PCR span"},
    arrival: {name: "arrival stamps leap", label: "arrival"},
    clock_change: {name: "another clock PID", label: "clock PID"},
    sync_loss: {name: "sync lost", label: "sync"},
};

export function faults_part(found) {
    const {faults, breaks, recording} = found;
    if (faults.length === 0 && breaks.length === 0) return null;
    const sorted = [...faults].sort((a, b) => b.count - a.count);
    return part(
        "faults",
        "Faults and breaks",
        summary_text(found),
        recording.duration_s ? fault_dots(found, sorted) : null,
        faults.length === 0 ? null : fault_table(sorted, recording.duration_s !== null),
        breaks.length === 0 ? null : break_table(breaks),
    );
}

function summary_text(found) {
    const {faults, breaks} = found;
    const sum = faults.reduce((total, group) => total + group.count, 0);
    const groups = rows_text(found, "groups of faults", faults.length, "group", "groups");
    const texts = [];
    if (sum > 0) texts.push(counted_text(sum, "fault", "faults") + " in " + groups);
    const break_count = rows_text(found, "breaks of time", breaks.length, "break", "breaks");
    if (breaks.length > 0) texts.push(break_count + " of time");
    return texts.join(", ");
}

function fault_dots({rates, breaks, recording}, sorted) {
    const time_of = packet_times(rates);
    const groups = Object.entries(kinds)
        .map(([kind, {name, label}]) => ({
            label,
            name,
            colour: "ink",
            times: breaks.filter((each) => each.kind === kind && each.t_s !== null).map((each) => each.t_s),
        }))
        .filter((group) => group.times.length > 0);
    sorted.slice(0, lines_at_most).forEach((group, number) =>
        groups.push({
            label: "group " + (number + 1),
            name: group.text.trim(),
            colour: "fault",
            times: dot_times(group, time_of),
        }),
    );
    const others = sorted.slice(lines_at_most).flatMap((group) => dot_times(group, time_of));
    if (others.length > 0)
        groups.push({label: "others", name: "other groups", colour: "fault", times: others});
    return dots_plot("When", groups, recording.duration_s, {no_legend: true});
}

/// The first and the last time are known; those of the packets between are as good as the buckets of the
/// rates.
function dot_times(group, time_of) {
    const times = [group.first_s, group.last_s].filter((seconds) => seconds !== null);
    if (times.length === 2 && time_of) {
        const inside = (seconds) => Math.min(Math.max(seconds, group.first_s), group.last_s);
        times.push(...group.packets.map((packet) => inside(time_of(packet))));
    }
    return times;
}

/// A function from a packet's index to about its time, by the rate of the whole.
function packet_times({bucket_s, whole}) {
    if (whole.series === null) return null;
    const ends = [];
    let sum = 0;
    for (const bps of whole.series) ends.push((sum += (bps * bucket_s) / (188 * 8)));
    return (packet) => {
        let low = 0;
        let high = ends.length - 1;
        while (low < high) {
            const middle = (low + high) >> 1;
            if (ends[middle] > packet) high = middle;
            else low = middle + 1;
        }
        const begin = low === 0 ? 0 : ends[low - 1];
        return (low + Math.min((packet - begin) / Math.max(ends[low] - begin, 1), 1)) * bucket_s;
    };
}

function fault_table(sorted, has_dots) {
    return element(
        "div",
        {},
        table(
            "faults",
            [
                {title: "group", value: (row) => sorted.indexOf(row) + 1, number: true},
                {
                    title: "count",
                    value: (row) => row.count,
                    show: (row) => count_text(row.count),
                    number: true,
                    fault: () => true,
                },
                {
                    title: "first",
                    value: (row) => row.packets[0],
                    show: (row) => place(row.first_s, row.packets[0]),
                },
                {title: "last", value: (row) => row.last_s, show: (row) => time_text(row.last_s)},
                {title: "PID", value: (row) => row.pid, show: (row) => pid_text(row.pid), always: true},
                {
                    title: "table",
                    value: (row) => row.table_id,
                    show: (row) => hex_text(row.table_id, 2),
                    always: true,
                },
                {
                    title: "the first of the group",
                    value: (row) => row.text.trim(),
                    show: (row) => element("code", {}, row.text.trim()),
                },
            ],
            sorted,
        ),
        note(
            "Lines of the transcript that tell of a fault, those that differ only in numbers in one group. " +
                (has_dots
                    ? "Dots between the first and the last of a group are placed by packet number, " +
                      "for its first 100 packets."
                    : ""),
        ),
    );
}

function break_table(breaks) {
    return table(
        "breaks of time",
        [
            {
                title: "break",
                value: (row) => row.packet,
                show: (row) => place(row.t_s, row.packet),
                always: true,
            },
            {title: "byte", value: (row) => row.byte, show: (row) => count_text(row.byte), number: true},
            {title: "kind", value: (row) => kinds[row.kind].name, always: true},
            {
                title: "PCR leaps by",
                value: (row) => row.pcr_jump_s,
                number: true,
                show: (row) => (row.pcr_jump_s === null ? "" : row.pcr_jump_s + " s"),
            },
        ],
        breaks,
    );
}
