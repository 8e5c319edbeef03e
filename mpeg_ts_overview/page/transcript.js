// The analyser's words for each distinct section, with a filter.
import {button, element, lazy_details, note, part, place} from "./elements.js";
import {count_text, counted_text, hex_text, pid_text, rows_text, time_text} from "./figures.js";

const entries_at_first = 100;

export function transcript_part(found) {
    const {transcript} = found;
    if (transcript.length === 0) return null;
    const filter = element("input", {type: "search", id: "filter", autocomplete: "off", spellcheck: "false"});
    const told = element("span", {class: "summary", role: "status"});
    const list = element("div", {class: "entries"});
    const texts = transcript.map((entry) =>
        [pid_text(entry.pid), entry.heading, ...entry.lines].join("\n").toLowerCase(),
    );

    function show(limit) {
        const words = filter.value.toLowerCase().split(/\s+/).filter(Boolean);
        const fitting = transcript.filter((_, number) => words.every((word) => texts[number].includes(word)));
        told.textContent = counted_text(fitting.length, "section", "sections");
        list.replaceChildren(...fitting.slice(0, limit).map((entry) => entry_box(entry, words)));
        if (fitting.length > limit) list.append(button("show more", null, () => show(limit * 10)));
    }
    filter.addEventListener("input", () => show(entries_at_first));
    show(entries_at_first);
    return part(
        "transcript",
        "Transcript",
        rows_text(
            found,
            "sections of the transcript",
            transcript.length,
            "distinct section",
            "distinct sections",
        ),
        note(
            "The analyser collects PMTs anew at each PAT, so its counts may be lower than those of " +
                "the tables.",
        ),
        element("p", {class: "controls"}, element("label", {}, "filter ", filter), told),
        list,
    );
}

function repeats_text({count, last_s}) {
    if (count < 2) return "";
    return count_text(count) + " times" + (last_s === null ? "" : ", last at " + time_text(last_s));
}

function entry_box(entry, words) {
    const summary = [
        place(entry.first_s, entry.first_packet),
        element("span", {class: "id"}, pid_text(entry.pid)),
        element("span", {class: "id"}, hex_text(entry.table_id, 2)),
        element("span", {class: "heading"}, entry.heading),
        element("span", {class: "summary"}, repeats_text(entry)),
    ];
    return lazy_details({class: "entry"}, summary, () => [
        element(
            "pre",
            {},
            entry.lines.map((line) => {
                const text = line + "\n";
                const found = words.some((word) => text.toLowerCase().includes(word));
                const fault = line.trimStart().startsWith("!!");
                return found || fault
                    ? element(found ? "mark" : "span", {class: fault ? "fault" : null}, text)
                    : text;
            }),
        ),
    ]);
}
