// What each PID is, in words.
import {name_of_program} from "./programs.js";

const fixed = new Map([
    [0x0000, "PAT"],
    [0x0001, "CAT"],
    [0x0010, "NIT"],
    [0x0011, "SDT, BAT"],
    [0x0012, "EIT"],
    [0x0013, "RST"],
    [0x0014, "TDT, TOT"],
    [0x001f, "SIT"],
    [0x1ffb, "PSIP"],
    [0x1fff, "null packets"],
]);

/// A function from a PID to its name; "" of what nothing names.
export function name_of_pids({programs, tables}) {
    const names = new Map();
    const add = (pid, name) => {
        if (!names.has(pid)) names.set(pid, name);
    };
    for (const program of programs) {
        const of = " of " + name_of_program(program);
        for (const stream of program.streams) add(stream.pid, (stream.name || "stream") + of);
        add(program.pmt_pid, "PMT" + of);
    }
    for (const program of programs)
        if (program.pcr_pid !== null) add(program.pcr_pid, "PCR of " + name_of_program(program));
    for (const row of tables.rows) add(row.pid, row.name);
    return (pid) => fixed.get(pid) ?? names.get(pid) ?? "";
}
