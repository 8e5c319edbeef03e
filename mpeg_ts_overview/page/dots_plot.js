// Dots on the time axis, a line of dots for each group.
import {make_plot} from "./plot.js";

const line_height = 18; // pixels
const around = 30; // the time axis below
const dot_columns = 2000; // dots of a group nearer than a part of that many of the recording are one

/// groups are {label, name, times, colour}; label stands beside the line and must not be of the stream, name
/// is said when a dot is pointed at. more is for make_plot.
export function dots_plot(title, groups, duration, more) {
    const width = duration / dot_columns;
    const rows = new Map();
    groups.forEach((group, number) => {
        for (const seconds of group.times) {
            const column = Math.floor(seconds / width);
            if (!rows.has(column)) rows.set(column, [seconds, ...groups.map(() => null)]);
            rows.get(column)[number + 1] = groups.length - number;
        }
    });
    if (rows.size === 0) return null;
    return make_plot({
        title,
        series: groups.map((group) => ({name: group.name, colour: group.colour})),
        rows: [...rows.values()].sort((a, b) => a[0] - b[0]),
        height: groups.length * line_height + around,
        value_text: () => "",
        ...more,
        options: {
            drawPoints: true,
            strokeWidth: 0,
            pointSize: 3.5,
            highlightCircleSize: 5,
            valueRange: [0.3, groups.length + 0.7],
        },
        y_ticks: groups.map((group, number) => ({v: groups.length - number, label: group.label})),
    });
}
