// Splice cues: marks on the time axis, and the list.
import {part, place} from "./elements.js";
import {count_text, duration_text, hex_text, interval_text, pid_text, rows_text} from "./figures.js";
import {dots_plot} from "./dots_plot.js";
import {series_colour} from "./plot.js";
import {table} from "./table.js";

export function cues_part(found) {
    const {cues, recording} = found;
    if (cues.length === 0) return null;
    return part(
        "cues",
        "Cues",
        rows_text(found, "cues", cues.length, "cue", "cues"),
        recording.duration_s ? cue_dots(cues, recording.duration_s) : null,
        cue_table(cues),
    );
}

function cue_dots(cues, duration) {
    const groups = new Map();
    for (const cue of cues) {
        const name =
            pid_text(cue.pid) + " " + cue.command + (direction_text(cue) ? " " + direction_text(cue) : "");
        if (!groups.has(name))
            groups.set(name, {label: pid_text(cue.pid), name, times: [], colour: series_colour(groups.size)});
        if (cue.t_s !== null) groups.get(name).times.push(cue.t_s);
    }
    return dots_plot("When", [...groups.values()], duration);
}

function direction_text(cue) {
    if (cue.cancelled) return "cancelled";
    return cue.out_of_network === null ? "" : cue.out_of_network ? "out" : "return";
}

function splice_text(cue) {
    if (cue.immediate) return "immediate";
    return cue.pts_time_s === null ? "" : "PTS " + cue.pts_time_s.toFixed(3) + " s";
}

function segmentation_text({type, name, upid}) {
    return (name || "type " + hex_text(type, 2)) + (upid ? " " + upid : "");
}

function cue_table(cues) {
    return table(
        "cues",
        [
            {
                title: "time",
                value: (row) => row.packet,
                show: (row) => place(row.t_s, row.packet),
                always: true,
            },
            {title: "PID", value: (row) => row.pid, show: (row) => pid_text(row.pid), always: true},
            {title: "program", value: (row) => row.program, number: true},
            {title: "command", value: (row) => row.command},
            {title: "event", value: (row) => row.splice_event_id, number: true},
            {title: "", value: direction_text},
            {title: "splice at", value: splice_text},
            {
                title: "before it",
                value: (row) => row.pre_roll_ms,
                show: (row) => interval_text(row.pre_roll_ms),
                number: true,
            },
            {
                title: "break",
                value: (row) => row.break_duration_s,
                number: true,
                show: (row) => duration_text(row.break_duration_s) + (row.auto_return ? ", auto return" : ""),
            },
            {title: "segmentation", value: (row) => row.segmentations.map(segmentation_text).join("; ")},
            {
                title: "received",
                value: (row) => row.count,
                show: (row) => count_text(row.count),
                number: true,
            },
        ],
        cues,
    );
}
