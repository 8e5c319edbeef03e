// The clocks of the programs: PCR intervals, what is left of PCRs beside a straight line, margins of time
// stamps.
import {part} from "./elements.js";
import {count_text, interval_text, nanoseconds_text, pid_text, rows_text} from "./figures.js";
import {draw_limit, make_plot, series_colour} from "./plot.js";
import {name_of_pids} from "./pid_names.js";
import {table} from "./table.js";

const shown_at_first = 6;
const residual_buckets = 1000;
const longest_window_s = 10;
const range_text =
    (text) =>
    (_, [low, , high]) =>
        low === high ? text(low) : text(low) + " to " + text(high);
const axis_milliseconds = (value) =>
    Math.abs(value) < 1000
        ? Number(value.toPrecision(5)) + " ms"
        : Number((value / 1000).toPrecision(5)) + " s";

export function clocks_part(found) {
    const {pcr, time_stamps} = found;
    if (pcr.length === 0 && time_stamps.length === 0) return null;
    const name_of = name_of_pids(found);
    return part(
        "clocks",
        "Clocks",
        rows_text(found, "PCRs", pcr.length, "PID", "PIDs") +
            " with PCR, " +
            rows_text(found, "time stamps", time_stamps.length, "PID", "PIDs") +
            " with time stamps",
        interval_plot(found),
        residual_plot(found),
        margin_plot(found),
        pcr_table(pcr),
        stamps_table(time_stamps, name_of),
    );
}

/// Bands of the least and the greatest value of each bucket, of
///   rows, series_of(row) {min, max}, times(all series): of their buckets,
///   line_at: which of both is drawn as a line, worst(row): how bad it is; the worst few are shown at first;
/// and what else make_plot takes.
function band_plot({rows, series_of, times, line_at, worst, options, ...plot}) {
    const kept = rows.filter((row) => series_of(row)?.min.some((value) => value !== null));
    if (kept.length === 0) return null;
    const by_worst = [...kept].sort((a, b) => worst(b) - worst(a)).slice(0, shown_at_first);
    const all = kept.map(series_of);
    const point = ({min, max}, each) => {
        const low = min[each] ?? null;
        return low === null ? [null, null, null] : [low, line_at === "max" ? max[each] : low, max[each]];
    };
    return make_plot({
        ...plot,
        series: kept.map((row, each) => ({
            name: pid_text(row.pid),
            colour: series_colour(each),
            hidden: !by_worst.includes(row),
        })),
        rows: times(all).map((seconds, each) => [seconds, ...all.map((series) => point(series, each))]),
        options: {
            customBars: true,
            fillAlpha: 0.25,
            strokeWidth: 1,
            drawPoints: false,
            pointSize: 2, // of those alone between gaps
            ...options,
        },
    });
}

function bucket_times({rates, recording}) {
    return (all) =>
        Array.from({length: Math.max(...all.map((series) => series.min.length))}, (_, each) =>
            Math.min((each + 0.5) * rates.bucket_s, recording.duration_s),
        );
}

function interval_plot(found) {
    const limit = (found.checks.find((check) => check.id === "2.3a")?.limit ?? 0.1) * 1000;
    return band_plot({
        title: "PCR interval",
        rows: found.pcr,
        series_of: (row) => row.interval_series,
        worst: (row) => row.interval_ms.max,
        times: bucket_times(found),
        line_at: "max",
        value_text: range_text(interval_text),
        axis_text: axis_milliseconds,
        overlay: (context, graph) => draw_limit(context, graph, limit),
        reaches: limit,
        options: {includeZero: true},
    });
}

/// Windows in the common buckets of time: each goes on to the next, but not for longer than it can be.
function in_buckets({t_s, min, max}, duration) {
    const width = duration / residual_buckets;
    const longest = Math.max(longest_window_s, 2 * width);
    const buckets = {min: Array(residual_buckets).fill(null), max: Array(residual_buckets).fill(null)};
    t_s.forEach((from, each) => {
        if (from === null) return;
        const to = Math.min(t_s[each + 1] ?? duration, from + longest, duration);
        for (let at = Math.max(Math.floor(from / width), 0); at < residual_buckets && at * width < to; ++at) {
            buckets.min[at] = Math.min(buckets.min[at] ?? Infinity, min[each]);
            buckets.max[at] = Math.max(buckets.max[at] ?? -Infinity, max[each]);
        }
    });
    return buckets;
}

function residual_plot({pcr, recording}) {
    if (!recording.duration_s) return null;
    const with_series = pcr.filter((row) => row.residual_series !== null);
    const buckets = new Map(
        with_series.map((row) => [row, in_buckets(row.residual_series, recording.duration_s)]),
    );
    const width = recording.duration_s / residual_buckets;
    const worst = (row) => Math.max(-(row.residual_ns.min ?? 0), row.residual_ns.max ?? 0);
    return band_plot({
        title: "PCR residual",
        rows: pcr,
        series_of: (row) => buckets.get(row),
        worst,
        times: () => Array.from({length: residual_buckets}, (_, each) => each * width),
        line_at: "max",
        value_text: range_text(nanoseconds_text),
        axis_text: nanoseconds_text,
        options: {includeZero: true, stepPlot: true},
    });
}

function margin_plot(found) {
    return band_plot({
        title: "Margin of time stamps",
        rows: found.time_stamps,
        series_of: (row) => row.margin_series,
        worst: (row) => -(row.margin_ms.min ?? 0),
        times: bucket_times(found),
        line_at: "min",
        value_text: range_text(interval_text),
        axis_text: axis_milliseconds,
        overlay: (context, graph) => draw_limit(context, graph, 0),
        options: {includeZero: true},
    });
}

const number = (title, value, show) => ({title, value, show, number: true});
const rare = (title, value, is_fault) => ({
    ...number(title, value, (row) => count_text(value(row))),
    rare: true,
    fault: (row) => is_fault && value(row) > 0,
});
const three = (title, field, show) =>
    ["min", "mean", "max"].map((which) =>
        number(
            title + " " + which,
            (row) => field(row)[which],
            (row) => show(field(row)[which]),
        ),
    );

function pcr_table(rows) {
    if (rows.length === 0) return null;
    const ppm = (value) => (value === null ? "" : (Math.round(value * 1000) / 1000 + 0).toFixed(3) + " ppm");
    return table(
        "PCRs",
        [
            {title: "PCR PID", value: (row) => row.pid, show: (row) => pid_text(row.pid), always: true},
            number(
                "PCRs",
                (row) => row.count,
                (row) => count_text(row.count),
            ),
            ...three("interval", (row) => row.interval_ms, interval_text),
            rare("leaps not flagged", (row) => row.discontinuities_unflagged, true),
            rare("leaps flagged", (row) => row.discontinuities_flagged),
            number(
                "residual min",
                (row) => row.residual_ns.min,
                (row) => nanoseconds_text(row.residual_ns.min),
            ),
            number(
                "residual max",
                (row) => row.residual_ns.max,
                (row) => nanoseconds_text(row.residual_ns.max),
            ),
            number(
                "residual rms",
                (row) => row.residual_ns.rms,
                (row) => nanoseconds_text(row.residual_ns.rms),
            ),
            {title: "over", value: (row) => row.basis},
            number(
                "rate offset min",
                (row) => row.rate_offset_ppm.min,
                (row) => ppm(row.rate_offset_ppm.min),
            ),
            number(
                "rate offset max",
                (row) => row.rate_offset_ppm.max,
                (row) => ppm(row.rate_offset_ppm.max),
            ),
        ],
        rows,
    );
}

function stamps_table(rows, name_of) {
    if (rows.length === 0) return null;
    return table(
        "time stamps",
        [
            {title: "PID", value: (row) => row.pid, show: (row) => pid_text(row.pid), always: true},
            {title: "what", value: (row) => name_of(row.pid)},
            number(
                "PTS",
                (row) => row.pts.count,
                (row) => count_text(row.pts.count),
            ),
            ...three("interval", (row) => row.pts.arrival_interval_ms, interval_text),
            number(
                "DTS",
                (row) => row.dts.count,
                (row) => count_text(row.dts.count),
            ),
            rare("reordered", (row) => row.reordered),
            ...three("margin", (row) => row.margin_ms, interval_text),
            rare("late", (row) => row.late, true),
            rare("unrelated", (row) => row.unrelated),
            rare("PES not read", (row) => row.pes_not_read),
        ],
        rows,
    );
}
