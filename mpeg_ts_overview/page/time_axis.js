// Marks of the time axis at steps that clocks have.
import {axis_time_text} from "./figures.js";

const steps = [
    0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800,
    3600, 7200, 10800, 21600, 43200, 86400,
];
const least_distance = 90; // pixels

/// A ticker of dygraphs: the marks from a to b seconds on an axis of so many pixels.
export function time_ticks(a, b, pixels) {
    const wanted = ((b - a) * least_distance) / Math.max(pixels, 1);
    const last = steps[steps.length - 1];
    const step = steps.find((each) => each >= wanted) ?? Math.ceil(wanted / last) * last;
    const ticks = [];
    for (let number = Math.ceil(a / step); number * step <= b; ++number)
        ticks.push({v: number * step, label: axis_time_text(number * step, step)});
    return ticks;
}
