// Elements of the page. Children that are strings become text, never markup.
import {count_text, time_text} from "./figures.js";

/// An element with attributes; one whose name begins with "on" is a listener.
export function element(name, attributes, ...children) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(attributes ?? {})) {
        if (value === null || value === undefined || value === false) continue;
        if (key.startsWith("on")) made.addEventListener(key.slice(2), value);
        else made.setAttribute(key, value === true ? "" : value);
    }
    made.append(...children.flat().filter((child) => child !== null && child !== undefined && child !== ""));
    return made;
}

export function button(text, pressed, act) {
    return element("button", {type: "button", "aria-pressed": pressed, onclick: act}, text);
}

/// The time, and the packet beside it.
export function place(seconds, packet) {
    const number =
        packet === null || packet === undefined
            ? ""
            : element("span", {class: "packet"}, "packet " + count_text(packet));
    return element("span", {class: "place"}, time_text(seconds), number && " ", number);
}

/// A box of the page with its heading and what it says in small.
export function part(id, title, summary, ...children) {
    return element(
        "section",
        {id, "aria-labelledby": id + "_title"},
        element("h2", {id: id + "_title"}, title, element("span", {class: "summary"}, summary)),
        ...children,
    );
}

export function note(text) {
    return element("p", {class: "note"}, text);
}

/// Children that are made when the box is opened for the first time.
export function lazy_details(attributes, summary, make_children) {
    const made = element("details", attributes, element("summary", {}, summary));
    made.addEventListener("toggle", () => {
        if (made.open && made.childElementCount === 1) made.append(...make_children());
    });
    return made;
}
