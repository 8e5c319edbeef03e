// The table of all recordings. Whatever comes from recordings is set as text, never as markup.
const rows_at_first = 200;

const recordings = JSON.parse(document.getElementById("data").textContent).map(
    ([path, size, mtime, message, standard, duration, rate, failed, services, checks, page]) => ({
        path, size, mtime, message, standard, duration, rate, failed, services, checks, page,
    }),
);

/// How bad: priorities one after the other; without an overview worst of all.
function badness(row) {
    if (row.message !== null) return 1e9;
    return row.failed[0] * 1e6 + row.failed[1] * 1e3 + row.failed[2];
}

function verdict(row) {
    if (row.message !== null) return row.message;
    if (row.checks.length === 0) return "no check fails";
    const count = row.checks.length === 1 ? "1 check fails: " : row.checks.length + " checks fail: ";
    return count + row.checks.join(", ");
}

const columns = [
    {title: "recording", value: (row) => row.path, show: path_cell, kind: "path"},
    {title: "verdict", value: badness, show: verdict, kind: "text", fault: (row) => badness(row) > 0},
    {title: "duration", value: (row) => row.duration, show: (row) => duration_text(row.duration), kind: "number"},
    {title: "rate", value: (row) => row.rate, show: (row) => rate_text(row.rate), kind: "number"},
    {title: "size", value: (row) => row.size, show: (row) => size_text(row.size), kind: "number"},
    {title: "standard", value: (row) => row.standard, show: (row) => row.standard, kind: "text"},
    {title: "services", value: services, show: services, kind: "text"},
    {title: "changed", value: (row) => row.mtime, show: (row) => date_text(row.mtime), kind: "number"},
];

const fails_below = (row, priority) => row.failed !== null && row.failed.slice(0, priority).some((count) => count > 0);

const verdicts = [
    {title: "all", holds: () => true},
    {title: "a check of priority 1 fails", holds: (row) => fails_below(row, 1)},
    {title: "a check of priority 1 or 2 fails", holds: (row) => fails_below(row, 2)},
    {title: "any check fails", holds: (row) => row.message === null && row.checks.length > 0},
    {title: "no check fails", holds: (row) => row.message === null && row.checks.length === 0},
    {title: "no overview", holds: (row) => row.message !== null},
];

function services(row) {
    return row.services.filter((name) => name !== "").join(", ");
}

function path_cell(row) {
    return row.page === null ? row.path : element("a", {href: row.page}, row.path);
}

/// An element with attributes; one whose name begins with "on" is a listener. Strings become text.
function element(name, attributes, ...children) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(attributes ?? {})) {
        if (value === null || value === undefined) continue;
        if (key.startsWith("on")) made.addEventListener(key.slice(2), value);
        else made.setAttribute(key, value);
    }
    made.append(...children.flat().filter((child) => child !== null && child !== undefined && child !== ""));
    return made;
}

/// "1 234 567".
function count_text(count) {
    return String(count).replace(/\B(?=(\d{3})+$)/g, " ");
}

/// "1 h 2 min 3 s", "8 min 0 s", "12.5 s".
function duration_text(seconds) {
    if (seconds === null) return "";
    if (seconds < 59.95) return seconds.toFixed(seconds < 9.995 ? 2 : 1) + " s";
    const whole = Math.round(seconds);
    const minutes = Math.floor(whole / 60);
    if (minutes < 60) return minutes + " min " + (whole % 60) + " s";
    return Math.floor(minutes / 60) + " h " + (minutes % 60) + " min " + (whole % 60) + " s";
}

/// "18.00 Mbit/s", below 0.01 of them "1.50 kbit/s".
function rate_text(bps) {
    if (bps === null) return "";
    return bps < 10000 ? (bps / 1e3).toFixed(2) + " kbit/s" : (bps / 1e6).toFixed(2) + " Mbit/s";
}

/// "1.08 GB"; 1 kB is 1000 bytes.
function size_text(bytes) {
    if (bytes < 1000) return bytes + " bytes";
    const units = ["kB", "MB", "GB", "TB", "PB", "EB"];
    let value = bytes / 1000;
    let unit = 0;
    while (value >= 999.5 && unit < units.length - 1) {
        value /= 1000;
        ++unit;
    }
    return value.toFixed(value < 9.995 ? 2 : value < 99.95 ? 1 : 0) + " " + units[unit];
}

/// "2026-11-21 18:20", in UTC.
function date_text(seconds) {
    const date = new Date(seconds * 1000);
    return Number.isNaN(date.getTime()) ? "" : date.toISOString().slice(0, 16).replace("T", " ");
}

/// What is not known comes last, in both directions.
function compared(a, b, direction) {
    const unknown = (value) => value === null || value === "";
    if (unknown(a) || unknown(b)) return Number(unknown(a)) - Number(unknown(b));
    if (typeof a === "number") return direction * (a - b);
    return direction * (a < b ? -1 : Number(a > b));
}

function sum(of) {
    return recordings.reduce((total, row) => total + (of(row) ?? 0), 0);
}

function header() {
    const counts = verdicts.slice(1).map((each) => [each.title, recordings.filter(each.holds).length]);
    const facts = [
        ["size", size_text(sum((row) => row.size))],
        ["duration", duration_text(sum((row) => row.duration))],
        ...counts.map(([title, count]) => [title, count_text(count)]),
    ];
    const title = recordings.length === 1 ? "1 recording" : count_text(recordings.length) + " recordings";
    return element(
        "header",
        {},
        element("h1", {}, title),
        element("dl", {class: "facts"}, facts.map(([name, text]) =>
            element("div", {}, element("dt", {}, name), element("dd", {}, text)))),
    );
}

/// What the filter looks through, in lower case; made once, when somebody filters.
function haystack(row) {
    row.haystack ??= [row.path, verdict(row), row.standard ?? "", ...row.services].join("\n").toLowerCase();
    return row.haystack;
}

function table_part() {
    const body = element("tbody");
    const more = element("p", {class: "more"});
    const count = element("span", {id: "count", role: "status"});
    let limit = rows_at_first;
    let order = [...recordings];

    const filter = element("input", {
        id: "filter",
        type: "search",
        placeholder: "words of name, service or verdict",
        "aria-label": "filter",
        oninput: filled_anew,
    });
    const choice = element(
        "select",
        {id: "verdict", "aria-label": "verdict", onchange: filled_anew},
        verdicts.map((each, index) => element("option", {value: index}, each.title)),
    );

    function filled_anew() {
        limit = rows_at_first;
        fill();
    }

    function fill() {
        const words = filter.value.toLowerCase().split(/\s+/).filter((word) => word !== "");
        const holds = verdicts[Number(choice.value)].holds;
        const found = order.filter((row) => holds(row) && words.every((word) => haystack(row).includes(word)));
        body.replaceChildren(...found.slice(0, limit).map(table_row));
        count.textContent = count_text(found.length) + " of " + count_text(order.length);
        more.replaceChildren();
        if (found.length <= limit) return;
        more.append(
            count_text(limit) + " of " + count_text(found.length) + " rows. ",
            element("button", {type: "button", onclick: show_more}, "show more"),
        );
    }

    function show_more() {
        limit *= 10;
        fill();
    }

    function sort_by(column, heading) {
        const up = heading.getAttribute("aria-sort") !== "ascending";
        for (const each of heading.parentElement.children) each.removeAttribute("aria-sort");
        heading.setAttribute("aria-sort", up ? "ascending" : "descending");
        order.sort((a, b) => compared(column.value(a), column.value(b), up ? 1 : -1));
        filled_anew();
    }

    const headings = columns.map((column) => {
        const heading = element("th", {scope: "col", class: column.kind});
        const sort = () => sort_by(column, heading);
        heading.append(element("button", {type: "button", class: "sort", onclick: sort}, column.title));
        return heading;
    });
    headings[0].setAttribute("aria-sort", "ascending");
    fill();
    return element(
        "section",
        {},
        element("div", {class: "controls"}, filter, choice, count),
        element("table", {}, element("thead", {}, element("tr", {}, headings)), body),
        more,
    );
}

function table_row(row) {
    return element("tr", {}, columns.map((column) => table_cell(column, row)));
}

function table_cell(column, row) {
    const classes = column.kind + (column.fault?.(row) ? " fault" : "");
    return element("td", {class: classes, "data-title": column.title}, column.show(row));
}

document.body.append(header(), element("main", {}, table_part()));
