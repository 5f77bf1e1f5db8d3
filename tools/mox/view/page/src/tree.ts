import type { Description } from "./description.ts";
import { element } from "./dom.ts";

/** Most rows that a search shows, or that one level of the tree opens with. */
const MostRows = 500;

/** The tree of the model, with a box for each node that shows or hides all parts below it. */
export class Tree {
    private readonly children: number[][];
    private readonly roots: number[] = [];
    private readonly open = new Set<number>();
    private words = "";

    constructor(
        private readonly place: HTMLElement,
        private readonly description: Description,
        private readonly hidden: Set<number>,
        private readonly changed: () => void,
    ) {
        this.children = description.tree.map(() => []);
        description.tree.forEach((node, i) => {
            (node.parent === null ? this.roots : this.children[node.parent]).push(i);
        });
        this.roots.forEach((root) => this.open.add(root));
        this.draw();
    }

    search(words: string): void {
        this.words = words.trim().toLowerCase();
        this.draw();
    }

    draw(): void {
        const list = this.words === "" ? this.listOf(this.roots) : this.found();
        this.place.replaceChildren(list);
    }

    private found(): HTMLElement {
        const names = this.description.tree.map((node, i) => ({ name: node.name.toLowerCase(), i }));
        const found = names.filter((node) => node.name.includes(this.words)).map((node) => node.i);
        return found.length === 0 ? element("p", "No name has this") : this.listOf(found);
    }

    private listOf(nodes: number[]): HTMLElement {
        const list = element("ul");
        for (const node of nodes.slice(0, MostRows)) {
            list.append(this.row(node));
        }
        if (nodes.length > MostRows) {
            list.append(element("li", `and ${nodes.length - MostRows} more; search finds them`));
        }
        return list;
    }

    private row(node: number): HTMLElement {
        const item = element("li");
        const line = element("div", "", "node");
        const isOpen = this.open.has(node) && this.words === "";
        const hasChildren = this.children[node].length > 0 && this.words === "";
        const fold = element("button", hasChildren ? (isOpen ? "▾" : "▸") : "");
        fold.type = "button";
        fold.disabled = !hasChildren;
        fold.setAttribute("aria-label", isOpen ? "Close" : "Open");
        fold.setAttribute("aria-expanded", String(isOpen));
        fold.addEventListener("click", () => {
            if (!this.open.delete(node)) {
                this.open.add(node);
            }
            this.draw();
        });
        line.append(fold, this.box(node));
        item.append(line);
        if (hasChildren && isOpen) {
            item.append(this.listOf(this.children[node]));
        }
        return item;
    }

    private box(node: number): HTMLElement {
        const parts = this.partsOf(node);
        const shown = parts.filter((part) => !this.hidden.has(part)).length;
        const label = element("label");
        const box = element("input");
        box.type = "checkbox";
        box.checked = shown > 0;
        box.indeterminate = shown > 0 && shown < parts.length;
        box.disabled = parts.length === 0;
        box.addEventListener("change", () => {
            parts.forEach((part) => (box.checked ? this.hidden.delete(part) : this.hidden.add(part)));
            this.changed();
            this.draw();
        });
        const name = this.description.tree[node].name;
        label.append(box, element("span", name === "" ? "(no name)" : name));
        return label;
    }

    private partsOf(node: number): number[] {
        const parts: number[] = [];
        const open = [node];
        for (let next = open.pop(); next !== undefined; next = open.pop()) {
            const part = this.description.tree[next].part;
            if (part !== undefined) {
                parts.push(part);
            }
            for (const child of this.children[next]) {
                open.push(child);
            }
        }
        return parts;
    }
}
