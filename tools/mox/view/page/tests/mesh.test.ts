import assert from "node:assert/strict";
import { test } from "node:test";
import { type Description, nearestStep, stepLabel } from "../src/description.ts";
import { ticksOf } from "../src/legend.ts";
import { elementsOf, partOf } from "../src/mesh.ts";

const part = (end: number): Description["parts"][number] => ({ name: "", elements: 0, dimension: 3, end });
const description = { parts: [part(2), part(2), part(5)] } as Description;

test("elements belong to the part before whose end they stand", () => {
    assert.deepEqual([0, 1, 2, 4].map((element) => partOf(description, element)), [0, 0, 2, 2]);
});

test("a part of which nothing is seen has no elements", () => {
    assert.deepEqual([0, 1, 2].map((place) => elementsOf(description, place)), [[0, 2], [2, 2], [2, 5]]);
});

test("the nearest step is taken where a result lacks the wanted one", () => {
    const field = { steps: [0, 4, 9] } as Description["fields"][number];
    assert.equal(nearestStep(field, 5), 1);
    assert.equal(nearestStep(field, 9), 2);
    assert.equal(nearestStep({ ...field, steps: [null] }, 9), 0);
});

test("a step is shown with what is known of it", () => {
    const step = { name: "Mode 1", time: null, mode: 1, frequency: 84.5, vibration: true };
    assert.equal(stepLabel(step), "Mode 1 (mode 1, frequency 84.5)");
    assert.equal(stepLabel({ ...step, mode: null, frequency: null }), "Mode 1");
    assert.equal(stepLabel({ ...step, mode: null, time: 84.5 }), "Mode 1 (frequency 84.5)");
    assert.equal(stepLabel({ ...step, mode: null, frequency: null, time: 0.100000001490116 }), "Mode 1 (time 0.1)");
});

test("a legend of one number has one tick, in the middle", () => {
    const content = {
        name: "", details: [], table: new Uint8Array(), bands: 0, low: 3, high: 3, below: false, above: false,
        hasGaps: false,
    };
    assert.deepEqual(ticksOf(content), [{ text: "3.000", height: 0.5 }]);
    assert.deepEqual(ticksOf({ ...content, low: NaN, high: NaN }), [], "and none without numbers");
});

test("a legend says where numbers are beyond its range", () => {
    const content = {
        name: "", details: [], table: new Uint8Array(), bands: 2, low: 0, high: 1, below: true, above: true,
        hasGaps: false,
    };
    assert.deepEqual(ticksOf(content).map((tick) => tick.text), ["1.00 ▲", "0.50", "0.00 ▼"]);
});
