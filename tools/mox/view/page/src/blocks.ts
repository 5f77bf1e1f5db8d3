/** Loads the blocks of numbers that stand in the page, or that the program serves. */
export class Blocks {
    constructor(private readonly served: boolean) {}

    has(name: string): boolean {
        return this.served || document.getElementById(`block-${name}`) !== null;
    }

    async load(name: string): Promise<ArrayBuffer> {
        return inflate(this.served ? await fetched(name) : inPage(name));
    }

    async words(name: string): Promise<Uint32Array> {
        return new Uint32Array(whole(await this.load(name), name));
    }

    async floats(name: string): Promise<Float32Array> {
        return new Float32Array(whole(await this.load(name), name));
    }
}

function inPage(name: string): Uint8Array<ArrayBuffer> {
    const text = document.getElementById(`block-${name}`)?.textContent;
    if (text === undefined) {
        throw new Error(`the page has no block ${name}`);
    }
    return decodeBase64(text);
}

export function decodeBase64(text: string): Uint8Array<ArrayBuffer> {
    const binary = atob(text);
    const bytes = new Uint8Array(binary.length);
    for (let i = 0; i < binary.length; ++i) {
        bytes[i] = binary.charCodeAt(i);
    }
    return bytes;
}

async function fetched(name: string): Promise<Uint8Array<ArrayBuffer>> {
    const response = await fetch(`block/${name}`);
    if (!response.ok) {
        throw new Error(`mox does not answer any more, or has no ${name}: ${response.status}`);
    }
    return new Uint8Array(await response.arrayBuffer());
}

/** A block without numbers is empty, since browsers refuse a stream of nothing. */
async function inflate(bytes: Uint8Array<ArrayBuffer>): Promise<ArrayBuffer> {
    if (bytes.length === 0) {
        return new ArrayBuffer(0);
    }
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("deflate"));
    return new Response(stream).arrayBuffer();
}

function whole(buffer: ArrayBuffer, name: string): ArrayBuffer {
    if (buffer.byteLength % 4 !== 0) {
        throw new Error(`the block ${name} is damaged`);
    }
    return buffer;
}
