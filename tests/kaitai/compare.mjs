// Compiles docs/format/mox.ksy, reads files with the generated classes, and compares what they find with the dumps
// (docs/format/dump.md, with numbers and storage) of this project's readers.
//
//     node compare.mjs mox.ksy FOLDER...
//
// In each folder every NAME.json is the dump of NAME.mox. Needs the packages of package.json in node_modules.

import { createRequire } from "node:module";
import fs from "node:fs";
import path from "node:path";
import zlib from "node:zlib";

const require = createRequire(import.meta.url);
const Compiler = require("kaitai-struct-compiler");
const { KaitaiStream } = require("kaitai-struct");
const YAML = require("yaml");

// --- The generated classes

async function classesOf(description) {
    const files = await (Compiler.compile ?? new Compiler().compile).call(
        Compiler, "javascript", YAML.parse(fs.readFileSync(description, "utf8")), null, false);
    const module = { exports: {} };
    const load = (name) => (name === "kaitai-struct/KaitaiStream" ? KaitaiStream : require(name));
    new Function("module", "exports", "require", files["Mox.js"])(module, module.exports, load);
    return module.exports.Mox ?? module.exports;
}

// --- A file as its dump shows it

const DECODER = new TextDecoder("utf-8", { fatal: true, ignoreBOM: true });
const VARIABLE_TYPES = {
    1: "Coordinates", 4: "Connectivity0", 5: "Connectivity1", 6: "Connectivity2", 9: "Polylength", 12: "NodeScalar",
    13: "NodeVector", 14: "NodeSixA", 15: "NodeSixB", 16: "ElementScalar", 17: "ElementVector", 18: "ElementSixA",
    19: "ElementSixB", 20: "ThirdScalar", 21: "ThirdVector", 22: "ThirdSixA", 23: "ThirdSixB", 24: "FourthScalarA",
    25: "FourthScalarB", 26: "FourthVector", 27: "FourthSixA", 28: "FourthSixB",
};
const SEPARATOR = 0x1e;

function text(bytes) {
    try {
        return DECODER.decode(bytes);
    } catch {
        return { bytes: Buffer.from(bytes).toString("hex") };
    }
}

function float(value) {
    return Number.isFinite(value) ? value : { NaN: "nan", Infinity: "inf", "-Infinity": "-inf" }[String(value)];
}

class Model {
    constructor(mox, bytes) {
        this.mox = mox;
        this.file = new mox(new KaitaiStream(bytes.buffer.slice(bytes.byteOffset, bytes.byteOffset + bytes.length)));
        this.blocks = [];
        for (let part = this.file.firstPart; part !== undefined; part = part.next) {
            this.blocks.push(...part.blocks);
        }
        this.tree = this.stream("Mox Tree", mox.MoxTree);
        this.light = this.stream("Light Data", mox.LightData, this.tree);
        this.records = this.stream("Attributes", mox.Attributes).records.values();
        this.materials = this.stream("Resources", mox.Resources).materials.values();
        this.saves = this.stream("Global Information", mox.GlobalInformation);
        this.heavy = this.bytesOf("Heavy Data");
    }

    bytesOf(name) {
        const contents = this.blocks.filter((block) => block.record.name === name)
            .map((block) => block.body.content?.bytes ?? block.body.plain?.bytes);
        if (contents.includes(undefined)) {
            throw new Error(`a block of "${name}" has lost its content`);
        }
        return Buffer.concat(contents);
    }

    stream(name, Type, ...parameters) {
        const bytes = Uint8Array.from(this.bytesOf(name));
        const stream = new KaitaiStream(bytes.buffer);
        const result = new Type(stream, null, null, ...parameters);
        if (!stream.isEof() && name !== "Global Information") {
            throw new Error(`"${name}" goes on after its last record`);
        }
        return result;
    }

    dump() {
        return {
            blocks: this.blocks.map((block, id) => ({ id, number: block.record.number, length: block.record.lenBlock,
                flags: block.record.flags, reserved: block.record.reserved, name: block.record.name })),
            saves: this.saves.saves.map(({ body }) => ({
                version: text(body.version.value), sourceName: text(body.sourceName.value),
                sourceVersion: text(body.sourceVersion.value), formatVersion: text(body.formatVersion.value),
                date: text(body.date.value), computer: text(body.computer.value), user: text(body.user.value),
                comment: text(body.comment.value) })),
            resultAttributes: this.saves.numResultAttributes,
            nodes: this.tree.nodes.map((node, i) => this.node(node, this.light.descriptors[i].body)),
        };
    }

    node(node, body) {
        const result = { id: node.id, parent: node.parent, name: text(node.name.value), type: node.type.value,
            version: node.version.value, previous: node.previous, next: node.next, descriptor: node.ofsLightData };
        switch (node.type.value) {
        case "Group":
            return { ...result, translation: body.translation, rotation: body.rotation, scale: body.scale,
                kind: body.kind, attributes: this.attributes() };
        case "Shape":
            return { ...result, material: this.material() };
        case "Geometry":
            return { ...result, datasets: body.datasets.map((dataset) => this.dataset(dataset)) };
        case "NodeSets":
            return { ...result, setCount: body.body.numSets, bytes: body.body.lenPayload,
                position: body.body.ofsHeavyData, sets: this.sets(body.body) };
        default:
            return result;
        }
    }

    attributes() {
        const record = this.records.next().value;
        const lists = [["integer", record.integers], ["float", record.floats], ["text", record.texts],
            ["double", record.doubles]].map(([name, list]) => [name, list.items.values()]);
        const found = record.keys.items.map((key, i) => {
            const [name, values] = lists[record.kinds.items[i]];
            const value = values.next().value;
            return [key.value, { key: text(key.value), [name]: name === "text" ? text(value.value) : value }];
        });
        return found.sort(([one], [other]) => Buffer.compare(one, other)).map(([, attribute]) => attribute);
    }

    material() {
        const { body } = this.materials.next().value;
        return { version: body.version.value, diffuse: body.diffuse, specular: body.specular,
            emissive: body.emissive.slice(0, 3), ambient: body.ambient, transparency: body.transparency,
            shininess: body.shininess ?? 0, flag: body.flag ?? 0 };
    }

    dataset(dataset) {
        const key = Buffer.from(dataset.key.value);
        const end = key.indexOf(SEPARATOR);
        const result = { name: text(end < 0 ? key : key.subarray(0, end)),
            type: VARIABLE_TYPES[dataset.variableType] ?? `type ${dataset.variableType}`,
            element: { 1: "float", 5: "unsigned" }[dataset.elementType] ?? `element type ${dataset.elementType}`,
            vibration: dataset.isVibration !== 0 };
        if (end >= 0) {
            result.step = text(key.subarray(end + 1));
        }
        const attributes = this.attributes();
        if (dataset.link !== undefined) {
            return { ...result, link: { node: dataset.link.node, dataset: dataset.link.index },
                ...(attributes.length === 0 ? {} : { attributes }) };
        }
        const { array } = dataset;
        const rows = array.width === 0 ? 0 : Math.floor(array.lenNumbers / (4 * array.width));
        return { ...result, attributes, shape: [rows, array.width], bytes: array.lenNumbers,
            position: array.ofsHeavyData, numbers: this.numbers(array, rows, dataset.elementType) };
    }

    numbers(array, rows, elementType) {
        const bytes = Uint8Array.from(this.heavy.subarray(array.ofsHeavyData, array.ofsHeavyData + array.lenNumbers));
        const { columns } = new this.mox.Numbers(new KaitaiStream(bytes.buffer), null, null, rows, array.width);
        const number = Buffer.alloc(4);
        const at = (column, row) => {
            column.planes.forEach((plane, place) => { number[place] = plane[row]; });
            return elementType === this.mox.Element.F32 ? number.readFloatLE() : number.readUInt32LE();
        };
        return Array.from({ length: rows }, (_, row) => {
            const values = columns.map((column) => at(column, row));
            return array.width === 1 ? values[0] : values;
        });
    }

    sets({ numSets, ofsHeavyData, lenPayload }) {
        const bytes = Uint8Array.from(this.heavy.subarray(ofsHeavyData, ofsHeavyData + lenPayload));
        const payload = new this.mox.NodeSetsPayload(new KaitaiStream(bytes.buffer));
        return Array.from({ length: numSets }, (_, i) => ({
            name: text(payload.names.value.subarray(payload.nameOffsets.items[i], payload.nameOffsets.items[i + 1])),
            members: payload.firsts.items.map((first, j) => [first, payload.seconds.items[j]])
                .slice(payload.memberOffsets.items[i], payload.memberOffsets.items[i + 1]) }));
    }
}

// --- Comparison

// What the files do not hold, or the description leaves to a program.
const LEFT_OUT = new Set(["fileVersion", "streams", "children", "holder", "unknown"]);
const LEFT_OUT_OF_BLOCKS = new Set(["position", "overwritten"]);
let compared = 0;

function compare(expected, actual, place) {
    if (Array.isArray(expected) || (expected !== null && typeof expected === "object")) {
        const left = place.startsWith(".blocks") ? LEFT_OUT_OF_BLOCKS : LEFT_OUT;
        const keys = (value) => Object.keys(value ?? {}).filter((key) => !left.has(key)).sort().join();
        if (keys(expected) !== keys(actual)) {
            throw new Error(`${place}: ${keys(expected)} and not ${keys(actual)}`);
        }
        for (const key of Object.keys(expected)) {
            if (!left.has(key)) {
                compare(expected[key], actual[key], `${place}.${key}`);
            }
        }
        return;
    }
    ++compared;
    // A float in a dump has the fewest digits that give it.
    const found = typeof actual === "number" ? float(actual) : actual;
    if (!Object.is(expected, found) && !(typeof expected === "number" && Object.is(Math.fround(expected), found))) {
        throw new Error(`${place}: ${JSON.stringify(expected)} and not ${JSON.stringify(found)}`);
    }
}

// Integers of 64 bits are the only ones above 2^53, and no file of the folders has such positions.
function dumpOf(file) {
    return JSON.parse(fs.readFileSync(file, "utf8"));
}

// Empty entries as a writer leaves them are not in a dump.
function withoutEmptyEntries(blocks) {
    return blocks.filter(({ name, length, flags, reserved, number, id }) => name !== "\u000bEmpty Block "
        || length !== 0 || flags !== 0 || reserved !== 0 || number !== (id + 1) % 256);
}

const [description, ...folders] = process.argv.slice(2);
const mox = await classesOf(description);
let files = 0;
let failed = 0;
for (const folder of folders) {
    for (const name of fs.readdirSync(folder).filter((entry) => entry.endsWith(".mox")).sort()) {
        const file = path.join(folder, name);
        const dump = dumpOf(file.replace(/mox$/, "json"));
        // Blocks that lie too low are what the description can't say.
        if (dump.blocks.some((block) => block.overwritten) || JSON.stringify(dump).includes('"unreadable"')) {
            console.log(`${name}: left out, since not all of it can be read`);
            continue;
        }
        try {
            const actual = new Model(mox, fs.readFileSync(file)).dump();
            compare(dump, { ...actual, blocks: withoutEmptyEntries(actual.blocks) }, "");
            ++files;
        } catch (error) {
            ++failed;
            console.error(`${name}: ${error.message}`);
        }
    }
}
console.log(`${files} files, ${compared} values: equal`);
if (failed > 0 || files < 15) {
    process.exit(1);
}
