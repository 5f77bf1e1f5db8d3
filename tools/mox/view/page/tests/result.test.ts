import assert from "node:assert/strict";
import { test } from "node:test";
import type { Field } from "../src/description.ts";
import { Result, vonMises } from "../src/result.ts";

const vector: Field = {
    name: "Displacement",
    place: "nodes",
    columns: ["x", "y", "z"],
    derived: "Magnitude",
    movesNodes: true,
    steps: [0],
};

/** Two rows; the range of each of the four columns is (column, column + 10), at item 1 and inside. */
function block(): ArrayBuffer {
    const buffer = new ArrayBuffer(4 * 24 + 2 * 3 * 4);
    const view = new DataView(buffer);
    for (let column = 0; column < 4; ++column) {
        view.setFloat32(column * 24, column, true);
        view.setFloat32(column * 24 + 4, column + 10, true);
        view.setUint32(column * 24 + 8, 1, true);
        view.setUint32(column * 24 + 12, 77, true);
        view.setUint32(column * 24 + 16, 0xffffffff, true);
        view.setUint32(column * 24 + 20, 88, true);
    }
    [3, 4, 0, 1, 2, 2].forEach((number, i) => view.setFloat32(96 + 4 * i, number, true));
    return buffer;
}

test("numbers stand row by row after the ranges", () => {
    const result = new Result(vector, block(), 2);
    assert.equal(result.number(0, 1), 4);
    assert.equal(result.number(1, 2), 2);
});

test("the magnitude follows the columns", () => {
    const result = new Result(vector, block(), 2);
    assert.equal(result.number(0, 3), 5);
    assert.equal(result.number(1, 3), 3);
});

test("a range has its ends with their items, or inside the model", () => {
    const result = new Result(vector, block(), 2);
    assert.deepEqual(result.least(2), { number: 2, item: 1, id: 77 });
    assert.deepEqual(result.greatest(2), { number: 12, item: null, id: 88 });
});

test("a block of another length is refused", () => {
    assert.throws(() => new Result(vector, block(), 3), /damaged/);
});

test("von Mises of a tension is the tension, of a shear root three times the shear", () => {
    assert.equal(vonMises([100, 0, 0, 0, 0, 0]), 100);
    assert.ok(Math.abs(vonMises([0, 0, 0, 0, 0, 100]) - 173.20508075688772) < 1e-9);
    assert.equal(vonMises([-50, -50, -50, 0, 0, 0]), 0);
});
