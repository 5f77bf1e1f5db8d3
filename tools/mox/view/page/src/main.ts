import { App } from "./app.ts";
import { Blocks } from "./blocks.ts";
import type { Description } from "./description.ts";
import { byId } from "./dom.ts";
import { loadMesh } from "./mesh.ts";

async function start(): Promise<void> {
    const message = byId("message");
    try {
        message.textContent = "Reading the model …";
        const description = JSON.parse(byId("model").textContent ?? "") as Description;
        const blocks = new Blocks(description.served === true);
        const app = new App(description, blocks, await loadMesh(blocks));
        await app.start();
    } catch (error) {
        message.className = "problem";
        message.textContent = `The model can't be shown: ${error instanceof Error ? error.message : String(error)}`;
        throw error;
    }
}

void start();
