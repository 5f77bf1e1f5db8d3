import { TableSize } from "./colours.ts";
import { element } from "./dom.ts";
import { tickTexts } from "./numbers.ts";

/** What the legend says. */
export interface LegendContent {
    name: string;
    /** Lines below the name: where the numbers are, the step, which range. */
    details: string[];
    table: Uint8Array<ArrayBuffer>;
    bands: number;
    /** NaN if there are no numbers at all. */
    low: number;
    high: number;
    /** Whether there are numbers below or above the range. */
    below: boolean;
    above: boolean;
    /** Whether something has no number. */
    hasGaps: boolean;
}

const Ticks = 6;

/** The numbers beside the scale, from the top down, with their heights from 0 at the top to 1. */
export function ticksOf(content: LegendContent): { text: string; height: number }[] {
    const { low, high, bands } = content;
    if (Number.isNaN(low)) {
        return [];
    }
    if (!(high > low)) {
        return [{ text: tickTexts([low])[0], height: 0.5 }];
    }
    const count = bands > 1 && bands <= 12 ? bands : Ticks;
    const numbers = Array.from({ length: count + 1 }, (_, i) => high - ((high - low) * i) / count);
    const texts = tickTexts(numbers);
    return numbers.map((_, i) => {
        const isFirst = i === 0 && content.above;
        const isLast = i === count && content.below;
        return { text: texts[i] + (isFirst ? " ▲" : isLast ? " ▼" : ""), height: i / count };
    });
}

/** Fills the legend of the page. */
export function showLegend(place: HTMLElement, content: LegendContent | null): void {
    place.replaceChildren();
    if (content === null) {
        return;
    }
    place.append(element("div", content.name, "name"));
    for (const detail of content.details) {
        place.append(element("div", detail, "detail"));
    }
    const scale = element("div", "", "scale");
    const canvas = element("canvas");
    canvas.width = 1;
    canvas.height = TableSize;
    canvas.getContext("2d")?.putImageData(scaleImage(content.table), 0, 0);
    const ticks = element("div", "", "ticks");
    for (const tick of ticksOf(content)) {
        const label = element("span", tick.text);
        label.style.top = `${tick.height * 100}%`;
        ticks.append(label);
    }
    scale.append(canvas, ticks);
    place.append(scale);
    if (content.hasGaps) {
        const none = element("div", "", "none");
        none.append(element("i"), element("span", "no number"));
        place.append(none);
    }
}

function scaleImage(table: Uint8Array): ImageData {
    const image = new ImageData(1, TableSize);
    for (let i = 0; i < TableSize; ++i) {
        image.data.set(table.subarray(i * 4, i * 4 + 4), (TableSize - 1 - i) * 4);
    }
    return image;
}

/** Draws a legend into a picture, from its top right corner. */
export function drawLegend(to: CanvasRenderingContext2D, content: LegendContent, size: number, isDark: boolean): void {
    const text = isDark ? "#e6e9ec" : "#1b1f24";
    const font = (weight: string): string => `${weight} ${14 * size}px system-ui, "DejaVu Sans", sans-serif`;
    const width = 200 * size;
    const lines = [content.name, ...content.details].flatMap((line, i) => {
        to.font = font(i === 0 ? "600" : "400");
        return wrapped(to, line, width - 24 * size).map((part) => ({ part, font: to.font }));
    });
    const height = (lines.length * 19 + 270 + (content.hasGaps ? 24 : 0)) * size;
    const left = to.canvas.width - width - 12 * size;
    to.fillStyle = isDark ? "#1f2429" : "#ffffff";
    to.fillRect(left, 12 * size, width, height);
    to.fillStyle = text;
    to.textBaseline = "middle";
    let top = 30 * size;
    for (const line of lines) {
        to.font = line.font;
        to.fillText(line.part, left + 12 * size, top);
        top += 19 * size;
    }
    const scale = 220 * size;
    for (let i = 0; i < TableSize; ++i) {
        const [red, green, blue] = content.table.subarray(i * 4, i * 4 + 3);
        to.fillStyle = `rgb(${red} ${green} ${blue})`;
        to.fillRect(left + 12 * size, top + scale * (1 - (i + 1) / TableSize), 16 * size, scale / TableSize + 1);
    }
    to.fillStyle = text;
    to.font = font("400");
    for (const tick of ticksOf(content)) {
        to.fillText(tick.text, left + 36 * size, top + scale * tick.height);
    }
    if (content.hasGaps) {
        to.fillText("no number", left + 36 * size, top + scale + 24 * size);
        to.fillStyle = "#9a9a9a";
        to.fillRect(left + 12 * size, top + scale + 18 * size, 16 * size, 12 * size);
    }
}

/** In lines that fit, broken at spaces, and within words that are too long. */
function wrapped(to: CanvasRenderingContext2D, line: string, width: number): string[] {
    const lines = [""];
    for (const word of line.split(/(?<= )/)) {
        const fits = (text: string): boolean => to.measureText(text.trimEnd()).width <= width;
        if (fits(lines[lines.length - 1] + word)) {
            lines[lines.length - 1] += word;
            continue;
        }
        lines.push("");
        for (const letter of word) {
            if (!fits(lines[lines.length - 1] + letter)) {
                lines.push("");
            }
            lines[lines.length - 1] += letter;
        }
    }
    return lines.filter((text) => text !== "");
}
