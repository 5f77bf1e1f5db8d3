import * as THREE from "three";
import { OrbitControls } from "three/examples/jsm/controls/OrbitControls.js";
import { TableSize } from "./colours.ts";
import type { Description } from "./description.ts";
import { type Figures, type Mesh, elementsOf } from "./mesh.ts";
import * as Shaders from "./shaders.ts";

const NoElement = 0xffffffff;
/** The state of a hidden element, which shaders see as 1. */
const Hidden = 255;
const LineWidth = 3;
const PointSize = 8;
/** The pixels on a side of the square in which the pointer finds something; odd. */
const PickSize = 11;

type Uniforms = Record<string, THREE.IUniform>;

/** What the pointer is on. */
export interface Hit {
    element: number;
    node: number;
}

/** Draws the mesh. Knows nothing of results but numbers for nodes or elements. */
export class Scene {
    readonly renderer: THREE.WebGLRenderer;
    readonly camera = new THREE.OrthographicCamera();
    readonly controls: OrbitControls;
    /** Called after each picture. */
    onDraw: () => void = () => undefined;
    /** How many pictures have been drawn. */
    pictures = 0;

    private readonly scene = new THREE.Scene();
    private readonly picking = new THREE.Scene();
    private readonly pickTarget = new THREE.WebGLRenderTarget(PickSize, PickSize);
    private readonly places: Float32Array;
    private readonly moves: THREE.DataTexture;
    private readonly values: THREE.DataTexture;
    private readonly states: THREE.DataTexture;
    private readonly table: THREE.DataTexture;
    private readonly factor: THREE.IUniform<number> = { value: 0 };
    private readonly shared: Uniforms;
    private readonly edges: THREE.Object3D;
    private readonly outline: THREE.Object3D;
    private readonly outlineColour = { value: new THREE.Vector3() };
    private readonly edgeColour = { value: new THREE.Vector3() };
    private readonly radius: number;
    private isAsked = false;
    private isReady = false;

    constructor(canvas: HTMLCanvasElement, private readonly mesh: Mesh, private readonly description: Description) {
        this.renderer = new THREE.WebGLRenderer({ canvas, antialias: true });
        this.renderer.setPixelRatio(window.devicePixelRatio);
        const nodes = mesh.nodeIds.length;
        const elements = mesh.elementIds.length;
        this.places = centred(mesh.positions, description.centre);
        const positions = texture(THREE.RGBAFormat, 4, nodes, THREE.FloatType);
        spread(this.places, data(positions));
        this.moves = texture(THREE.RGBAFormat, 4, nodes, THREE.FloatType);
        this.values = texture(THREE.RGFormat, 2, Math.max(nodes, elements), THREE.FloatType);
        this.states = texture(THREE.RedFormat, 1, elements, THREE.UnsignedByteType);
        this.table = new THREE.DataTexture(new Uint8Array(TableSize * 4), TableSize, 1);
        this.radius = Math.max(Math.hypot(...description.extent) / 2, 1e-30);
        this.shared = {
            uPositions: { value: positions },
            uMoves: { value: this.moves },
            uValues: { value: this.values },
            uStates: { value: this.states },
            uTable: { value: this.table },
            uByElement: { value: false },
            uHasResult: { value: false },
            uRange: { value: new THREE.Vector2(0, 1) },
            uPlain: { value: new THREE.Vector3(0.55, 0.63, 0.72) },
            uPicked: { value: NoElement },
            uWindow: { value: new THREE.Vector2(1, 1) },
            uCut: { value: new THREE.Vector4(1, 0, 0, 0) },
            uIsCut: { value: false },
            uOpacity: { value: 1 },
        };
        this.addFilled();
        this.edges = this.addLines(mesh.edges, this.edgeColour, this.factor, 0.45);
        this.outline = this.addLines(mesh.outline, this.outlineColour, { value: 0 }, 1);
        this.camera.up.set(0, 0, 1);
        this.controls = new OrbitControls(this.camera, canvas);
        this.controls.zoomToCursor = true;
        this.controls.addEventListener("change", () => this.invalidate());
        new ResizeObserver(() => this.resize()).observe(canvas.parentElement ?? canvas);
        this.resize();
    }

    /** Numbers for nodes or elements: a pair each of the number, and of 1 if there is none. */
    setValues(byElement: boolean, numbers: Float32Array | null): void {
        this.shared.uHasResult.value = numbers !== null;
        this.shared.uByElement.value = byElement;
        if (numbers !== null) {
            data(this.values).set(numbers);
            this.values.needsUpdate = true;
        }
        this.invalidate();
    }

    /** How far each node moves, x, y and z; null for not at all. */
    setMoves(moves: Float32Array | null): void {
        if (moves === null) {
            data(this.moves).fill(0);
        } else {
            spread(moves, data(this.moves));
        }
        this.moves.needsUpdate = true;
        this.invalidate();
    }

    setFactor(factor: number): void {
        this.factor.value = factor;
        this.invalidate();
    }

    setColours(table: Uint8Array, low: number, high: number): void {
        (this.table.image.data as Uint8Array).set(table);
        this.table.needsUpdate = true;
        (this.shared.uRange.value as THREE.Vector2).set(low, high);
        this.invalidate();
    }

    setHidden(parts: number[]): void {
        const states = data(this.states);
        states.fill(0);
        for (const part of parts.filter((place) => place < this.description.parts.length)) {
            states.fill(Hidden, ...elementsOf(this.description, part));
        }
        this.states.needsUpdate = true;
        this.invalidate();
    }

    setLines(edges: boolean, outline: boolean): void {
        this.edges.visible = edges;
        this.outline.visible = outline;
        this.invalidate();
    }

    setPicked(element: number | null): void {
        this.shared.uPicked.value = element ?? NoElement;
        this.invalidate();
    }

    setTheme(isDark: boolean): void {
        this.renderer.setClearColor(isDark ? 0x16191d : 0xf6f7f9);
        this.edgeColour.value.setScalar(isDark ? 0.03 : 0.15);
        this.outlineColour.value.setScalar(isDark ? 0.75 : 0.4);
        this.invalidate();
    }

    /** Cuts across an axis at a part of the model's extent. */
    setCut(axis: "" | "x" | "y" | "z", part: number, flip: boolean): void {
        this.shared.uIsCut.value = axis !== "";
        const place = axis === "" ? 0 : "xyz".indexOf(axis);
        const normal = new THREE.Vector3().setComponent(place, flip ? -1 : 1);
        const offset = (part - 0.5) * this.description.extent[place] * (flip ? -1 : 1);
        (this.shared.uCut.value as THREE.Vector4).set(normal.x, normal.y, normal.z, offset);
        this.invalidate();
    }

    /** Where a node is drawn, in pixels of the canvas. */
    project(node: number): { x: number; y: number } {
        const point = this.placeOf(node).project(this.camera);
        const { width, height } = this.size();
        return { x: ((point.x + 1) / 2) * width, y: ((1 - point.y) / 2) * height };
    }

    placeOf(node: number): THREE.Vector3 {
        const moves = data(this.moves);
        const along = (axis: number): number =>
            this.places[node * 3 + axis] + this.factor.value * moves[node * 4 + axis];
        return new THREE.Vector3(along(0), along(1), along(2));
    }

    /** What is drawn at a place of the canvas, or else near it; null for nothing. */
    pick(x: number, y: number): Hit | null {
        const { width, height } = this.size();
        const reach = (PickSize - 1) / 2;
        this.camera.setViewOffset(width, height, Math.floor(x) - reach, Math.floor(y) - reach, PickSize, PickSize);
        const clear = this.renderer.getClearColor(new THREE.Color());
        this.renderer.setClearColor(0x000000, 0);
        this.renderer.setRenderTarget(this.pickTarget);
        const window = this.shared.uWindow.value as THREE.Vector2;
        window.set(PickSize, PickSize);
        this.renderer.render(this.picking, this.camera);
        const bytes = new Uint8Array(PickSize * PickSize * 4);
        this.renderer.readRenderTargetPixels(this.pickTarget, 0, 0, PickSize, PickSize, bytes);
        this.renderer.setRenderTarget(null);
        this.renderer.setClearColor(clear, 1);
        this.camera.clearViewOffset();
        window.set(width, height);
        const number = nearestNumber(bytes);
        return number === 0 ? null : this.hitOf(number - 1, x, y);
    }

    /** The camera's direction from its target, the target, and half the height that is seen. */
    cameraNumbers(): number[] {
        const direction = this.camera.position.clone().sub(this.controls.target).normalize();
        const target = this.controls.target.clone().divideScalar(this.radius);
        return [...direction.toArray(), ...target.toArray(), 1 / this.camera.zoom];
    }

    setCameraNumbers(numbers: number[]): void {
        this.controls.target.fromArray(numbers, 3).multiplyScalar(this.radius);
        this.camera.zoom = numbers[6] > 0 ? 1 / numbers[6] : 1;
        this.look(new THREE.Vector3().fromArray(numbers));
    }

    /** Looks from a direction and keeps the target. */
    look(direction: THREE.Vector3): void {
        const away = direction.clone().normalize().multiplyScalar(4 * this.radius);
        this.camera.position.copy(this.controls.target).add(away);
        this.camera.updateProjectionMatrix();
        this.controls.update();
        this.invalidate();
    }

    /** Turns round the target, by angles. */
    turn(across: number, up: number): void {
        const offset = this.camera.position.clone().sub(this.controls.target);
        const flat = Math.hypot(offset.x, offset.y);
        const azimuth = Math.atan2(offset.y, offset.x) + across;
        const limit = Math.PI / 2 - 1e-4;
        const height = Math.min(limit, Math.max(-limit, Math.atan2(offset.z, flat) + up));
        this.look(
            new THREE.Vector3(
                Math.cos(azimuth) * Math.cos(height),
                Math.sin(azimuth) * Math.cos(height),
                Math.sin(height),
            ),
        );
    }

    /** Moves sideways and upwards, by parts of what is seen. */
    shift(right: number, up: number): void {
        const size = (2 * this.camera.top) / this.camera.zoom;
        const offset = new THREE.Vector3()
            .addScaledVector(new THREE.Vector3(1, 0, 0).applyQuaternion(this.camera.quaternion), right * size)
            .addScaledVector(new THREE.Vector3(0, 1, 0).applyQuaternion(this.camera.quaternion), up * size);
        this.controls.target.add(offset);
        this.camera.position.add(offset);
        this.controls.update();
        this.invalidate();
    }

    zoom(by: number): void {
        this.camera.zoom *= by;
        this.camera.updateProjectionMatrix();
        this.controls.update();
        this.invalidate();
    }

    /**
     * Brings all that is shown into the window, from the present direction.
     * @param reserved Pixels at the right that something else covers.
     */
    fit(reserved = 0): void {
        this.camera.updateMatrixWorld();
        const box = this.seenBox();
        if (box.isEmpty()) {
            return;
        }
        const centre = box.getCenter(new THREE.Vector3());
        const size = box.getSize(new THREE.Vector3());
        const { width, height } = this.size();
        const free = Math.max(width - reserved, width / 3);
        const half = Math.max(size.y / 2, ((size.x / 2) * height) / free, this.radius * 1e-3) * 1.12;
        centre.x += ((width - free) / height) * half;
        const offset = this.camera.position.clone().sub(this.controls.target);
        this.controls.target.copy(centre.applyMatrix4(this.camera.matrixWorld));
        this.camera.position.copy(this.controls.target).add(offset);
        this.camera.zoom = this.camera.top / half;
        this.camera.updateProjectionMatrix();
        this.controls.update();
        this.invalidate();
    }

    /** Lets the first picture be drawn, when all that belongs to it is there. */
    begin(): void {
        this.isReady = true;
        this.invalidate();
    }

    /** Draws in the next frame. */
    invalidate(): void {
        if (this.isReady && !this.isAsked) {
            this.isAsked = true;
            requestAnimationFrame(() => {
                this.isAsked = false;
                this.draw();
            });
        }
    }

    draw(): void {
        this.renderer.render(this.scene, this.camera);
        ++this.pictures;
        this.onDraw();
    }

    size(): { width: number; height: number } {
        const canvas = this.renderer.domElement;
        return { width: Math.max(1, canvas.clientWidth), height: Math.max(1, canvas.clientHeight) };
    }

    private resize(): void {
        const box = this.renderer.domElement.parentElement?.getBoundingClientRect();
        const width = Math.max(1, box?.width ?? 1);
        const height = Math.max(1, box?.height ?? 1);
        this.renderer.setSize(width, height, false);
        this.camera.top = this.radius;
        this.camera.bottom = -this.radius;
        this.camera.right = (this.radius * width) / height;
        this.camera.left = -this.camera.right;
        this.camera.near = -20 * this.radius;
        this.camera.far = 30 * this.radius;
        this.camera.updateProjectionMatrix();
        (this.shared.uWindow.value as THREE.Vector2).set(width, height);
        this.invalidate();
    }

    private seenBox(): THREE.Box3 {
        const states = data(this.states);
        const isSeen = new Uint8Array(this.mesh.nodeIds.length);
        for (const figures of [this.mesh.triangles, this.mesh.lines, this.mesh.points]) {
            for (let i = 0; i < figures.nodes.length; ++i) {
                if (states[figures.elements[Math.floor(i / figures.corners)]] !== Hidden) {
                    isSeen[figures.nodes[i]] = 1;
                }
            }
        }
        const box = new THREE.Box3();
        isSeen.forEach((seen, node) => {
            if (seen === 1) {
                box.expandByPoint(this.placeOf(node).applyMatrix4(this.camera.matrixWorldInverse));
            }
        });
        return box;
    }

    private hitOf(figure: number, x: number, y: number): Hit | null {
        let place = figure;
        for (const figures of [this.mesh.triangles, this.mesh.lines, this.mesh.points]) {
            if (place < figures.elements.length) {
                const start = place * figures.corners;
                const nodes = [...figures.nodes.subarray(start, start + figures.corners)];
                const distance = (node: number): number => {
                    const seen = this.project(node);
                    return Math.hypot(seen.x - x, seen.y - y);
                };
                const node = nodes.reduce((best, other) => (distance(other) < distance(best) ? other : best));
                return { element: figures.elements[place], node };
            }
            place -= figures.elements.length;
        }
        return null;
    }

    private addFilled(): void {
        const { triangles, lines, points } = this.mesh;
        this.addPair((...of) => new THREE.Mesh(...of), cornersOf(triangles), Shaders.FigureVertex, 0, {
            uCorners: { value: 3 },
            uIsLit: { value: true },
        });
        this.addPair((...of) => new THREE.Mesh(...of), rectanglesOf(lines), Shaders.LineVertex, triangles.elements.length, {
            uWidth: { value: LineWidth },
            uIsLit: { value: false },
        });
        const first = triangles.elements.length + lines.elements.length;
        this.addPair((...of) => new THREE.Points(...of), cornersOf(points), Shaders.PointVertex, first, {
            uWidth: { value: PointSize * this.renderer.getPixelRatio() },
            uIsLit: { value: false },
        });
    }

    /** What is drawn, and the same for the pointer. */
    private addPair(
        make: (geometry: THREE.BufferGeometry, material: THREE.Material) => THREE.Object3D,
        geometry: THREE.BufferGeometry,
        vertexShader: string,
        first: number,
        own: Uniforms,
    ): void {
        const add = (scene: THREE.Scene, fragmentShader: string): void => {
            const material = new THREE.RawShaderMaterial({
                glslVersion: THREE.GLSL3,
                vertexShader,
                fragmentShader,
                uniforms: { ...this.shared, uFactor: this.factor, uFirst: { value: first }, ...own },
                side: THREE.DoubleSide,
                polygonOffset: true,
                polygonOffsetFactor: 1,
                polygonOffsetUnits: 1,
                blending: THREE.NoBlending,
            });
            const object = make(geometry, material);
            object.frustumCulled = false;
            scene.add(object);
        };
        add(this.scene, Shaders.ColourFragment);
        add(this.picking, Shaders.PickFragment);
    }

    private addLines(
        figures: Figures,
        colour: THREE.IUniform,
        factor: THREE.IUniform,
        opacity: number,
    ): THREE.Object3D {
        const material = new THREE.RawShaderMaterial({
            glslVersion: THREE.GLSL3,
            vertexShader: Shaders.FigureVertex,
            fragmentShader: Shaders.ColourFragment,
            uniforms: {
                ...this.shared,
                uFactor: factor,
                uPlain: colour,
                uFirst: { value: 0 },
                uCorners: { value: 2 },
                uHasResult: { value: false },
                uIsLit: { value: false },
                uPicked: { value: NoElement },
                uOpacity: { value: opacity },
            },
            transparent: true,
        });
        const lines = new THREE.LineSegments(cornersOf(figures), material);
        lines.frustumCulled = false;
        this.scene.add(lines);
        return lines;
    }
}

function centred(positions: Float32Array, centre: number[]): Float32Array {
    return positions.map((number, i) => (Number.isFinite(number) ? number - centre[i % 3] : 0));
}

/** Room for so many numbers or groups of them, which shaders fetch by their places. */
function texture(
    format: THREE.PixelFormat,
    parts: number,
    count: number,
    type: THREE.TextureDataType,
): THREE.DataTexture {
    const height = Math.max(1, Math.ceil(count / Shaders.TextureWidth));
    const length = Shaders.TextureWidth * height * parts;
    const numbers = type === THREE.FloatType ? new Float32Array(length) : new Uint8Array(length);
    const result = new THREE.DataTexture(numbers, Shaders.TextureWidth, height, format, type);
    result.unpackAlignment = 1;
    result.needsUpdate = true;
    return result;
}

function data(from: THREE.DataTexture): Float32Array {
    return from.image.data as unknown as Float32Array;
}

/** Threes into fours. */
function spread(threes: Float32Array, fours: Float32Array): void {
    for (let i = 0, k = 0; i < threes.length; i += 3, k += 4) {
        fours[k] = threes[i];
        fours[k + 1] = threes[i + 1];
        fours[k + 2] = threes[i + 2];
    }
}

function geometryOf(attributes: Record<string, Uint32Array>): THREE.BufferGeometry {
    const geometry = new THREE.BufferGeometry();
    for (const [name, numbers] of Object.entries(attributes)) {
        geometry.setAttribute(name, new THREE.Uint32BufferAttribute(numbers, 1));
        geometry.setDrawRange(0, numbers.length);
    }
    return geometry;
}

function cornersOf(figures: Figures): THREE.BufferGeometry {
    const elements = new Uint32Array(figures.nodes.length);
    for (let i = 0; i < elements.length; ++i) {
        elements[i] = figures.elements[Math.floor(i / figures.corners)];
    }
    return geometryOf({ node: figures.nodes, element: elements });
}

/** Two triangles for each line: from its first node, and its second node, to either side. */
function rectanglesOf(lines: Figures): THREE.BufferGeometry {
    const count = lines.elements.length;
    const node = new Uint32Array(count * 6);
    const other = new Uint32Array(count * 6);
    const element = new Uint32Array(count * 6);
    for (let i = 0; i < count; ++i) {
        const [a, b] = lines.nodes.subarray(2 * i, 2 * i + 2);
        node.set([a, a, b, b, a, b], i * 6);
        other.set([b, b, a, a, b, a], i * 6);
        element.fill(lines.elements[i], i * 6, i * 6 + 6);
    }
    return geometryOf({ node, other, element });
}

/** The number in the pixel nearest to the middle that has one; 0 if none has. */
function nearestNumber(bytes: Uint8Array): number {
    const middle = (PickSize - 1) / 2;
    let nearest = Infinity;
    let number = 0;
    for (let i = 0; i < PickSize * PickSize; ++i) {
        const [a, b, c, d] = bytes.subarray(4 * i, 4 * i + 4);
        const found = a + b * 0x100 + c * 0x10000 + d * 0x1000000;
        const distance = Math.hypot((i % PickSize) - middle, Math.floor(i / PickSize) - middle);
        if (found !== 0 && distance < nearest) {
            nearest = distance;
            number = found;
        }
    }
    return number;
}
