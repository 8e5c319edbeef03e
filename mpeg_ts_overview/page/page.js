// The page: each part when there is something to say in it.
import {checks_part} from "./checks.js";
import {clocks_part} from "./clocks.js";
import {cues_part} from "./cues.js";
import {element, note, part} from "./elements.js";
import {faults_part} from "./faults.js";
import {count_text} from "./figures.js";
import {guide_part} from "./guide.js";
import {draw_plots} from "./plot.js";
import {programs_part} from "./programs.js";
import {rates_part} from "./rates.js";
import {recording_header} from "./recording.js";
import {tables_part} from "./tables.js";
import {teletext_part} from "./teletext.js";
import {set_duration} from "./time_window.js";
import {transcript_part} from "./transcript.js";

/// What the recording had and the page does not show.
function left_out_part({limits_reached, cuts}) {
    const texts = [
        ...cuts,
        ...limits_reached.map(({what, limit, dropped}) =>
            limit === null
                ? what
                : what + ": " + count_text(dropped) + " left out (limit " + count_text(limit) + ")",
        ),
    ];
    if (texts.length === 0) return null;
    return part(
        "left_out",
        "Left out",
        "what the recording has and this page does not show",
        element(
            "ul",
            {},
            texts.map((text) => element("li", {}, text)),
        ),
    );
}

function build(found) {
    const parts = [
        checks_part,
        programs_part,
        rates_part,
        clocks_part,
        faults_part,
        tables_part,
        guide_part,
        cues_part,
        teletext_part,
        transcript_part,
        left_out_part,
    ]
        .map((make) => make(found))
        .filter((made) => made !== null);
    const links = parts.map((made) =>
        element("a", {href: "#" + made.id}, made.querySelector("h2").firstChild.data),
    );
    document.body.replaceChildren(
        recording_header(found),
        element("nav", {"aria-label": "parts"}, links),
        element("main", {}, parts),
    );
    draw_plots();
}

try {
    const found = JSON.parse(document.getElementById("data").textContent);
    set_duration(found.recording.duration_s);
    build(found);
} catch (error) {
    document.body.replaceChildren(note("This page is damaged: " + error.message));
}
