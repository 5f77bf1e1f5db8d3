/** The shortest text that means the same number to a float. */
export function floatText(number: number): string {
    if (!Number.isFinite(number)) {
        return Number.isNaN(number) ? "none" : number > 0 ? "∞" : "−∞";
    }
    for (let digits = 1; digits < 9; ++digits) {
        const short = Number(number.toPrecision(digits));
        if (Math.fround(short) === Math.fround(number)) {
            return plain(short);
        }
    }
    return plain(Number(number.toPrecision(9)));
}

function plain(number: number): string {
    const size = Math.abs(number);
    return size !== 0 && (size < 1e-4 || size >= 1e7) ? number.toExponential() : String(number);
}

/** Texts for numbers of one scale, all with the same digits after the point. */
export function tickTexts(numbers: number[]): string[] {
    const low = Math.min(...numbers);
    const high = Math.max(...numbers);
    const size = Math.max(Math.abs(low), Math.abs(high));
    if (size === 0) {
        return numbers.map(() => "0");
    }
    const step = (high - low) / Math.max(1, numbers.length - 1);
    const exponent = Math.floor(Math.log10(size));
    if (exponent < -3 || exponent >= 6) {
        const digits = step > 0 ? Math.ceil(exponent - Math.log10(step)) + 1 : 3;
        return numbers.map((number) => number.toExponential(Math.min(6, Math.max(1, digits))));
    }
    const digits = step > 0 ? Math.ceil(-Math.log10(step)) + 1 : 3 - exponent;
    return numbers.map((number) => number.toFixed(Math.min(8, Math.max(0, digits))));
}

/** A number that a user typed; null if it is none. */
export function parseNumber(text: string): number | null {
    const number = Number(text.trim().replace(",", "."));
    return text.trim() !== "" && Number.isFinite(number) ? number : null;
}
