// Bit rates over time, stacked by program or by PID under the rate of the whole, and what is known of each
// PID.
import {button, element, part} from "./elements.js";
import {pid_text, rate_text} from "./figures.js";
import {colour_of, draw_plots, make_plot, series_colour} from "./plot.js";
import {name_of_pids} from "./pid_names.js";
import {pids_table} from "./pids_table.js";
import {name_of_program} from "./programs.js";

const least_rest = 1; // bit/s; less is rounding

export function rates_part(found) {
    if (found.pids.length === 0) return null;
    const made = part("rates", "Rates", rate_text(found.rates.whole.mean_bps));
    if (found.rates.whole.series !== null) made.append(rate_plots(found));
    made.append(pids_table(found));
    return made;
}

function rate_plots(found) {
    const by_program = program_series(found);
    const by_pid = pid_series(found);
    const box = element("div", {class: "switched"});
    const views = [];
    const show = (number) => {
        views[number].figure ??= box.appendChild(
            stacked_plot(found, views[number].title, views[number].series()),
        );
        views.forEach((view, each) => {
            if (view.figure) view.figure.hidden = each !== number;
            view.button.setAttribute("aria-pressed", String(each === number));
        });
        draw_plots();
    };
    const add = (title, name, series) =>
        views.push({
            title,
            series: () => series,
            button: button(name, "false", () => show(views.findIndex((view) => view.title === title))),
        });
    if (by_program.length > 0) add("Rate by program", "by program", by_program);
    add("Rate by PID", "by PID", by_pid);
    box.append(
        element(
            "p",
            {class: "switch", role: "group", "aria-label": "areas"},
            views.map((view) => view.button),
        ),
    );
    queueMicrotask(() => show(0));
    return box;
}

function program_series({rates, programs}) {
    if (rates.programs.length === 0) return [];
    const names = new Map(programs.map((program) => [program.number, name_of_program(program)]));
    const parts = rates.programs.map(({number, series}, each) => ({
        name: names.get(number) ?? "program " + number,
        colour: series_colour(each),
        values: series,
    }));
    return with_rest(rates, parts, "tables and others");
}

function pid_series(found) {
    const name_of = name_of_pids(found);
    const parts = found.rates.pid_series.map((row, each) => ({
        name: (pid_text(row.pid) + " " + name_of(row.pid)).trim(),
        colour: series_colour(each),
        values: row.series,
    }));
    return with_rest(found.rates, parts, "other PIDs");
}

/// The parts, what the whole has beyond them, and the null packets.
function with_rest(rates, parts, name_of_rest) {
    const series = [...parts];
    const null_values = rates.null_series;
    const rest = rates.whole.series.map((whole, each) =>
        Math.max(
            0,
            whole -
                (null_values?.[each] ?? 0) -
                parts.reduce((sum, part) => sum + (part.values[each] ?? 0), 0),
        ),
    );
    if (rest.some((value) => value > least_rest))
        series.push({name: name_of_rest, colour: "series_rest", values: rest});
    if (null_values) series.push({name: "null packets", colour: "series_null", values: null_values});
    return series;
}

function stacked_plot({rates, recording}, title, series) {
    const whole = rates.whole.series;
    const bucket = rates.bucket_s;
    const row_of = (each, seconds) => [seconds, ...series.map((part) => part.values[each] ?? 0)];
    const rows = whole.map((_, each) => row_of(each, each * bucket));
    rows.push(
        row_of(whole.length - 1, Math.max(recording.duration_s, (whole.length - 1) * bucket + bucket / 1000)),
    );
    return make_plot({
        title,
        series,
        rows,
        size: "tall",
        value_text: rate_text,
        axis_text: rate_axis_text,
        first_text: (seconds) =>
            "whole " + rate_text(whole[Math.min(Math.floor(seconds / bucket + 1e-6), whole.length - 1)]),
        legend: element("span", {class: "key"}, element("span", {class: "chip line ink"}), "whole"),
        options: {
            stackedGraph: true,
            stepPlot: true,
            fillAlpha: 0.75,
            strokeWidth: 0,
            includeZero: true,
            highlightCircleSize: 0,
            drawPoints: false,
            valueRange: [0, Math.max(...whole) * 1.05 || 1],
        },
        overlay: (context, graph) => draw_whole(context, graph, whole, bucket),
    });
}

function rate_axis_text(bps) {
    return bps < 10000 ? bps / 1e3 + " kbit/s" : Number((bps / 1e6).toPrecision(4)) + " Mbit/s";
}

function draw_whole(context, graph, whole, bucket) {
    context.strokeStyle = colour_of("ink");
    context.lineWidth = 1;
    context.beginPath();
    whole.forEach((value, each) => {
        const height = graph.toDomYCoord(value);
        context.lineTo(graph.toDomXCoord(each * bucket), height);
        context.lineTo(graph.toDomXCoord((each + 1) * bucket), height);
    });
    context.stroke();
}
