// A plot over the time of the recording, drawn by dygraphs. Names from the stream never reach dygraphs: it
// knows series by their numbers, what people read is beside the plot.
import {element} from "./elements.js";
import {time_text} from "./figures.js";
import {follow_gestures} from "./gestures.js";
import {time_ticks} from "./time_axis.js";
import {on_time_window, time_window} from "./time_window.js";

const waiting = []; // plots that are not on the page yet
const plots = []; // those that are
const quiet_ms = 700;
const pause_ms = 50; // between plots out of view, for hands on the page
let later = 0; // a timer
const values_in_readout = 8;
const axis_height = 22;
const time_width = 86;
const axis_width = 66; // of every plot, so that their times stand below each other

/// The colour of that name in the style sheet, as it is now.
export function colour_of(name) {
    return getComputedStyle(document.documentElement)
        .getPropertyValue("--" + name)
        .trim();
}

/// The n-th colour of series.
export function series_colour(number) {
    return "series_" + ((number % 10) + 1);
}

/// A figure with
///   title, series [{name, colour, hidden}], rows [[t_s, value of each series ...]],
///   value_text(value, cell of the row): how values are said,
///   axis_text(value) of the marks at the side, or y_ticks [{v, label}],
///   first_text(t_s): said before the values,
///   reaches: the axis of bands is from 0 to what is shown, and at least a little beyond that value,
///   options: more options of dygraphs, overlay(context, graph): draws over the series,
///   size "tall", or height in pixels, legend: more of it, no_legend.
export function make_plot(plot) {
    const area = element("div", {
        class: "plot " + (plot.size ?? ""),
        tabindex: 0,
        role: "img",
        "aria-label":
            plot.title +
            ". Arrows move, with Shift from value to value, + and - zoom, Escape shows everything.",
    });
    if (plot.height) area.style.height = plot.height + "px";
    const canvas = element("div", {class: "canvas"});
    const readout = element("p", {class: "readout", "aria-live": "polite"}, "\u00a0");
    area.append(canvas);
    const state = {
        ...plot,
        area,
        canvas,
        readout,
        graph: null,
        pointed: null, // the row whose values are said
        near: false,
        stale: true,
    };
    waiting.push(state);
    const legend = plot.no_legend ? null : legend_of(state);
    return element(
        "figure",
        {},
        element("figcaption", {}, element("h3", {}, plot.title), plot.controls),
        legend,
        area,
        readout,
    );
}

/// Plots that were put on the page since the last call are drawn when they come into view, or when there is
/// time.
export function draw_plots() {
    for (const state of waiting.splice(0)) {
        plots.push(state);
        show_window(state);
        follow_gestures(
            state.area,
            () => state.graph,
            (direction) => point_to_next(state, direction),
        );
        new IntersectionObserver(
            ([entry]) => {
                state.near = entry.isIntersecting;
                if (state.near && state.stale) draw(state);
            },
            {rootMargin: "400px"},
        ).observe(state.area);
    }
    draw_later();
}

function refresh_all() {
    for (const state of plots) {
        show_window(state);
        state.stale = true;
        if (state.near) draw(state);
    }
    draw_later();
}

on_time_window(refresh_all);
matchMedia("(prefers-color-scheme: dark)").addEventListener("change", refresh_all);
addEventListener("beforeprint", () => {
    document.documentElement.classList.add("printed"); // with the colours of paper
    plots.forEach(draw);
});
addEventListener("afterprint", () => {
    document.documentElement.classList.remove("printed");
    refresh_all();
});

/// Browsers print a plot only if it was drawn before, so those out of view are brought up to date too: one
/// after the other, when the page has been left alone for a while.
function draw_later(wait_ms = quiet_ms) {
    clearTimeout(later);
    later = setTimeout(() => {
        const next = plots.find((state) => state.stale && state.area.clientWidth > 0);
        if (!next) return;
        draw(next);
        draw_later(pause_ms);
    }, wait_ms);
}

function draw(state) {
    if (state.area.clientWidth === 0) return; // of a figure that is not shown
    state.stale = false;
    if (state.graph) state.graph.updateOptions({...window_options(state), ...theme_options(state)});
    else start(state);
}

function legend_of(state) {
    const entries = state.series.map((series, number) => {
        const entry = element(
            "button",
            {type: "button", "aria-pressed": String(!series.hidden)},
            element("span", {class: "chip " + series.colour}),
            series.name,
        );
        entry.addEventListener("click", () => {
            const visible = entry.getAttribute("aria-pressed") !== "true";
            entry.setAttribute("aria-pressed", String(visible));
            series.hidden = !visible;
            state.graph?.setVisibility(number, visible);
            if (state.graph) draw(state);
        });
        return entry;
    });
    return element(
        "div",
        {class: "legend", role: "group", "aria-label": "series of " + state.title},
        entries,
        state.legend,
    );
}

function start(state) {
    Dygraph.PLUGINS = [Dygraph.Plugins.Grid, Dygraph.Plugins.Axes]; // the others write markup
    state.graph = new Dygraph(state.canvas, state.rows, {
        labels: ["t", ...state.series.map((_, number) => String(number))],
        visibility: state.series.map((series) => !series.hidden),
        axes: {x: {ticker: time_ticks, axisLabelWidth: time_width}, y: value_axis(state)},
        xAxisHeight: axis_height,
        axisLabelFontSize: 11,
        legend: "never",
        interactionModel: {},
        resizable: "passive",
        highlightCircleSize: 3,
        highlightCallback: (event, x, points, row) => {
            state.pointed = row;
            state.readout.textContent = readout_text(state, x, points, state.rows[row]);
        },
        unhighlightCallback: () => {
            state.pointed = null;
            state.readout.textContent = "\u00a0";
        },
        plugins: [
            {activate: () => ({didDrawChart: (event) => draw_over(state, event)}), toString: () => "over"},
        ],
        ...window_options(state),
        ...theme_options(state),
        ...state.options,
    });
}

function value_axis(state) {
    const axis = {axisLabelWidth: axis_width, pixelsPerLabel: 26};
    if (state.y_ticks) return {...axis, ticker: () => state.y_ticks};
    // At the bottom the time axis has its first mark, where 0 needs none.
    const text = (value, granularity, options, graph) =>
        value === 0 && graph.yAxisRange()[0] === 0 ? "" : state.axis_text(value);
    return {...axis, axisLabelFormatter: text};
}

function is_shown([seconds]) {
    return seconds >= time_window.from && seconds <= time_window.to;
}

function window_options(state) {
    const shown = {dateWindow: [time_window.from, time_window.to]};
    if (state.reaches === undefined) return shown;
    let greatest = state.reaches;
    for (const row of state.rows.filter(is_shown))
        state.series.forEach(({hidden}, number) => {
            const [, , high] = row[number + 1];
            if (!hidden && high > greatest) greatest = high;
        });
    return {...shown, valueRange: [0, greatest * 1.1]};
}

/// Says the values of the next row that is shown and has some; of the first one in the middle.
function point_to_next(state, direction) {
    const {rows, graph} = state;
    const value_of = (cell) => (Array.isArray(cell) ? cell[1] : cell);
    const points_of = ([, ...cells]) =>
        cells
            .map((cell, number) => ({name: String(number), yval: value_of(cell)}))
            .filter(({yval}, number) => yval !== null && !state.series[number].hidden);
    const middle = (time_window.from + time_window.to) / 2;
    const first = rows.findIndex(([seconds]) => seconds >= middle);
    let next = state.pointed === null ? first : state.pointed + direction;
    while (rows[next] && is_shown(rows[next]) && points_of(rows[next]).length === 0) next += direction;
    if (!rows[next] || !is_shown(rows[next])) return;
    graph.setSelection(next);
    state.pointed = next;
    state.readout.textContent = readout_text(state, rows[next][0], points_of(rows[next]), rows[next]);
}

/// What the plot shows, readable by other programs.
function show_window(state) {
    state.area.dataset.from = time_window.from;
    state.area.dataset.to = time_window.to;
    state.area.dataset.marks = time_window.marks.join(" ");
}

function theme_options(state) {
    return {
        colors: state.series.map((series) => colour_of(series.colour)),
        gridLineColor: colour_of("grid"),
        axisLineColor: colour_of("line"),
    };
}

function readout_text(state, x, points, row) {
    const values = points
        .map(({name, yval}) => ({
            series: state.series[Number(name)],
            value: yval,
            cell: row[Number(name) + 1],
        }))
        .filter(({value}) => value !== null && !Number.isNaN(value));
    values.sort((a, b) => Math.abs(b.value) - Math.abs(a.value));
    const texts = values
        .slice(0, values_in_readout)
        .map(({series, value, cell}) => series.name + " " + state.value_text(value, cell));
    if (values.length > values_in_readout) texts.push("and " + (values.length - values_in_readout) + " more");
    return [time_text(x), state.first_text?.(x), ...texts].filter(Boolean).join("   ");
}

function draw_over(state, {drawingContext: context, dygraph: graph}) {
    const {x, y, w, h} = graph.getArea();
    context.save();
    context.beginPath();
    context.rect(x, y, w, h);
    context.clip();
    state.overlay?.(context, graph);
    context.fillStyle = colour_of("fault");
    for (const seconds of time_window.marks)
        context.fillRect(Math.round(graph.toDomXCoord(seconds)) - 1, y, 2, h);
    context.restore();
}

/// A dashed line over the whole width at that value.
export function draw_limit(context, graph, value) {
    const {x, w} = graph.getArea();
    const height = graph.toDomYCoord(value);
    context.strokeStyle = colour_of("fault");
    context.setLineDash([5, 4]);
    context.beginPath();
    context.moveTo(x, height);
    context.lineTo(x + w, height);
    context.stroke();
    context.setLineDash([]);
}
