// Hands on a plot: dragging shows the part dragged over, a double click or Escape everything, arrows move
// (with Shift: from value to value), + and - zoom.
import {element} from "./elements.js";
import {move_times, scale_times, show_everything, show_times} from "./time_window.js";

const directions = {ArrowLeft: -1, ArrowRight: 1};
const least_drag = 5; // pixels; less is a click

const keys = {
    ArrowLeft: () => move_times(-0.2),
    ArrowRight: () => move_times(0.2),
    "+": () => scale_times(0.5),
    "=": () => scale_times(0.5),
    "-": () => scale_times(2),
    Escape: show_everything,
    Home: show_everything,
    0: show_everything,
};

/// area holds the plot and takes the keyboard's focus; point_to_next(direction) says the next values.
export function follow_gestures(area, graph, point_to_next) {
    area.addEventListener("keydown", (event) => {
        if (!keys[event.key] || event.ctrlKey || event.altKey || event.metaKey) return;
        if (event.shiftKey && directions[event.key]) point_to_next(directions[event.key]);
        else keys[event.key]();
        event.preventDefault();
    });
    area.addEventListener("dblclick", show_everything);
    follow_drags(area, graph);
}

function follow_drags(area, graph) {
    const selection = element("div", {class: "selection", hidden: true});
    area.append(selection);
    let start = null;

    const inside = (event) => {
        const plot = graph().getArea();
        const x = event.clientX - area.getBoundingClientRect().left;
        return Math.min(Math.max(x, plot.x), plot.x + plot.w);
    };
    area.addEventListener("pointerdown", (event) => {
        if (event.button !== 0) return;
        start = inside(event);
        area.setPointerCapture(event.pointerId);
    });
    area.addEventListener("pointermove", (event) => {
        if (start === null) return;
        const x = inside(event);
        selection.hidden = Math.abs(x - start) < least_drag;
        selection.style.left = Math.min(x, start) + "px";
        selection.style.width = Math.abs(x - start) + "px";
    });
    area.addEventListener("pointerup", (event) => {
        if (start === null) return;
        const [left, right] = [start, inside(event)].sort((a, b) => a - b);
        start = null;
        selection.hidden = true;
        if (right - left >= least_drag) show_times(graph().toDataXCoord(left), graph().toDataXCoord(right));
    });
    area.addEventListener("pointercancel", () => {
        start = null;
        selection.hidden = true;
    });
}
