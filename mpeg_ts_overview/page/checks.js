// The checks by priority, those that fail first; an open one marks its times in every plot.
import {element, note, part, place} from "./elements.js";
import {count_text, counted_text, nanoseconds_text, pid_text, time_text} from "./figures.js";
import {table} from "./table.js";
import {mark_times} from "./time_window.js";

const order = ["fail", "pass", "not_measured"];
const words = {fail: "FAIL", pass: "ok", not_measured: "\u2013"};

export function checks_part({checks}) {
    if (checks.length === 0) return null;
    const by_result = order.map((result) => checks.filter((check) => check.result === result).length);
    const summary = by_result[0] + " fail, " + by_result[1] + " pass, " + by_result[2] + " not measured";
    const priorities = [...new Set(checks.map((check) => check.priority))].sort();
    return part(
        "checks",
        "Checks",
        summary,
        note("An open check marks its times in every plot."),
        priorities.map((priority) =>
            priority_list(
                priority,
                checks.filter((check) => check.priority === priority),
            ),
        ),
    );
}

function priority_list(priority, checks) {
    const sorted = [...checks].sort((a, b) => order.indexOf(a.result) - order.indexOf(b.result));
    return element(
        "div",
        {class: "priority"},
        element("h3", {}, "Priority " + priority),
        sorted.map(check_box),
    );
}

function check_box(check) {
    const box = element(
        "details",
        {class: "check " + check.result, name: "check", id: "check_" + check.id},
        element(
            "summary",
            {},
            element("span", {class: "result"}, words[check.result]),
            element("span", {class: "id"}, check.id),
            element("span", {class: "name"}, breakable(check.name)),
            element("span", {class: "told"}, told_text(check)),
        ),
        check_body(check),
    );
    box.addEventListener("toggle", () => {
        if (box.open) mark_times(times_of(check));
        else if (!document.querySelector("details.check[open]")) mark_times([]);
    });
    return box;
}

/// A name of several words that may go on in another line behind each underscore.
function breakable(name) {
    return name.split(/(?<=_)/).flatMap((word, number) => (number === 0 ? [word] : [element("wbr"), word]));
}

function times_of(check) {
    return [check.first_s, ...check.details.map((detail) => detail.t_s)].filter(
        (seconds) => seconds !== null,
    );
}

function told_text(check) {
    if (check.result === "not_measured") return check.why;
    const worst = worst_text(check);
    if (check.result === "pass") return worst;
    const parts = [counted_text(check.count, "time", "times") + pids_text(check)];
    if (check.first_s !== null) parts.push("first at " + time_text(check.first_s));
    if (check.first_packet !== null) parts.push("packet " + count_text(check.first_packet));
    if (worst) parts.push(worst);
    return parts.join(", ");
}

function pids_text(check) {
    const pids = [...new Set(check.details.map((detail) => detail.pid).filter((pid) => pid !== null))];
    if (pids.length === 0 || (check.count > check.details.length && pids.length > 3)) return "";
    return " on " + (pids.length > 3 ? pids.length + " PIDs" : pids.map(pid_text).join(", "));
}

/// With more digits than an interval elsewhere: a limit may have been passed by little.
function value_text(value, unit) {
    if (unit === "ns") return nanoseconds_text(value);
    return value < 1 ? Number((value * 1000).toPrecision(6)) + " ms" : Number(value.toPrecision(6)) + " s";
}

function worst_text({worst, worst_unit, limit}) {
    if (worst === null || worst_unit === null) return "";
    const beside = limit === null ? "" : " (limit " + value_text(limit, worst_unit) + ")";
    return "worst " + value_text(worst, worst_unit) + beside;
}

function check_body(check) {
    const body = element("div", {class: "body"});
    if (check.why && check.result !== "not_measured") body.append(note("Not measured of it: " + check.why));
    if (check.count > 0 && check.first_packet !== null)
        body.append(
            element(
                "p",
                {},
                "First at ",
                place(check.first_s, check.first_packet),
                check.last_s === null ? "" : ", last at " + time_text(check.last_s),
                ".",
            ),
        );
    if (check.details.length > 0)
        body.append(
            table(
                "places of check " + check.id,
                [
                    {
                        title: "time",
                        value: (row) => row.t_s,
                        show: (row) => place(row.t_s, row.packet),
                        always: true,
                    },
                    {title: "PID", value: (row) => row.pid, show: (row) => pid_text(row.pid)},
                    {title: "what", value: (row) => row.text},
                ],
                check.details,
            ),
        );
    if (check.count > check.details.length && check.details.length > 0)
        body.append(note("The first " + check.details.length + " of " + count_text(check.count) + "."));
    if (body.childElementCount === 0)
        body.append(
            note(check.result === "pass" ? "Measured, and nothing found." : "Not measured: " + check.why),
        );
    return body;
}
