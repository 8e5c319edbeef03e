// All that is counted of each PID.
import {lazy_details, place} from "./elements.js";
import {count_text, percent_text, pid_text, rate_text, rows_text} from "./figures.js";
import {name_of_pids} from "./pid_names.js";
import {table} from "./table.js";

const faults = [
    ["transport_errors", "transport errors"],
    ["continuity_errors", "continuity errors"],
    ["lost_packets_estimate", "lost packets"],
    ["out_of_order", "out of order"],
    ["crc_errors", "CRC errors"],
    ["incomplete_sections", "incomplete sections"],
];
const counts = [
    ["scrambled", "scrambled"],
    ["duplicates", "duplicates"],
    ["discontinuities", "discontinuities flagged"],
    ["unit_starts", "unit starts"],
    ["random_access_points", "random access points"],
    ["without_payload", "without payload"],
    ["reserved_control", "reserved control"],
];

export function pids_table(found) {
    const name_of = name_of_pids(found);
    const {recording} = found;
    // Two of the bad sync bytes of each loss are no packets anyway.
    const packets = recording.packets - recording.sync_byte_errors + 2 * recording.sync_losses;
    const rates = new Map(found.rates.pids.map((row) => [row.pid, row]));
    const number = (title, value, show) => ({title, value, show, number: true});
    const rate = (title, field) =>
        number(
            title,
            (row) => rates.get(row.pid)?.[field],
            (row) => rate_text(rates.get(row.pid)?.[field]),
        );
    const counted =
        (fault) =>
        ([field, title]) => ({
            ...number(
                title,
                (row) => row[field],
                (row) => (row[field] ? count_text(row[field]) : ""),
            ),
            rare: true,
            fault: (row) => fault && row[field] > 0,
        });
    const columns = [
        {title: "PID", value: (row) => row.pid, show: (row) => pid_text(row.pid), always: true},
        {title: "what", value: (row) => name_of(row.pid)},
        number(
            "packets",
            (row) => row.packets,
            (row) => count_text(row.packets),
        ),
        number(
            "share",
            (row) => row.packets / packets,
            (row) => percent_text(row.packets / packets),
        ),
        rate("mean", "mean_bps"),
        rate("lowest second", "min_bps"),
        rate("highest second", "max_bps"),
        ...faults.map(counted(true)),
        ...counts.map(counted(false)),
        number(
            "first",
            (row) => row.first_packet,
            (row) => place(row.first_s, row.first_packet),
        ),
        number(
            "last",
            (row) => row.last_packet,
            (row) => place(row.last_s, row.last_packet),
        ),
    ];
    return lazy_details(
        {class: "all", id: "pids"},
        "All PIDs: " + rows_text(found, "PIDs", found.pids.length, "PID", "PIDs"),
        () => [table("all PIDs", columns, found.pids)],
    );
}
