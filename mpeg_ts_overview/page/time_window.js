// What all plots share: the part of the recording that they show, and the times that are marked in them.

const everything = {from: 0, to: 1};
const listeners = [];

export const time_window = {from: 0, to: 1, marks: []};

/// Called after each change of the window or the marks.
export function on_time_window(listener) {
    listeners.push(listener);
}

/// The times of the whole recording.
export function set_duration(seconds) {
    everything.to = seconds > 0 ? seconds : 1;
    show_everything();
}

export function show_everything() {
    show_times(everything.from, everything.to);
}

/// Shows these seconds, as far as the recording has them; not less than a millisecond.
export function show_times(from, to) {
    const width = Math.min(Math.max(to - from, 0.001), everything.to - everything.from);
    const begin = Math.min(Math.max(from, everything.from), everything.to - width);
    time_window.from = begin;
    time_window.to = begin + width;
    tell();
}

/// Moves by a part of what is shown.
export function move_times(part) {
    const width = time_window.to - time_window.from;
    show_times(time_window.from + part * width, time_window.to + part * width);
}

/// Shows that many times what is shown, around its middle.
export function scale_times(factor) {
    const middle = (time_window.from + time_window.to) / 2;
    const half = ((time_window.to - time_window.from) / 2) * factor;
    show_times(middle - half, middle + half);
}

export function mark_times(seconds) {
    time_window.marks = [...new Set(seconds)].sort((a, b) => a - b);
    tell();
}

function tell() {
    for (const listener of listeners) listener();
}
