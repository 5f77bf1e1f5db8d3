/** What the program says about the model; ../README.md describes it. Names in it are shown as text only. */
export interface Description {
    version: number;
    name: string;
    nodes: number;
    elements: number;
    centre: [number, number, number];
    extent: [number, number, number];
    tree: TreeNode[];
    parts: Part[];
    steps: Step[];
    fields: Field[];
    notes: string[];
    /** By the names of blocks: the range of each column and of the derived number. */
    ranges?: Record<string, Range[] | undefined>;
    /** Whether blocks come from the program, which still runs. */
    served?: boolean;
}

export type Range = [number | null, number | null];

export interface TreeNode {
    name: string;
    parent: number | null;
    part?: number;
}

export interface Part {
    name: string;
    elements: number;
    dimension: number;
    /** Where its elements end among those that are shown. */
    end: number;
}

export interface Step {
    name: string;
    time: number | null;
    mode: number | null;
    frequency: number | null;
    vibration: boolean;
}

export interface Field {
    name: string;
    place: "nodes" | "elements";
    columns: string[];
    /** The name of a number made of all columns; empty if there is none. */
    derived: string;
    movesNodes: boolean;
    /** Places in the list of steps; one null if it has no steps. */
    steps: (number | null)[];
}

export function columnCount(field: Field): number {
    return field.columns.length + (field.derived === "" ? 0 : 1);
}

export function columnLabel(field: Field, column: number): string {
    return column < field.columns.length ? field.columns[column] : field.derived;
}

export function blockName(field: number, step: number | null): string {
    return step === null ? `result-${field}` : `result-${field}-${step}`;
}

/** The step of a field that is nearest to a wanted one: its place in the field's own list. */
export function nearestStep(field: Field, wanted: number): number {
    let best = 0;
    field.steps.forEach((step, place) => {
        const distance = (other: number | null): number => (other === null ? 0 : Math.abs(other - wanted));
        if (distance(step) < distance(field.steps[best])) {
            best = place;
        }
    });
    return best;
}

/** "Step 2", and its time or frequency. */
export function stepLabel(step: Step): string {
    const marks: string[] = [];
    if (step.mode !== null) {
        marks.push(`mode ${step.mode}`);
    }
    const short = (number: number): number => Number(number.toPrecision(7));
    if (step.frequency !== null) {
        marks.push(`frequency ${short(step.frequency)}`);
    }
    if (step.time !== null && step.time !== step.frequency) {
        marks.push(`time ${short(step.time)}`);
    }
    return marks.length === 0 ? step.name : `${step.name} (${marks.join(", ")})`;
}
