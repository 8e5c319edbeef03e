// Teletext: a page is chosen by its number, as on a receiver.
import {button, element, part} from "./elements.js";
import {counted_text, pid_text, rows_text, time_text} from "./figures.js";

const screen_columns = 40;
const screen_lines = 25;

export function teletext_part(found) {
    const {teletext} = found;
    if (teletext.length === 0) return null;
    const pages = [...teletext].sort(
        (a, b) => a.pid - b.pid || a.page.localeCompare(b.page) || a.subcode - b.subcode,
    );
    const pids = [...new Set(pages.map((page) => page.pid))];
    const state = {pages, shown: pages[0]};
    const screen = element("pre", {class: "teletext_screen", tabindex: 0, "aria-label": "teletext page"});
    const told = element("p", {class: "summary", role: "status"});
    const number = element("input", {
        id: "teletext_page",
        size: 4,
        maxlength: 3,
        autocomplete: "off",
        spellcheck: "false",
    });
    const pid = element(
        "select",
        {id: "teletext_pid"},
        pids.map((each) => element("option", {value: each}, pid_text(each))),
    );

    function show(page) {
        state.shown = page;
        number.value = page.page;
        pid.value = page.pid;
        screen.textContent = screen_text(page.rows);
        told.textContent = page_text(state);
    }
    const step = (direction) => {
        const next = pages[pages.indexOf(state.shown) + direction];
        if (next) show(next);
    };
    number.addEventListener("input", () => {
        if (number.value.length < 3) return;
        const wanted = pages.find(
            (page) => page.pid === Number(pid.value) && page.page === number.value.toUpperCase(),
        );
        if (wanted) show(wanted);
        else told.textContent = "no page " + number.value;
    });
    pid.addEventListener("change", () => show(pages.find((page) => page.pid === Number(pid.value))));
    screen.addEventListener("keydown", (event) => {
        if (event.key === "ArrowLeft") step(-1);
        else if (event.key === "ArrowRight") step(1);
    });
    show(pages[0]);
    return part(
        "teletext",
        "Teletext",
        rows_text(found, "teletext pages", pages.length, "page", "pages"),
        element(
            "p",
            {class: "controls"},
            pids.length > 1 ? element("label", {}, "PID ", pid) : null,
            element("label", {}, "page ", number),
            button("\u2190 before", null, () => step(-1)),
            button("next \u2192", null, () => step(1)),
        ),
        screen,
        told,
    );
}

/// 25 lines of 40 characters, whatever the rows are.
function screen_text(rows) {
    const line = (number) =>
        [...(rows[number] ?? "")].slice(0, screen_columns).join("").padEnd(screen_columns);
    return Array.from({length: screen_lines}, (_, number) => line(number)).join("\n");
}

function page_text({pages, shown}) {
    const same = pages.filter((page) => page.pid === shown.pid && page.page === shown.page);
    const of = same.length > 1 ? ", subpage " + (same.indexOf(shown) + 1) + " of " + same.length : "";
    const from =
        shown.first_s === null
            ? ""
            : ", first " + time_text(shown.first_s) + ", last " + time_text(shown.last_s);
    return "page " + shown.page + of + ", received " + counted_text(shown.count, "time", "times") + from;
}
