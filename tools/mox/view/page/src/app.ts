import * as THREE from "three";
import type { Blocks } from "./blocks.ts";
import { MapNames, colourTable } from "./colours.ts";
import {
    type Description,
    type Field,
    type Range,
    blockName,
    columnCount,
    columnLabel,
    nearestStep,
    stepLabel,
} from "./description.ts";
import { byId, element, option } from "./dom.ts";
import { type LegendContent, drawLegend, showLegend } from "./legend.ts";
import { type Mesh, nodesOf, partOf } from "./mesh.ts";
import { floatText, parseNumber } from "./numbers.ts";
import { type Extreme, Result } from "./result.ts";
import { type Hit, Scene } from "./scene.ts";
import { Initial, type ViewState, decodeState, encodeState } from "./state.ts";
import { Tree } from "./tree.ts";

/** Part of the model's diagonal that the greatest displacement takes if the scale is automatic. */
const AutomaticShare = 0.1;
/** From this part of the diagonal on a displacement is seen without a scale. */
const VisibleShare = 0.05;
/** In milliseconds, like the period. */
const StepDuration = 700;
const SwingPeriod = 2000;

type Picked = Hit & { kind: "node" | "element" };

/** Connects the page's controls with the picture. */
export class App {
    readonly scene: Scene;
    private readonly base: ViewState;
    private state: ViewState;
    private readonly hidden: Set<number>;
    private readonly tree: Tree;
    private result: Result | null = null;
    private moving: Result | null = null;
    private legend: LegendContent | null = null;
    private picked: Picked | null = null;
    private automatic = 1;
    private loading = 0;
    private playTimer = 0;
    private swingStart: number | null = null;
    private readonly known: Record<string, Range[] | undefined>;
    private readonly cache = new Map<string, Promise<Result>>();

    constructor(
        private readonly description: Description,
        private readonly blocks: Blocks,
        private readonly mesh: Mesh,
    ) {
        this.known = { ...description.ranges };
        this.base = this.initialState();
        this.state = this.linkedState();
        this.hidden = new Set(this.state.hidden);
        this.scene = new Scene(byId<HTMLCanvasElement>("canvas"), mesh, description);
        this.scene.onDraw = () => this.placeMarks();
        this.tree = new Tree(byId("tree"), description, this.hidden, () => this.showHidden());
    }

    async start(): Promise<void> {
        this.fillTexts();
        this.fillChoices();
        this.connect();
        this.applyTheme();
        this.scene.setHidden([...this.hidden]);
        await this.refresh();
        this.look(this.isFlat() ? "z" : "iso");
        if (this.state.camera.length > 0) {
            this.scene.setCameraNumbers(this.state.camera);
        }
        this.scene.controls.addEventListener("end", () => this.keepCamera());
        this.scene.begin();
        byId("message").textContent = "";
        Object.assign(window, { moxView: this });
    }

    private initialState(): ViewState {
        const fields = this.description.fields;
        const hasData = (field: number): boolean => fields[field].steps.some((step) => this.has(field, step));
        const places = fields.map((_, i) => i).filter(hasData);
        const isDisplacement = (field: number): boolean => fields[field].name === "Displacement";
        const mover =
            places.find((i) => fields[i].movesNodes && isDisplacement(i)) ??
            places.find((i) => fields[i].movesNodes && this.isVibration(fields[i])) ??
            -1;
        const field = places.find((i) => i === mover) ?? places[0] ?? -1;
        const last = field < 0 ? null : fields[field].steps.filter((step) => this.has(field, step)).at(-1);
        return {
            ...Initial,
            field,
            column: field < 0 ? 0 : columnCount(fields[field]) - 1,
            step: last ?? 0,
            mover,
            edges: this.mesh.edges.elements.length < 100000,
        };
    }

    /** The state of the address, as far as this model has what it names. */
    private linkedState(): ViewState {
        const state = decodeState(location.hash, this.base);
        const { fields, parts } = this.description;
        if (state.field >= fields.length) {
            state.field = this.base.field;
        }
        if (!(fields[state.mover]?.movesNodes ?? false)) {
            state.mover = -1;
        }
        const columns = state.field < 0 ? 1 : columnCount(fields[state.field]);
        state.column = Math.min(state.column, columns - 1);
        state.hidden = state.hidden.filter((part) => part < parts.length);
        return state;
    }

    private isVibration(field: Field): boolean {
        return field.steps.some((step) => step !== null && this.description.steps[step].vibration);
    }

    private isFlat(): boolean {
        return this.description.extent[2] === 0;
    }

    private has(field: number, step: number | null): boolean {
        return this.blocks.has(blockName(field, step));
    }

    // --- What the controls offer ------------------------------------------------------------------------------

    private fillTexts(): void {
        const { name, nodes, elements, parts, notes } = this.description;
        document.title = `${name} – mox view`;
        byId("title").textContent = name;
        byId("counts").textContent = `Nodes: ${nodes}, elements: ${elements}, parts: ${parts.length}`;
        byId("notes").hidden = notes.length === 0;
        byId("noteList").replaceChildren(...notes.map((note) => element("li", note)));
    }

    private fillChoices(): void {
        const fields = this.description.fields;
        const label = (field: Field): string =>
            `${field.name === "" ? "(no name)" : field.name} (${field.place})`;
        byId("field").append(option("none", "-1"));
        byId("mover").append(option("nothing", "-1"));
        fields.forEach((field, i) => {
            const isEmpty = !field.steps.some((step) => this.has(i, step));
            byId("field").append(option(label(field) + (isEmpty ? " – left out" : ""), String(i), isEmpty));
            if (field.movesNodes) {
                byId("mover").append(option(field.name, String(i), isEmpty));
            }
        });
        byId("map").append(...MapNames.map((name) => option(name, name)));
        this.fillColumns();
    }

    private field(): Field | null {
        return this.description.fields[this.state.field] ?? null;
    }

    private fillColumns(): void {
        const field = this.field();
        const columns = field ? Array.from({ length: columnCount(field) }, (_, i) => columnLabel(field, i)) : [];
        byId("column").replaceChildren(...columns.map((name, i) => option(name, String(i))));
        const steps = field ? field.steps : [];
        byId("step").replaceChildren(
            ...steps.map((step, i) => {
                const text = step === null ? "in all steps" : stepLabel(this.description.steps[step]);
                const isOut = !this.has(this.state.field, step);
                return option(isOut ? `${text} – left out` : text, String(i), isOut);
            }),
        );
        byId<HTMLInputElement>("stepSlider").max = String(Math.max(0, steps.length - 1));
    }

    /** Sets the controls to the state. */
    private fillValues(): void {
        const { state } = this;
        const set = (id: string, value: string | number): void => {
            byId<HTMLSelectElement | HTMLInputElement>(id).value = String(value);
        };
        const check = (id: string, value: boolean): void => {
            byId<HTMLInputElement>(id).checked = value;
        };
        const place = this.stepPlace();
        set("field", state.field);
        set("column", state.column);
        set("step", place);
        set("stepSlider", place);
        set("range", typeof state.range === "string" ? state.range : "fixed");
        set("map", state.map);
        set("bands", state.bands);
        set("mover", state.mover);
        set("cut", state.cut);
        set("cutPlace", state.cutPlace);
        check("extremes", state.extremes);
        check("edges", state.edges);
        check("outline", state.outline);
        check("cutFlip", state.cutFlip);
        byId("limits").hidden = typeof state.range === "string";
        const steps = this.field()?.steps.length ?? 0;
        for (const id of ["step", "stepSlider", "previous", "next", "play"]) {
            byId<HTMLButtonElement>(id).disabled = steps < 2;
        }
        for (const id of ["cutPlace", "cutFlip"]) {
            byId<HTMLInputElement>(id).disabled = state.cut === "";
        }
        for (const id of ["factor", "trueScale", "autoScale", "swing"]) {
            byId<HTMLButtonElement>(id).disabled = this.moving === null;
        }
        byId<HTMLInputElement>("factor").value = String(this.factor() / this.automatic);
        byId("factorText").textContent = this.moving === null ? "" : `× ${floatText(Number(this.factor().toPrecision(4)))}`;
    }

    // --- From the state to the picture -------------------------------------------------------------------------

    /** Place of the step among those of the field. */
    private stepPlace(): number {
        const field = this.field();
        return field ? nearestStep(field, this.state.step) : 0;
    }

    private stepOf(field: number): number | null {
        const described = this.description.fields[field];
        return described.steps[nearestStep(described, this.state.step)];
    }

    /** Loads what the state needs and shows it. */
    async refresh(): Promise<void> {
        const turn = ++this.loading;
        if (this.state.field >= 0) {
            this.state.step = this.stepOf(this.state.field) ?? this.state.step;
        }
        try {
            const result = this.state.field < 0 ? null : await this.load(this.state.field, this.stepOf(this.state.field));
            const moving = await this.loadMoving();
            const range = result === null ? null : await this.rangeOf(result);
            const automatic = moving === null ? 1 : this.automaticFactor(moving);
            if (turn !== this.loading) {
                return; // something else has been chosen meanwhile
            }
            this.result = result;
            this.automatic = automatic;
            this.showValues(range);
            this.showMoves(moving);
            byId("message").textContent = "";
        } catch (error) {
            byId("message").textContent = error instanceof Error ? error.message : String(error);
        }
        this.showRest();
    }

    private load(field: number, step: number | null): Promise<Result> {
        const name = blockName(field, step);
        const known = this.cache.get(name);
        if (known !== undefined) {
            return known;
        }
        const described = this.description.fields[field];
        const items = described.place === "nodes" ? this.mesh.nodeIds.length : this.mesh.elementIds.length;
        const loaded = this.blocks.load(name).then((block) => {
            const result = new Result(described, block, items);
            this.known[name] = Array.from({ length: columnCount(described) }, (_, i) => [
                result.least(i).number,
                result.greatest(i).number,
            ]);
            return result;
        });
        if (this.cache.size >= 8) {
            this.cache.delete([...this.cache.keys()][0]);
        }
        this.cache.set(name, loaded);
        loaded.catch(() => this.cache.delete(name));
        return loaded;
    }

    /** The displacement of the present step, if there is one. */
    private async loadMoving(): Promise<Result | null> {
        const { mover, step } = this.state;
        const field = this.description.fields[mover];
        if (field === undefined) {
            return null;
        }
        const wanted = field.steps.includes(null) ? null : step;
        return field.steps.includes(wanted) && this.has(mover, wanted) ? this.load(mover, wanted) : null;
    }

    private async rangeOf(result: Result): Promise<[number, number]> {
        const { range, column } = this.state;
        if (typeof range !== "string") {
            return range;
        }
        if (range === "step") {
            return [result.least(column).number, result.greatest(column).number];
        }
        let [low, high] = [Infinity, -Infinity];
        for (const step of result.field.steps.filter((place) => this.has(this.state.field, place))) {
            const name = blockName(this.state.field, step);
            if (this.known[name] === undefined) {
                byId("message").textContent = "Reading all steps …";
                await this.load(this.state.field, step);
            }
            const [least, greatest] = this.known[name]?.[column] ?? [null, null];
            low = Math.min(low, least === null || Number.isNaN(least) ? Infinity : least);
            high = Math.max(high, greatest === null || Number.isNaN(greatest) ? -Infinity : greatest);
        }
        return [low, high];
    }

    private automaticFactor(moving: Result): number {
        const diagonal = Math.hypot(...this.description.extent);
        let greatest = moving.greatest(columnCount(moving.field) - 1).number;
        const isVibration = this.description.steps[this.state.step]?.vibration ?? false;
        if (!isVibration) {
            for (const step of moving.field.steps) {
                if (step === null || !this.description.steps[step].vibration) {
                    const range = this.known[blockName(this.state.mover, step)]?.at(-1);
                    greatest = Math.max(greatest, range?.[1] ?? 0);
                }
            }
        }
        if (!(greatest > 0) || !(diagonal > 0)) {
            return 1;
        }
        const share = greatest / diagonal;
        return !isVibration && share >= VisibleShare ? 1 : AutomaticShare / share;
    }

    private factor(): number {
        return this.state.factor ?? this.automatic;
    }

    private showValues(range: [number, number] | null): void {
        const { result, state } = this;
        if (result === null || range === null) {
            this.scene.setValues(false, null);
            this.legend = null;
            showLegend(byId("legend"), null);
            return;
        }
        const byElement = result.field.place === "elements";
        const items = byElement ? this.mesh.elementIds.length : this.mesh.nodeIds.length;
        const pairs = new Float32Array(items * 2);
        let hasGaps = false;
        for (let i = 0; i < items; ++i) {
            const number = result.number(i, state.column);
            if (Number.isFinite(number)) {
                pairs[2 * i] = number;
            } else {
                pairs[2 * i + 1] = 1;
                hasGaps = true;
            }
        }
        const isKnown = range[0] <= range[1] && Number.isFinite(range[0]) && Number.isFinite(range[1]);
        const [low, high] = isKnown ? range : [NaN, NaN];
        const table = colourTable(state.map, state.bands);
        this.scene.setValues(byElement, pairs);
        this.scene.setColours(table, low, high);
        this.legend = {
            name: this.resultName(result.field),
            details: this.legendDetails(result.field),
            table,
            bands: state.bands,
            low,
            high,
            below: result.least(state.column).number < low,
            above: result.greatest(state.column).number > high,
            hasGaps,
        };
        showLegend(byId("legend"), this.legend);
    }

    private resultName(field: Field): string {
        const column = columnLabel(field, this.state.column);
        return column === field.name ? column : column.startsWith(field.name) ? column : `${field.name}: ${column}`;
    }

    private legendDetails(field: Field): string[] {
        const step = this.stepOf(this.state.field);
        const range = { step: "this step", all: "all steps" };
        const { range: chosen } = this.state;
        const details = [`on ${field.place}`];
        if (step !== null) {
            details.push(stepLabel(this.description.steps[step]));
        }
        details.push(`range: ${typeof chosen === "string" ? range[chosen] : "fixed"}`);
        return details;
    }

    private showMoves(moving: Result | null): void {
        if (moving !== this.moving) {
            this.moving = moving;
            if (moving === null) {
                this.scene.setMoves(null);
            } else {
                const moves = new Float32Array(this.mesh.nodeIds.length * 3);
                for (let i = 0; i < moves.length; ++i) {
                    const number = moving.number(Math.floor(i / 3), i % 3);
                    moves[i] = Number.isFinite(number) ? number : 0;
                }
                this.scene.setMoves(moves);
            }
        }
        if (this.moving === null) {
            this.swing(false);
        }
        if (this.swingStart === null) {
            this.scene.setFactor(this.factor());
        }
    }

    private showRest(): void {
        const { state } = this;
        this.scene.setLines(state.edges, state.outline);
        this.scene.setCut(state.cut, state.cutPlace, state.cutFlip);
        this.fillValues();
        this.showPicked();
        this.scene.invalidate();
        this.keepState();
    }

    private showHidden(): void {
        this.state.hidden = [...this.hidden].sort((a, b) => a - b);
        this.scene.setHidden(this.state.hidden);
        this.keepState();
    }

    private applyTheme(): void {
        const prefersDark = matchMedia("(prefers-color-scheme: dark)").matches;
        const isDark = this.state.theme === "" ? prefersDark : this.state.theme === "dark";
        document.documentElement.dataset.theme = isDark ? "dark" : "light";
        this.scene.setTheme(isDark);
    }

    // --- Links --------------------------------------------------------------------------------------------------

    private keepCamera(): void {
        this.state.camera = this.scene.cameraNumbers();
        this.keepState();
    }

    private keepState(): void {
        const fragment = encodeState(this.state, this.base);
        const address = location.href.replace(/#.*/, "") + (fragment === "" ? "" : `#${fragment}`);
        if (address !== location.href) {
            history.replaceState(null, "", address);
        }
    }

    private async takeLink(): Promise<void> {
        this.state = this.linkedState();
        this.hidden.clear();
        this.state.hidden.forEach((part) => this.hidden.add(part));
        this.tree.draw();
        this.scene.setHidden(this.state.hidden);
        this.applyTheme();
        this.fillColumns();
        if (this.state.camera.length > 0) {
            this.scene.setCameraNumbers(this.state.camera);
        }
        await this.refresh();
    }

    // --- Picking ------------------------------------------------------------------------------------------------

    /** Takes the node or element at a place of the canvas. */
    pick(x: number, y: number): void {
        const hit = this.scene.pick(x, y);
        const kind = byId<HTMLSelectElement>("pickKind").value === "element" ? "element" : "node";
        this.picked = hit === null ? null : { ...hit, kind };
        this.scene.setPicked(this.picked?.kind === "element" ? this.picked.element : null);
        this.showPicked();
        this.scene.invalidate();
    }

    private showPicked(): void {
        const place = byId("picked");
        place.hidden = this.picked === null;
        place.replaceChildren();
        if (this.picked === null) {
            return;
        }
        const isNode = this.picked.kind === "node";
        const item = isNode ? this.picked.node : this.picked.element;
        const id = isNode ? this.mesh.nodeIds[item] : this.mesh.elementIds[item];
        const row = isNode ? this.mesh.nodeRows[item] : this.mesh.elementRows[item];
        const rows: [string, string][] = [
            ["Part", this.description.parts[partOf(this.description, this.picked.element)].name],
            ["Row", String(row)],
        ];
        if (isNode) {
            const at = this.mesh.positions.subarray(item * 3, item * 3 + 3);
            rows.push(["Coordinates", [...at].map(floatText).join(", ")]);
        } else {
            const nodes = nodesOf(this.mesh, item).map((node) => this.mesh.nodeIds[node]);
            rows.push(["Nodes seen", nodes.sort((a, b) => a - b).join(", ")]);
        }
        rows.push(...this.pickedNumbers(item, isNode));
        const table = element("table");
        for (const [name, text] of rows) {
            const line = element("tr");
            line.append(element("th", name), element("td", text));
            table.append(line);
        }
        place.append(element("h2", `${isNode ? "Node" : "Element"} ${id}`), table);
    }

    /** The numbers of the result; of an element's node, or a node's element, if the result belongs to those. */
    private pickedNumbers(item: number, isNode: boolean): [string, string][] {
        const { result, picked } = this;
        if (result === null || picked === null) {
            return [];
        }
        const onNodes = result.field.place === "nodes";
        const from = onNodes === isNode ? item : onNodes ? picked.node : picked.element;
        const other = onNodes ? `at node ${this.mesh.nodeIds[from]}` : `in element ${this.mesh.elementIds[from]}`;
        return Array.from({ length: columnCount(result.field) }, (_, column) => {
            const label = columnLabel(result.field, column);
            const name = label === result.field.derived ? `${result.field.name}: ${label}` : label;
            return [onNodes === isNode ? name : `${name} ${other}`, floatText(result.number(from, column))];
        });
    }

    // --- Marks --------------------------------------------------------------------------------------------------

    /** Puts the marks where what they mark is now drawn. */
    private placeMarks(): void {
        const marks: Node[] = [];
        if (this.state.extremes && this.result !== null) {
            marks.push(...this.extremeMark("min", this.result.least(this.state.column)));
            marks.push(...this.extremeMark("max", this.result.greatest(this.state.column)));
        }
        if (this.picked?.kind === "node") {
            marks.push(markAt(this.scene.project(this.picked.node)));
        }
        byId("marks").replaceChildren(...marks);
    }

    private extremeMark(name: string, extreme: Extreme): Node[] {
        if (extreme.item === null || !Number.isFinite(extreme.number)) {
            return [];
        }
        const isNode = this.result?.field.place === "nodes";
        const nodes = isNode ? [extreme.item] : this.nodesOfElement(extreme.item);
        const seen = nodes.map((node) => this.scene.project(node));
        const mean = (axis: "x" | "y"): number => seen.reduce((sum, at) => sum + at[axis], 0) / seen.length;
        const at = { x: mean("x"), y: mean("y") };
        const label = element("span", `${name} ${floatText(extreme.number)}`);
        label.style.left = `${at.x}px`;
        label.style.top = `${at.y}px`;
        return [markAt(at), label];
    }

    private readonly elementNodes = new Map<number, number[]>();

    private nodesOfElement(item: number): number[] {
        const nodes = this.elementNodes.get(item) ?? nodesOf(this.mesh, item);
        this.elementNodes.set(item, nodes);
        return nodes;
    }

    // --- Motion -------------------------------------------------------------------------------------------------

    private play(isOn: boolean): void {
        window.clearTimeout(this.playTimer);
        this.playTimer = 0;
        byId("play").setAttribute("aria-pressed", String(isOn));
        byId("play").textContent = isOn ? "Pause" : "Play";
        if (isOn) {
            const speed = Number(byId<HTMLInputElement>("speed").value);
            this.playTimer = window.setTimeout(() => {
                void this.changeStep(1, true).then(() => {
                    if (this.playTimer !== 0) {
                        this.play(true);
                    }
                });
            }, StepDuration / speed);
        }
    }

    private swing(isOn: boolean): void {
        const wasOn = this.swingStart !== null;
        byId("swing").setAttribute("aria-pressed", String(isOn));
        if (!isOn) {
            this.swingStart = null;
            this.scene.setFactor(this.moving === null ? 0 : this.factor());
        } else if (!wasOn) {
            this.swingStart = performance.now();
            requestAnimationFrame((now) => this.swingOn(now));
        }
    }

    private swingOn(now: number): void {
        if (this.swingStart === null) {
            return;
        }
        const speed = Number(byId<HTMLInputElement>("speed").value);
        const phase = ((now - this.swingStart) * speed * 2 * Math.PI) / SwingPeriod;
        this.scene.setFactor(this.factor() * Math.cos(phase));
        requestAnimationFrame((next) => this.swingOn(next));
    }

    private async changeStep(by: number, wraps = false): Promise<void> {
        const steps = this.field()?.steps ?? [];
        let place = this.stepPlace();
        for (let tried = 0; tried < steps.length; ++tried) {
            place += by;
            if (place < 0 || place >= steps.length) {
                if (!wraps) {
                    return;
                }
                place = (place + steps.length) % steps.length;
            }
            if (this.has(this.state.field, steps[place])) {
                this.state.step = steps[place] ?? this.state.step;
                await this.refresh();
                return;
            }
        }
    }

    // --- Pictures -----------------------------------------------------------------------------------------------

    /** The picture with its legend. */
    picture(): HTMLCanvasElement {
        this.scene.draw();
        const source = this.scene.renderer.domElement;
        const canvas = element("canvas");
        canvas.width = source.width;
        canvas.height = source.height;
        const to = canvas.getContext("2d");
        if (to !== null) {
            const isDark = document.documentElement.dataset.theme === "dark";
            to.drawImage(source, 0, 0);
            if (this.legend !== null) {
                drawLegend(to, this.legend, window.devicePixelRatio, isDark);
            }
        }
        return canvas;
    }

    private savePicture(): void {
        this.picture().toBlob((blob) => {
            if (blob === null) {
                return;
            }
            const link = element("a");
            link.href = URL.createObjectURL(blob);
            link.download = `${this.description.name.replace(/[^\w.-]+/g, "_")}.png`;
            link.click();
            window.setTimeout(() => URL.revokeObjectURL(link.href), 10000);
        }, "image/png");
    }

    // --- Input --------------------------------------------------------------------------------------------------

    private look(from: string): void {
        const sides: Record<string, [number, number, number]> = {
            iso: [1, -1.4, 0.9],
            x: [1, 0, 0],
            y: [0, 1, 0],
            z: [0, -1e-4, 1],
        };
        const wanted = new THREE.Vector3(...sides[from]).normalize();
        const present = new THREE.Vector3().fromArray(this.scene.cameraNumbers());
        if (from !== "iso" && present.distanceTo(wanted) < 1e-3) {
            wanted.set(-wanted.x, from === "z" ? wanted.y : -wanted.y, -wanted.z);
        }
        this.scene.look(wanted);
        this.fitBesideLegend();
    }

    private fitBesideLegend(): void {
        const { width, height } = this.scene.size();
        const isBeside = this.legend !== null && width > height;
        this.scene.fit(isBeside ? byId("legend").offsetWidth + 16 : 0);
    }

    private connect(): void {
        const on = (id: string, event: string, act: (value: string) => void): void => {
            const control = byId<HTMLInputElement>(id);
            control.addEventListener(event, () => act(control.value));
        };
        const choose = (id: string, act: (value: string) => void): void => {
            on(id, "change", (value) => {
                act(value);
                void this.refresh();
            });
        };
        choose("field", (value) => {
            this.state.field = Number(value);
            const field = this.field();
            this.state.column = field ? columnCount(field) - 1 : 0;
            this.state.step = field ? (field.steps[nearestStep(field, this.state.step)] ?? this.state.step) : 0;
            this.chooseMover();
            this.fillColumns();
        });
        choose("column", (value) => (this.state.column = Number(value)));
        choose("step", (value) => this.takeStep(Number(value)));
        on("stepSlider", "input", (value) => {
            this.takeStep(Number(value));
            void this.refresh();
        });
        on("previous", "click", () => void this.changeStep(-1));
        on("next", "click", () => void this.changeStep(1));
        on("play", "click", () => this.play(this.playTimer === 0));
        choose("range", (value) => this.takeRange(value));
        on("low", "change", () => this.takeLimits());
        on("high", "change", () => this.takeLimits());
        choose("map", (value) => (this.state.map = MapNames.find((name) => name === value) ?? "viridis"));
        choose("bands", (value) => (this.state.bands = Number(value)));
        choose("mover", (value) => {
            this.state.mover = Number(value);
            this.state.factor = null;
        });
        on("factor", "input", (value) => this.takeFactor(Number(value) * this.automatic));
        on("trueScale", "click", () => this.takeFactor(1));
        on("autoScale", "click", () => this.takeFactor(null));
        on("swing", "click", () => this.swing(this.swingStart === null));
        for (const id of ["extremes", "edges", "outline", "cutFlip"] as const) {
            choose(id, () => (this.state[id] = byId<HTMLInputElement>(id).checked));
        }
        choose("cut", (value) => (this.state.cut = (["x", "y", "z"] as const).find((axis) => axis === value) ?? ""));
        on("cutPlace", "input", (value) => {
            this.state.cutPlace = Number(value);
            this.showRest();
        });
        on("search", "input", (value) => this.tree.search(value));
        on("showAll", "click", () => this.hideAll(false));
        on("hideAll", "click", () => this.hideAll(true));
        on("fit", "click", () => this.fit());
        on("picture", "click", () => this.savePicture());
        on("theme", "click", () => {
            this.state.theme = document.documentElement.dataset.theme === "dark" ? "light" : "dark";
            this.applyTheme();
            this.keepState();
        });
        on("menu", "click", () => this.toggleMenu());
        document.querySelectorAll<HTMLElement>("[data-view]").forEach((button) => {
            button.addEventListener("click", () => {
                this.look(button.dataset.view ?? "iso");
                this.keepCamera();
            });
        });
        window.addEventListener("hashchange", () => void this.takeLink());
        matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.applyTheme());
        if (window.innerWidth <= 700) {
            this.toggleMenu();
        }
        this.connectCanvas();
    }

    /** A shape that is looked at moves the nodes; so does the first that has the step, if the present one lacks it. */
    private chooseMover(): void {
        const fields = this.description.fields;
        const { mover, step } = this.state;
        const moves = (field: Field): boolean =>
            field.movesNodes && (field.name === "Displacement" || this.isVibration(field));
        const present = this.field();
        if (mover < 0 || present === null) {
            return;
        }
        const isStanding = fields[mover].steps.includes(step) || fields[mover].steps.includes(null);
        const other = moves(present)
            ? this.state.field
            : fields.findIndex((field) => moves(field) && field.steps.includes(step));
        if (other >= 0 && other !== mover && (moves(present) || !isStanding)) {
            this.state.mover = other;
            this.state.factor = null;
        }
    }

    private connectCanvas(): void {
        const canvas = this.scene.renderer.domElement;
        let start = { x: 0, y: 0 };
        canvas.addEventListener("pointerdown", (event) => (start = { x: event.clientX, y: event.clientY }));
        canvas.addEventListener("pointerup", (event) => {
            if (event.button === 0 && Math.hypot(event.clientX - start.x, event.clientY - start.y) < 4) {
                const box = canvas.getBoundingClientRect();
                this.pick(event.clientX - box.left, event.clientY - box.top);
            }
        });
        canvas.addEventListener("keydown", (event) => this.takeKey(event));
        canvas.addEventListener("webglcontextlost", () => {
            byId("message").textContent = "The browser has lost the picture; load the page again";
        });
    }

    private takeKey(event: KeyboardEvent): void {
        if (event.ctrlKey || event.metaKey || event.altKey) {
            return;
        }
        const turn = Math.PI / 24;
        const arrow = (right: number, up: number): void => {
            if (event.shiftKey) {
                this.scene.shift(-right * 0.05, -up * 0.05);
            } else {
                this.scene.turn(-right * turn, up * turn);
            }
            this.keepCamera();
        };
        const zoom = (by: number): void => {
            this.scene.zoom(by);
            this.keepCamera();
        };
        const side = (name: string): void => {
            this.look(name);
            this.keepCamera();
        };
        const acts: Record<string, (() => void) | undefined> = {
            ArrowLeft: () => arrow(-1, 0),
            ArrowRight: () => arrow(1, 0),
            ArrowUp: () => arrow(0, 1),
            ArrowDown: () => arrow(0, -1),
            "+": () => zoom(1.2),
            "=": () => zoom(1.2),
            PageUp: () => zoom(1.2),
            "-": () => zoom(1 / 1.2),
            PageDown: () => zoom(1 / 1.2),
            f: () => this.fit(),
            i: () => side("iso"),
            x: () => side("x"),
            y: () => side("y"),
            z: () => side("z"),
            p: () => this.savePicture(),
            "[": () => void this.changeStep(-1),
            "]": () => void this.changeStep(1),
            " ": () => byId("play").click(),
            m: () => byId("swing").click(),
            e: () => byId("edges").click(),
        };
        const act = acts[event.key] ?? acts[event.key.toLowerCase()];
        if (act !== undefined) {
            event.preventDefault();
            act();
        }
    }

    private fit(): void {
        this.fitBesideLegend();
        this.keepCamera();
    }

    private takeStep(place: number): void {
        const field = this.field();
        const step = field?.steps[place];
        if (field && step !== undefined && step !== null && this.has(this.state.field, step)) {
            this.state.step = step;
        }
    }

    private takeRange(value: string): void {
        byId("limitsProblem").textContent = "";
        if (value !== "fixed") {
            this.state.range = value === "all" ? "all" : "step";
        } else if (this.legend !== null) {
            const { low, high } = this.legend;
            this.state.range = [low, high];
            byId<HTMLInputElement>("low").value = floatText(low);
            byId<HTMLInputElement>("high").value = floatText(high);
        }
    }

    private takeLimits(): void {
        const low = parseNumber(byId<HTMLInputElement>("low").value);
        const high = parseNumber(byId<HTMLInputElement>("high").value);
        const isFine = low !== null && high !== null && low < high;
        byId("limitsProblem").textContent = isFine ? "" : "Two numbers are needed, the lower one first";
        if (isFine) {
            this.state.range = [low, high];
            void this.refresh();
        }
    }

    private takeFactor(factor: number | null): void {
        this.state.factor = factor;
        if (this.swingStart === null) {
            this.scene.setFactor(this.factor());
        }
        this.showRest();
    }

    private hideAll(isHidden: boolean): void {
        this.hidden.clear();
        if (isHidden) {
            this.description.parts.forEach((_, part) => this.hidden.add(part));
        }
        this.tree.draw();
        this.showHidden();
    }

    private toggleMenu(): void {
        const isClosed = byId("app").classList.toggle("closed");
        byId("menu").setAttribute("aria-expanded", String(!isClosed));
    }
}

function markAt(at: { x: number; y: number }): HTMLElement {
    const mark = element("i");
    mark.style.left = `${at.x}px`;
    mark.style.top = `${at.y}px`;
    return mark;
}
