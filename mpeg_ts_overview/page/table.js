// Tables whose columns can be sorted, long ones shown in steps.
import {button, element} from "./elements.js";
import {count_text} from "./figures.js";

const rows_at_first = 100;

/// Columns are {title, value(row), show(row), number, rare, fault(row), always}. value is what is sorted by,
/// show what is seen: value when it is not given. A column in which no row has a value is left out, of a rare
/// event also when all counts are 0, but for those that are always shown.
export function table(label, columns, rows) {
    const says = (column) => (row) => {
        const value = column.value(row);
        return !is_unknown(value) && !(column.rare && value === 0);
    };
    const shown = columns.filter((column) => column.always || rows.some(says(column)));
    const body = element("tbody");
    const more = element("p", {class: "more"});
    let order = rows;
    let limit = rows_at_first;

    function fill() {
        body.replaceChildren(...order.slice(0, limit).map((row) => table_row(shown, row)));
        more.replaceChildren();
        if (order.length <= limit) return;
        more.append(
            count_text(limit) + " of " + count_text(order.length) + " rows. ",
            button("show more", null, () => {
                limit *= 10;
                fill();
            }),
        );
    }

    function sort_by(column, header) {
        const up = header.getAttribute("aria-sort") !== "ascending";
        for (const each of header.parentElement.children) each.removeAttribute("aria-sort");
        header.setAttribute("aria-sort", up ? "ascending" : "descending");
        order = [...rows].sort((a, b) => compared(column.value(a), column.value(b), up ? 1 : -1));
        fill();
    }

    const headers = shown.map((column) => {
        const header = element("th", {scope: "col", class: column.number ? "number" : null});
        header.append(
            element(
                "button",
                {type: "button", class: "sort", onclick: () => sort_by(column, header)},
                column.title,
            ),
        );
        return header;
    });
    fill();
    return element(
        "div",
        {class: "table"},
        element(
            "div",
            {class: "scroll", role: "region", tabindex: 0, "aria-label": label},
            element("table", {}, element("thead", {}, element("tr", {}, headers)), body),
        ),
        more,
    );
}

function table_row(columns, row) {
    return element(
        "tr",
        {},
        columns.map((column) => {
            const shown = column.show ? column.show(row) : column.value(row);
            const classes = (column.number ? "number " : "") + (column.fault?.(row) ? "fault" : "");
            return element(
                "td",
                {class: classes || null},
                shown === null || shown === undefined ? "" : shown instanceof Node ? shown : String(shown),
            );
        }),
    );
}

function is_unknown(value) {
    return value === null || value === undefined || value === "";
}

/// What is not known comes last, in both directions.
function compared(a, b, direction) {
    if (is_unknown(a) || is_unknown(b)) return Number(is_unknown(a)) - Number(is_unknown(b));
    if (typeof a === "number" && typeof b === "number") return direction * (a - b);
    return direction * String(a).localeCompare(String(b));
}
