// The programme guide: for each service what is on, what follows, then the schedule by day.
import {element, lazy_details, note, part} from "./elements.js";
import {counted_text, hex_text, planned_text, rows_text, time_text, utc_text} from "./figures.js";

const events_open = 40; // of so many events or fewer all are shown at once

export function guide_part(found) {
    const {events} = found.guide;
    if (events.length === 0) return null;
    const names = new Map(found.programs.map((program) => [program.number, program.service_name]));
    const services = new Map();
    for (const event of events) {
        if (!services.has(event.service)) services.set(event.service, []);
        services.get(event.service).push(event);
    }
    const others = found.guide.others
        ? ", events of other streams came " + counted_text(found.guide.others, "time", "times")
        : "";
    const boxes = [...services].map(([service, its]) =>
        service_box(names.get(service) || "service " + hex_text(service, 4), its),
    );
    if (events.length <= events_open) for (const box of boxes) box.open = true;
    return part(
        "guide",
        "Guide",
        rows_text(found, "events of the guide", events.length, "event", "events") +
            " of " +
            counted_text(services.size, "service", "services") +
            others,
        note("Hours are UTC."),
        boxes,
    );
}

function service_box(name, events) {
    const {present} = parted(events);
    const summary = [
        element("b", {}, name),
        present ? element("span", {class: "now"}, present.title || "untitled") : null,
        element("span", {class: "summary"}, counted_text(events.length, "event", "events")),
    ];
    return lazy_details({class: "service"}, summary, () => service_events(events));
}

/// The event that was the present one last, whatever told of it since; of several that were told as
/// following the last; all others in order.
function parted(events) {
    const sorted = [...events].sort((a, b) => (a.start_utc ?? "~").localeCompare(b.start_utc ?? "~"));
    const from = (event) => event?.present_from_s ?? -1;
    const was_present = (event) => event.source === "present" || from(event) >= 0;
    const later = (best, event) => (from(best) <= from(event) ? event : best);
    const present = sorted.filter(was_present).reduce(later, undefined);
    const following = sorted.findLast((event) => event.source === "following" && event !== present);
    return {present, following, others: sorted.filter((event) => event !== present && event !== following)};
}

function service_events(events) {
    const {present, following, others} = parted(events);
    const boxes = [];
    const add = (title, its) =>
        boxes.push(element("h4", {}, title), element("ol", {class: "events"}, its.map(event_row)));
    if (present) add("present", [present]);
    if (following) add("following", [following]);
    const days = new Map();
    for (const event of others) {
        const day = event.start_utc ? event.start_utc.slice(0, 10) : "no date";
        if (!days.has(day)) days.set(day, []);
        days.get(day).push(event);
    }
    for (const [day, its] of days) add("schedule " + day, its);
    return boxes;
}

function event_row(event) {
    const told = [
        planned_text(event.duration_s),
        event.language,
        event.present_from_s === undefined ? "" : "on air from " + time_text(event.present_from_s),
    ];
    return element(
        "li",
        {},
        element(
            "time",
            {title: utc_text(event.start_utc)},
            event.start_utc ? event.start_utc.slice(11, 16) : "\u2013",
        ),
        element(
            "div",
            {},
            element("span", {class: "event_title"}, event.title || "untitled"),
            element("span", {class: "summary"}, told.filter(Boolean).join(", ")),
            event.text ? element("p", {}, event.text) : null,
        ),
    );
}
