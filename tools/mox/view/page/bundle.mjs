// Bundles the page and writes it as a C++ source: node bundle.mjs OUTPUT
import { build } from "esbuild";
import { createHash } from "node:crypto";
import { readFileSync, writeFileSync } from "node:fs";

const Place = "<!--MODEL-->";

async function bundle(entry) {
    const result = await build({
        entryPoints: [entry],
        bundle: true,
        minify: true,
        format: "iife",
        target: "es2022",
        charset: "ascii",
        legalComments: "none",
        write: false,
    });
    return result.outputFiles[0].text.trimEnd();
}

// Either would end the element or hide its end.
function refuseEnds(text, kind) {
    for (const end of [`</${kind}`, "<!--"]) {
        if (text.toLowerCase().includes(end)) {
            throw new Error(`the bundled ${kind} contains ${end}`);
        }
    }
}

function hashOf(text) {
    return `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
}

function literal(text) {
    const bytes = [...Buffer.from(text, "utf8")];
    const lines = [];
    for (let i = 0; i < bytes.length; i += 40) {
        lines.push(bytes.slice(i, i + 40).join(","));
    }
    return lines.join(",\n");
}

const script = await bundle("src/main.ts");
const style = await bundle("src/page.css");
refuseEnds(script, "script");
refuseEnds(style, "style");
const licence = readFileSync("node_modules/three/LICENSE", "utf8").trim();
if (licence.includes("--")) {
    throw new Error("the licence of three.js can't stand in a comment");
}
const policy = [
    "default-src 'none'",
    `script-src ${hashOf(script)}`,
    `style-src ${hashOf(style)}`,
    "img-src data: blob:",
    "connect-src 'none'",
    "base-uri 'none'",
    "form-action 'none'",
].join("; ");
const page = readFileSync("src/page.html", "utf8")
    .replace("<!--POLICY-->", () => `<meta http-equiv="Content-Security-Policy" content="${policy}">`)
    .replace("<!--STYLE-->", () => `<style>${style}</style>`)
    .replace("<!--LICENCE-->", () => `<!--\nThis page contains three.js:\n\n${licence}\n-->`)
    .replace("<!--SCRIPT-->", () => `<script>${script}</script>`);
const [head, tail] = page.split(Place);
writeFileSync(
    process.argv[2],
    `#include "view/pageSource.h"

namespace MoxTool {

namespace {

constexpr unsigned char Head[] = {
${literal(head)}};

constexpr unsigned char Tail[] = {
${literal(tail)}};

} // namespace

PageSource pageSource() {
    return {{reinterpret_cast<const char*>(Head), sizeof(Head)}, {reinterpret_cast<const char*>(Tail), sizeof(Tail)}};
}

} // namespace MoxTool
`,
);
