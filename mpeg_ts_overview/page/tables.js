// The tables of the stream: how often they come, which versions there were.
import {element, note, part, place} from "./elements.js";
import {count_text, counted_text, hex_text, interval_text, pid_text, rows_text} from "./figures.js";
import {table} from "./table.js";

export function tables_part(found) {
    const {tables} = found;
    if (tables.rows.length === 0) return null;
    const number = (title, value, show) => ({title, value, show, number: true});
    const interval = (title, which) =>
        number(
            title,
            (row) => row.interval_ms[which],
            (row) => interval_text(row.interval_ms[which]),
        );
    const columns = [
        {title: "PID", value: (row) => row.pid, show: (row) => pid_text(row.pid), always: true},
        {
            title: "table",
            value: (row) => row.table_id,
            show: (row) => hex_text(row.table_id, 2),
            always: true,
        },
        {title: "name", value: (row) => row.name},
        {title: "of", value: extension_text},
        number(
            "sections",
            (row) => row.sections,
            (row) => count_text(row.sections),
        ),
        interval("least interval", "min"),
        interval("mean", "mean"),
        interval("greatest", "max"),
        {title: "versions", value: (row) => row.versions.length, show: versions_cell},
        {
            ...number(
                "changed under the same version",
                (row) => row.changed_under_same_version,
                (row) => count_text(row.changed_under_same_version),
            ),
            rare: true,
            fault: (row) => row.changed_under_same_version > 0,
        },
    ];
    return part(
        "tables",
        "Tables",
        rows_text(found, "tables", tables.rows.length, "table", "tables"),
        table("tables", columns, tables.rows),
        note("Intervals are between arrivals of sections of the same number."),
    );
}

function extension_text(row) {
    const texts = [row.table_id_extension === null ? "" : hex_text(row.table_id_extension, 4)];
    if (row.transport_stream_id !== null) texts.push("stream " + hex_text(row.transport_stream_id, 4));
    if (row.original_network_id !== null) texts.push("network " + hex_text(row.original_network_id, 4));
    if (row.ETM_id !== null) texts.push("ETM " + hex_text(row.ETM_id, 8));
    return texts.filter(Boolean).join(", ");
}

/// Each version with the place where it came first.
function versions_cell({versions}) {
    const lines = versions.map(({version, first_s, first_packet}) =>
        element("div", {}, element("span", {class: "version"}, version), " ", place(first_s, first_packet)),
    );
    if (versions.length < 2) return lines[0] ?? "";
    return element(
        "details",
        {class: "versions"},
        element("summary", {}, counted_text(versions.length, "version", "versions")),
        lines,
    );
}
