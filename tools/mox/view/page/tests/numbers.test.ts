import assert from "node:assert/strict";
import { test } from "node:test";
import { floatText, parseNumber, tickTexts } from "../src/numbers.ts";

test("a float is shown with as few digits as mean it", () => {
    assert.equal(floatText(Math.fround(0.1)), "0.1");
    assert.equal(floatText(Math.fround(1 / 3)), "0.33333334");
    assert.equal(floatText(16777216), "1.6777216e+7");
    assert.equal(floatText(-0), "0");
});

test("small floats are shown with an exponent", () => {
    assert.equal(floatText(Math.fround(2.5e-7)), "2.5e-7");
});

test("what is no number is said", () => {
    assert.equal(floatText(NaN), "none");
    assert.equal(floatText(Infinity), "∞");
    assert.equal(floatText(-Infinity), "−∞");
});

test("ticks have equal digits, enough to tell neighbours apart", () => {
    assert.deepEqual(tickTexts([0, 0.25, 0.5]), ["0.00", "0.25", "0.50"]);
    assert.deepEqual(tickTexts([1000, 1000.1]), ["1000.00", "1000.10"]);
    assert.deepEqual(tickTexts([0, 5e-6]), ["0.0e+0", "5.0e-6"]);
});

test("a scale of one number has one text", () => {
    assert.deepEqual(tickTexts([0]), ["0"]);
    assert.deepEqual(tickTexts([42]), ["42.00"]);
});

test("typed numbers may have a comma, and nothing else is one", () => {
    assert.equal(parseNumber(" 1,5 "), 1.5);
    assert.equal(parseNumber("1e3"), 1000);
    assert.equal(parseNumber(""), null);
    assert.equal(parseNumber("high"), null);
    assert.equal(parseNumber("Infinity"), null);
});
