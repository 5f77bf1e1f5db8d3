import assert from "node:assert/strict";
import { test } from "node:test";
import { MapNames, TableSize, colourAt, colourTable } from "../src/colours.ts";

test("a map begins and ends with its first and last stop", () => {
    assert.deepEqual(colourAt("viridis", 0), [0x44, 0x01, 0x54]);
    assert.deepEqual(colourAt("viridis", 1), [0xfd, 0xe7, 0x25]);
});

test("beyond its ends a map keeps their colours", () => {
    assert.deepEqual(colourAt("cividis", -3), [0x00, 0x20, 0x4d]);
    assert.deepEqual(colourAt("cividis", 7), [0xff, 0xea, 0x46]);
});

test("between stops colours are mixed", () => {
    assert.deepEqual(colourAt("grey", 0.5), [0x86, 0x86, 0x86]);
});

test("a table in five bands has five colours, from the first to the last", () => {
    const table = colourTable("viridis", 5);
    const colours = new Set<string>();
    for (let i = 0; i < TableSize; ++i) {
        colours.add(table.subarray(4 * i, 4 * i + 3).join(" "));
    }
    assert.equal([...colours][0], "68 1 84");
    assert.equal(colours.size, 5);
    assert.deepEqual([...table.subarray(-4)], [0xfd, 0xe7, 0x25, 255]);
});

test("lightness never turns back in the maps for ordered numbers", () => {
    const lightness = ([red, green, blue]: number[]): number => 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    for (const map of MapNames.filter((name) => name !== "blue-red")) {
        for (let i = 1; i <= 20; ++i) {
            assert.ok(lightness(colourAt(map, i / 20)) > lightness(colourAt(map, (i - 1) / 20)), `${map} at ${i}`);
        }
    }
});
