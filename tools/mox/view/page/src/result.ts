import { type Field, columnCount } from "./description.ts";

/** An end of a range. */
export interface Extreme {
    number: number;
    /** Place among the nodes or elements that are shown; null if it is inside the model. */
    item: number | null;
    id: number;
}

const HeaderBytes = 24;
const Nowhere = 0xffffffff;

/** The numbers of a field in a step. */
export class Result {
    private readonly view: DataView;
    private readonly numbers: Float32Array;
    private readonly width: number;

    constructor(readonly field: Field, block: ArrayBuffer, items: number) {
        this.width = field.columns.length;
        const header = columnCount(field) * HeaderBytes;
        if (block.byteLength !== header + items * this.width * 4) {
            throw new Error("a block of results is damaged");
        }
        this.view = new DataView(block, 0, header);
        this.numbers = new Float32Array(block, header);
    }

    least(column: number): Extreme {
        return this.extreme(column, 0);
    }

    greatest(column: number): Extreme {
        return this.extreme(column, 1);
    }

    number(item: number, column: number): number {
        const start = item * this.width;
        if (column < this.width) {
            return this.numbers[start + column];
        }
        const row = this.numbers.subarray(start, start + this.width);
        return this.field.derived === "von Mises" ? vonMises(row) : Math.hypot(row[0], row[1], row[2]);
    }

    private extreme(column: number, end: number): Extreme {
        const start = column * HeaderBytes;
        const item = this.view.getUint32(start + 8 + 8 * end, true);
        return {
            number: this.view.getFloat32(start + 4 * end, true),
            item: item === Nowhere ? null : item,
            id: this.view.getUint32(start + 12 + 8 * end, true),
        };
    }
}

/** Of the stresses xx, yy, zz, xy, yz, zx. */
export function vonMises(s: ArrayLike<number>): number {
    const square = (number: number): number => number * number;
    return Math.sqrt(
        (square(s[0] - s[1]) + square(s[1] - s[2]) + square(s[2] - s[0])) / 2 +
            3 * (square(s[3]) + square(s[4]) + square(s[5])),
    );
}
