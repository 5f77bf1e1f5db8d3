type Colour = [number, number, number];

/**
 * Stops at equal distances, between which colours are mixed. Viridis, inferno and cividis (for readers who confuse red
 * and green as well) are from matplotlib and viridisLite, given to the public domain; red-blue is from ColorBrewer,
 * Apache-2.0.
 */
const Stops = {
    viridis: "440154 482878 3e4a89 31688e 26828e 1f9e89 35b779 6dcd59 b4de2c fde725",
    cividis: "00204d 00336f 39486b 575c6d 707173 8a8779 a69d75 c4b56c e4cf5b ffea46",
    inferno: "000004 1b0c42 4b0c6b 781c6d a52c60 cf4446 ed6925 fb9a06 f7d03c fcffa4",
    "blue-red": "053061 2166ac 4393c3 92c5de d1e5f0 f7f7f7 fddbc7 f4a582 d6604d b2182b 67001f",
    grey: "1a1a1a f2f2f2",
};

export type MapName = keyof typeof Stops;
export const MapNames = Object.keys(Stops) as MapName[];
export const TableSize = 256;

function parse(hex: string): Colour {
    return [0, 2, 4].map((at) => parseInt(hex.slice(at, at + 2), 16)) as Colour;
}

/** The colour at a place from 0 to 1, with parts from 0 to 255. */
export function colourAt(map: MapName, place: number): Colour {
    const stops = Stops[map].split(" ").map(parse);
    const scaled = Math.min(1, Math.max(0, place)) * (stops.length - 1);
    const first = Math.min(Math.floor(scaled), stops.length - 2);
    const part = scaled - first;
    return [0, 1, 2].map((i) => Math.round(stops[first][i] * (1 - part) + stops[first + 1][i] * part)) as Colour;
}

/** A table of colours, red, green, blue and opacity from 0 to 255; in as many bands as wanted, 0 for none. */
export function colourTable(map: MapName, bands: number): Uint8Array<ArrayBuffer> {
    const table = new Uint8Array(TableSize * 4);
    for (let i = 0; i < TableSize; ++i) {
        table.set([...colourAt(map, bandPlace((i + 0.5) / TableSize, bands)), 255], i * 4);
    }
    return table;
}

/** The place from which a band has its colour: the ends for the first and last. */
function bandPlace(place: number, bands: number): number {
    return bands < 2 ? place : Math.min(bands - 1, Math.floor(place * bands)) / (bands - 1);
}
