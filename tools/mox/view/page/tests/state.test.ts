import assert from "node:assert/strict";
import { test } from "node:test";
import { Initial, type ViewState, decodeState, encodeState } from "../src/state.ts";

const changed: ViewState = {
    field: 2,
    column: 3,
    step: 4,
    range: [-1.5, 2.25],
    map: "cividis",
    bands: 8,
    extremes: true,
    mover: 1,
    factor: 12.5,
    edges: false,
    outline: true,
    cut: "y",
    cutPlace: 0.25,
    cutFlip: true,
    hidden: [0, 7],
    theme: "dark",
    camera: [0, 0, 1, 0.5, 0, 0, 2],
};

test("a state that is the usual one needs no fragment", () => {
    assert.equal(encodeState(Initial, Initial), "");
});

test("every member of a state comes back from its fragment", () => {
    assert.deepEqual(decodeState(`#${encodeState(changed, Initial)}`, Initial), changed);
});

test("a fragment holds what differs alone", () => {
    assert.equal(encodeState({ ...Initial, step: 3, range: "all" }, Initial), "step=3&range=all");
});

test("a scale that the base fixes can become automatic", () => {
    const base = { ...Initial, factor: 3 };
    assert.equal(decodeState(encodeState(Initial, base), base).factor, null);
});

test("nonsense in a fragment changes nothing", () => {
    const nonsense =
        "field=x&column=-1&step=1.5&range=2,1&map=<script>&bands=NaN&factor=&cut=w&cutPlace=1e999&hidden=a&camera=1,2";
    assert.deepEqual(decodeState(nonsense, Initial), Initial);
});
