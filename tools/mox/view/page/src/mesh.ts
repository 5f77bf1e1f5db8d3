import type { Blocks } from "./blocks.ts";
import type { Description } from "./description.ts";

/** What is drawn of the mesh, as the program found it. Nodes and elements are numbered from 0. */
export interface Mesh {
    positions: Float32Array;
    nodeRows: Uint32Array;
    nodeIds: Uint32Array;
    elementRows: Uint32Array;
    elementIds: Uint32Array;
    triangles: Figures;
    edges: Figures;
    outline: Figures;
    lines: Figures;
    points: Figures;
}

/** Nodes, as many for each figure as it has corners, and the element of each figure. */
export interface Figures {
    corners: number;
    nodes: Uint32Array;
    elements: Uint32Array;
}

export async function loadMesh(blocks: Blocks): Promise<Mesh> {
    const figures = async (corners: number, nodes: string, elements: string): Promise<Figures> => ({
        corners,
        nodes: await blocks.words(nodes),
        elements: await blocks.words(elements),
    });
    return {
        positions: await blocks.floats("positions"),
        nodeRows: await blocks.words("nodeRows"),
        nodeIds: await blocks.words("nodeIds"),
        elementRows: await blocks.words("elementRows"),
        elementIds: await blocks.words("elementIds"),
        triangles: await figures(3, "triangles", "triangleElements"),
        edges: await figures(2, "edges", "edgeElements"),
        outline: await figures(2, "outline", "outlineElements"),
        lines: await figures(2, "lines", "lineElements"),
        points: await figures(1, "points", "pointElements"),
    };
}

/** The part of an element that is shown. */
export function partOf(description: Description, element: number): number {
    let low = 0;
    let high = description.parts.length - 1;
    while (low < high) {
        const middle = (low + high) >> 1;
        if (element < description.parts[middle].end) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return low;
}

/** The elements of a part: from the first to the end. */
export function elementsOf(description: Description, part: number): [number, number] {
    return [part === 0 ? 0 : description.parts[part - 1].end, description.parts[part].end];
}

/** All nodes of an element that is shown, each once. */
export function nodesOf(mesh: Mesh, element: number): number[] {
    const nodes = new Set<number>();
    for (const figures of [mesh.triangles, mesh.lines, mesh.points]) {
        for (let i = figures.elements.indexOf(element); i >= 0; i = figures.elements.indexOf(element, i + 1)) {
            for (let corner = 0; corner < figures.corners; ++corner) {
                nodes.add(figures.nodes[i * figures.corners + corner]);
            }
        }
    }
    return [...nodes];
}
