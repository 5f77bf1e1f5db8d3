import { MapNames, type MapName } from "./colours.ts";

/** All that decides about the picture, as far as a link carries it. */
export interface ViewState {
    field: number;
    column: number;
    /** Place in the model's list of steps. */
    step: number;
    range: "step" | "all" | [number, number];
    map: MapName;
    bands: number;
    extremes: boolean;
    /** The field that moves the nodes; -1 for none. */
    mover: number;
    /** Null for a scale that is chosen by the size of the model. */
    factor: number | null;
    edges: boolean;
    outline: boolean;
    cut: "" | "x" | "y" | "z";
    cutPlace: number;
    cutFlip: boolean;
    hidden: number[];
    theme: "" | "light" | "dark";
    /** Where the camera is, as the direction from the target, the target, and half the height that is seen. */
    camera: number[];
}

export const Initial: ViewState = {
    field: 0,
    column: 0,
    step: 0,
    range: "step",
    map: "viridis",
    bands: 0,
    extremes: false,
    mover: -1,
    factor: null,
    edges: true,
    outline: false,
    cut: "",
    cutPlace: 0.5,
    cutFlip: false,
    hidden: [],
    theme: "",
    camera: [],
};

const CameraNumbers = 7;

function numbersText(numbers: number[]): string {
    return numbers.map((number) => Number(number.toPrecision(6))).join(",");
}

/** What differs from another state, as the fragment of an address. */
export function encodeState(state: ViewState, base: ViewState): string {
    const parts: string[] = [];
    for (const key of Object.keys(state) as (keyof ViewState)[]) {
        const text = textOf(state[key]);
        if (text !== textOf(base[key])) {
            parts.push(`${key}=${encodeURIComponent(text)}`);
        }
    }
    return parts.join("&");
}

function textOf(value: ViewState[keyof ViewState]): string {
    if (Array.isArray(value)) {
        return numbersText(value);
    }
    return value === null ? "auto" : typeof value === "boolean" ? (value ? "1" : "0") : String(value);
}

/** The state of a fragment. What is missing or makes no sense there is taken from the base. */
export function decodeState(fragment: string, base: ViewState): ViewState {
    const given = new URLSearchParams(fragment.replace(/^#/, ""));
    const state = { ...base };
    const number = (key: "field" | "column" | "step" | "bands" | "mover", least: number): void => {
        const value = Number(given.get(key) ?? NaN);
        state[key] = Number.isInteger(value) && value >= least ? value : base[key];
    };
    number("field", -1);
    number("column", 0);
    number("step", 0);
    number("bands", 0);
    number("mover", -1);
    for (const key of ["extremes", "edges", "outline", "cutFlip"] as const) {
        state[key] = given.has(key) ? given.get(key) === "1" : base[key];
    }
    state.range = decodeRange(given.get("range")) ?? base.range;
    state.map = MapNames.find((name) => name === given.get("map")) ?? base.map;
    state.cut = (["", "x", "y", "z"] as const).find((axis) => axis === given.get("cut")) ?? base.cut;
    state.theme = (["light", "dark"] as const).find((theme) => theme === given.get("theme")) ?? base.theme;
    state.factor = given.get("factor") === "auto" ? null : (finite(given.get("factor")) ?? base.factor);
    state.cutPlace = Math.min(1, Math.max(0, finite(given.get("cutPlace")) ?? base.cutPlace));
    state.hidden = list(given.get("hidden"))?.filter((part) => Number.isInteger(part) && part >= 0) ?? base.hidden;
    const camera = list(given.get("camera"));
    state.camera = camera?.length === CameraNumbers ? camera : base.camera;
    return state;
}

function decodeRange(text: string | null): ViewState["range"] | null {
    if (text === "step" || text === "all") {
        return text;
    }
    const limits = list(text);
    return limits?.length === 2 && limits[0] < limits[1] ? [limits[0], limits[1]] : null;
}

function finite(text: string | null): number | null {
    const number = Number(text ?? NaN);
    return text !== "" && Number.isFinite(number) ? number : null;
}

function list(text: string | null): number[] | null {
    const numbers = (text ?? "").split(",").map(finite);
    return text && numbers.every((number) => number !== null) ? numbers : null;
}
