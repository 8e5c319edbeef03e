// Figures as people read them. What was not measured (null) is an empty text.

/// "0:00:03.120" of seconds.
export function time_text(seconds) {
    if (seconds === null || seconds === undefined) return "";
    const milliseconds = Math.round(Math.abs(seconds) * 1000);
    const whole = Math.floor(milliseconds / 1000);
    const digits = (value, count) => String(value).padStart(count, "0");
    return (
        (seconds < 0 ? "-" : "") +
        Math.floor(whole / 3600) +
        ":" +
        digits(Math.floor(whole / 60) % 60, 2) +
        ":" +
        digits(whole % 60, 2) +
        "." +
        digits(milliseconds % 1000, 3)
    );
}

/// Marks of a time axis: milliseconds only where a step is below a second.
export function axis_time_text(seconds, step) {
    const text = time_text(seconds);
    return step < 1 ? text : text.slice(0, -4);
}

/// "1 h 2 min 3 s", "8 min 0 s", "12.5 s".
export function duration_text(seconds) {
    if (seconds === null || seconds === undefined) return "";
    if (seconds < 59.95) return seconds.toFixed(seconds < 9.995 ? 2 : 1) + " s";
    const whole = Math.round(seconds);
    const minutes = Math.floor(whole / 60);
    if (minutes < 60) return minutes + " min " + (whole % 60) + " s";
    return Math.floor(minutes / 60) + " h " + (minutes % 60) + " min " + (whole % 60) + " s";
}

/// "45 min", "1 h 30 min": of what is planned, seconds only when there are some.
export function planned_text(seconds) {
    return duration_text(seconds)
        .replace(/ 0 s$/, "")
        .replace(/ 0 min$/, "");
}

function three_digits(value) {
    return value.toFixed(value < 9.995 ? 2 : value < 99.95 ? 1 : 0);
}

/// "1.08 GB"; 1 kB is 1000 bytes.
export function size_text(bytes) {
    if (bytes < 1000) return bytes + " bytes";
    const units = ["kB", "MB", "GB", "TB", "PB", "EB"];
    let value = bytes / 1000;
    let unit = 0;
    while (value >= 999.5 && unit < units.length - 1) {
        value /= 1000;
        ++unit;
    }
    return three_digits(value) + " " + units[unit];
}

/// "18.00 Mbit/s", below 0.01 of them "1.50 kbit/s".
export function rate_text(bps) {
    if (bps === null || bps === undefined) return "";
    return bps < 10000 ? (bps / 1e3).toFixed(2) + " kbit/s" : (bps / 1e6).toFixed(2) + " Mbit/s";
}

/// "100 ms", "4.5 ms", "30 s" of milliseconds.
export function interval_text(milliseconds) {
    if (milliseconds === null || milliseconds === undefined) return "";
    const size = Math.abs(milliseconds);
    if (size >= 999.5e3) return (milliseconds / 1000).toFixed(0) + " s";
    if (size >= 999.5) return Number((milliseconds / 1000).toPrecision(3)) + " s";
    return milliseconds.toFixed(size < 9.95 ? 1 : 0) + " ms";
}

/// "512 ns", "1.5 us".
export function nanoseconds_text(nanoseconds) {
    if (nanoseconds === null || nanoseconds === undefined) return "";
    const size = Math.abs(nanoseconds);
    if (size >= 999.5e3) return Number((nanoseconds / 1e6).toPrecision(3)) + " ms";
    if (size >= 9999.5) return Number((nanoseconds / 1e3).toPrecision(3)) + " us";
    return Number(nanoseconds.toPrecision(3)) + " ns";
}

/// "0x0100".
export function hex_text(value, digits) {
    if (value === null || value === undefined) return "";
    return "0x" + value.toString(16).toUpperCase().padStart(digits, "0");
}

export function pid_text(pid) {
    return hex_text(pid, 4);
}

/// "12 345" with narrow spaces that do not break.
export function count_text(value) {
    if (value === null || value === undefined) return "";
    return String(value).replace(/\B(?=(\d{3})+$)/g, "\u202f");
}

/// "1 cue", "2 cues".
export function counted_text(value, one, more) {
    return count_text(value) + " " + (value === 1 ? one : more);
}

/// "2 cues"; of a list that the page has only the first rows of, "384 of 5 100 cues".
export function rows_text({all_rows}, list, shown, one, more) {
    const all = all_rows[list] ?? shown;
    return (all === shown ? "" : count_text(shown) + " of ") + counted_text(all, one, more);
}

export function percent_text(share) {
    if (share === null || share === undefined) return "";
    return (share * 100).toFixed(1) + " %";
}

/// "2024-05-01 18:00:00" of "2024-05-01T18:00:00Z".
export function utc_text(utc) {
    return utc ? utc.replace("T", " ").replace("Z", "") : "";
}
