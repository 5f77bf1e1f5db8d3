// mox view in a real browser. Run by scripts/test-desktop, which sets MOX, CHROMIUM, PICTURES and, where real models
// are, MODELS.
import assert from "node:assert/strict";
import { spawn, spawnSync } from "node:child_process";
import { existsSync, mkdirSync, mkdtempSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { request } from "node:http";
import { tmpdir } from "node:os";
import { basename, extname, join } from "node:path";
import { after, before, describe, test } from "node:test";
import { pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

const { MOX, CHROMIUM = "/usr/bin/chromium", CANTILEVER, MODELS = "", PICTURES } = process.env;
/** For a page on a machine that others load, in milliseconds. */
const Patience = 300000;
const folder = mkdtempSync(join(tmpdir(), "mox-view-"));
mkdirSync(PICTURES, { recursive: true });
const hasGmsh = /Gmsh +[0-9]/.test(mox("version"));

let browser;
before(async () => {
    browser = await chromium.launch({ executablePath: CHROMIUM });
});
after(async () => {
    await browser.close();
    rmSync(folder, { recursive: true });
});

/** Runs mox and gives what it wrote. */
function run(...options) {
    const { status, stdout, stderr } = spawnSync(MOX, options, { encoding: "utf8", maxBuffer: 1 << 28 });
    if (status !== 0) {
        throw new Error(stderr);
    }
    return { stdout, stderr };
}

function mox(...options) {
    return run(...options).stdout;
}

function pageOf(model, ...options) {
    const page = join(folder, `${basename(model, ".mox")}.html`);
    mox("view", "--no-open", "--overwrite", "--output", page, ...options, model);
    return pathToFileURL(page).href;
}

/** Opens a page and waits for its picture. Everything it asks for and every complaint is noted. */
async function open(address, { width = 1000, height = 700, colorScheme = "light" } = {}) {
    const context = await browser.newContext({
        viewport: { width, height },
        colorScheme,
        reducedMotion: "reduce",
        acceptDownloads: true,
    });
    context.setDefaultTimeout(Patience);
    const page = await context.newPage();
    page.asked = [];
    page.complaints = [];
    page.on("request", (asked) => page.asked.push(asked.url()));
    page.on("pageerror", (error) => page.complaints.push(error.message));
    page.on("dialog", (dialog) => page.complaints.push(`dialog ${dialog.message()}`));
    page.on("console", (message) => {
        const isDriver = message.text().includes("GL Driver Message"); // the browser measures itself
        if (["error", "warning"].includes(message.type()) && !isDriver) {
            page.complaints.push(message.text());
        }
    });
    const start = performance.now();
    const work = await processorTime();
    await page.goto(address);
    await page.waitForFunction(() => window.moxView?.scene.pictures > 0, null, { timeout: Patience });
    page.firstPicture = { time: performance.now() - start, work: (await processorTime()) - work };
    await settle(page);
    return page;
}

/** What all processes of the browser have worked so far, in milliseconds. */
async function processorTime() {
    const session = await browser.newBrowserCDPSession();
    const { processInfo } = await session.send("SystemInfo.getProcessInfo");
    await session.detach();
    return 1000 * processInfo.reduce((sum, one) => sum + one.cpuTime, 0);
}

/** Waits until what was asked for is in the picture. */
async function settle(page) {
    await page.evaluate(() => window.moxView.refresh());
    await page.evaluate(
        () => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(() => requestAnimationFrame(done)))),
    );
}

async function picture(page, name) {
    await page.screenshot({ path: join(PICTURES, `${name}.png`) });
}

/** The different colours of the drawn picture, each with its count of pixels. */
async function colours(page) {
    return page.evaluate(() => {
        window.moxView.scene.draw();
        const source = document.getElementById("canvas");
        const canvas = document.createElement("canvas");
        canvas.width = source.width;
        canvas.height = source.height;
        const to = canvas.getContext("2d", { willReadFrequently: true });
        to.drawImage(source, 0, 0);
        const { data } = to.getImageData(0, 0, canvas.width, canvas.height);
        const found = {};
        for (let i = 0; i < data.length; i += 4) {
            const key = `${data[i]},${data[i + 1]},${data[i + 2]}`;
            found[key] = (found[key] ?? 0) + 1;
        }
        return found;
    });
}

async function close(page, isServed = false) {
    const own = page.asked[0];
    const origin = new URL(own).origin;
    const foreign = page.asked.filter((url) =>
        isServed ? !url.startsWith(origin) : url !== own && !url.startsWith("blob:") && !url.startsWith("data:"),
    );
    assert.deepEqual(foreign, [], "requests");
    assert.deepEqual(page.complaints, [], "complaints");
    assert.equal(await page.locator("#message").textContent(), "");
    assert.ok(await page.evaluate(() => !window.moxView.scene.renderer.getContext().isContextLost()));
    await page.context().close();
}

/** A square of n x n quadrangles in Gmsh's format, with a displacement and results on the elements. */
function squareModel(name, n, part = "square", results = ["Height"]) {
    const nodes = [];
    const moves = [];
    for (let y = 0; y <= n; ++y) {
        for (let x = 0; x <= n; ++x) {
            const number = y * (n + 1) + x + 1;
            nodes.push(`${number} ${x} ${y} 0`);
            moves.push(`${number} 0 0 ${(Math.sin((6 * x) / n) * n) / 20}`);
        }
    }
    const elements = [];
    const values = [];
    for (let y = 0; y < n; ++y) {
        for (let x = 0; x < n; ++x) {
            const first = y * (n + 1) + x + 1;
            elements.push(`${elements.length + 1} 3 2 1 1 ${first} ${first + 1} ${first + n + 2} ${first + n + 1}`);
            values.push(`${values.length + 1} ${x + y}`);
        }
    }
    const mesh = join(folder, `${name}.msh`);
    const data = (kind, title, width, rows) =>
        `$${kind}\n1\n"${title}"\n1\n0\n3\n0\n${width}\n${rows.length}\n${rows.join("\n")}\n$End${kind}\n`;
    writeFileSync(
        mesh,
        `$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$PhysicalNames\n1\n2 1 "${part}"\n$EndPhysicalNames\n` +
            `$Nodes\n${nodes.length}\n${nodes.join("\n")}\n$EndNodes\n` +
            `$Elements\n${elements.length}\n${elements.join("\n")}\n$EndElements\n` +
            data("NodeData", "Displacement", 3, moves) +
            results.map((result, i) => data("ElementData", result, 1, i === 0 ? values : values.map(scattered))).join(""),
    );
    const model = join(folder, `${name}.mox`);
    mox("import", "--overwrite", mesh, model);
    return model;
}

/** A number in place of another that no compressor makes small. */
function scattered(_, i) {
    return `${i + 1} ${Math.abs(Math.sin((i + 1) * 12.9898) * 43758.5453) % 1}`;
}

/** Rows of a dataset as the reader finds them, by the ids of their nodes or elements. */
function rowsOf(model, node, dataset, ...options) {
    const csv = mox("extract", "-n", node, "-d", dataset, "--ids", "--no-header", ...options, model);
    const rows = new Map();
    for (const line of csv.trim().split("\n")) {
        const [id, ...numbers] = line.split(",").map(Number);
        rows.set(id, numbers);
    }
    return rows;
}

/** What the page says of what was picked. */
async function pickedTexts(page) {
    return page.evaluate(() => ({
        title: document.querySelector("#picked h2")?.textContent ?? "",
        rows: Object.fromEntries(
            [...document.querySelectorAll("#picked tr")].map((row) => [row.cells[0].textContent, row.cells[1].textContent]),
        ),
    }));
}

function legendTexts(page) {
    return page.$$eval("#legend .ticks span", (ticks) => ticks.map((tick) => tick.textContent));
}

describe("the cantilever", () => {
    let address;
    before(() => (address = pageOf(CANTILEVER)));

    test("is shown deformed, in many colours, without a request or a complaint", async () => {
        const page = await open(address);
        assert.ok(Object.keys(await colours(page)).length > 200);
        assert.match(await page.textContent("#legend"), /Displacement: Magnitude.*Load step 5/s);
        await picture(page, "cantilever");
        await close(page);
    });

    test("swings in a mode: the shape moves, the legend stays", async () => {
        const page = await open(address);
        const mode = await page.$$eval("#field option", (all) => all.find((one) => /mode/i.test(one.text))?.value);
        assert.ok(mode !== undefined);
        await page.selectOption("#field", mode);
        await settle(page);
        assert.equal(await page.inputValue("#mover"), mode, "the mode moves the nodes");
        const legend = await legendTexts(page);
        await picture(page, "mode");
        await page.click("#swing");
        const places = new Set();
        for (let i = 0; i < 5; ++i) {
            await page.waitForTimeout(150);
            places.add(await page.evaluate(() => window.moxView.scene.placeOf(600).toArray().join()));
        }
        assert.ok(places.size > 2, `${places.size} places`);
        assert.deepEqual(await legendTexts(page), legend);
        await close(page);
    });

    test("has von Mises stress on its elements, whose range the legend shows", async () => {
        const page = await open(address);
        const stress = await page.$$eval("#field option", (all) => all.find((one) => /mises/i.test(one.text))?.value);
        await page.selectOption("#field", stress);
        await settle(page);
        await page.check("#extremes");
        await settle(page);
        await picture(page, "stress");
        const marks = await page.$$eval("#marks span", (all) => all.map((mark) => mark.textContent));
        const ticks = (await legendTexts(page)).map(Number);
        const greatest = Number(marks.find((mark) => mark.startsWith("max"))?.slice(4));
        assert.ok(Math.abs(ticks[0] - greatest) <= 0.01 * Math.abs(greatest), `${ticks[0]}, ${greatest}`);
        await close(page);
    });

    test("changes its colours with the step, unless the range follows", async () => {
        const page = await open(`${address}#range=all`);
        const last = await colours(page);
        await page.click("#previous");
        await settle(page);
        const before = await colours(page);
        assert.notDeepEqual(before, last);
        assert.match(await page.textContent("#legend"), /Load step 4/);
        await close(page);
    });

    test("plays through its steps and stops", async () => {
        const page = await open(address);
        await page.fill("#speed", "4");
        await page.click("#play");
        const steps = new Set();
        for (let i = 0; i < 8; ++i) {
            await page.waitForTimeout(200);
            steps.add(await page.inputValue("#step"));
        }
        assert.ok(steps.size > 2, [...steps].join());
        await page.click("#play");
        const stopped = await page.inputValue("#step");
        await page.waitForTimeout(600);
        assert.equal(await page.inputValue("#step"), stopped);
        await close(page);
    });

    test("is the same from the address that the page shows", async () => {
        const page = await open(address);
        await page.selectOption("#map", "cividis");
        await page.selectOption("#bands", "8");
        await page.selectOption("#cut", "y");
        await page.focus("#canvas");
        await page.keyboard.press("ArrowLeft");
        await page.keyboard.press("+");
        await settle(page);
        const link = page.url();
        assert.match(link, /map=cividis/);
        const other = await open(link);
        const [one, two] = [await colours(page), await colours(other)];
        const shared = Object.keys(one).filter((colour) => Math.abs((two[colour] ?? 0) - one[colour]) < 40);
        assert.ok(shared.length > 0.95 * Object.keys(one).length, `${shared.length} of ${Object.keys(one).length}`);
        await picture(other, "cut");
        await close(page);
        await close(other);
    });

    test("takes of an address only what it has", async () => {
        const page = await open(`${address}#field=99&column=99&mover=3&step=99&hidden=99,1000&bands=-3&map=jet`);
        assert.match(await page.textContent("#legend"), /Displacement: Magnitude/);
        await close(page);
    });

    test("has no more colours than bands and greys where the range is in bands", async () => {
        const page = await open(`${address}#bands=5&edges=0&map=viridis`);
        const found = Object.entries(await colours(page)).filter(([, count]) => count > 300);
        // Each band in the shades of a few flat sides.
        assert.ok(found.length <= 5 * 6 + 8, `${found.length} colours`);
        await close(page);
    });

    test("saves a picture with its legend", async () => {
        const page = await open(address);
        const waiting = page.waitForEvent("download");
        await page.click("#picture");
        const file = await waiting;
        assert.equal(file.suggestedFilename(), "cantilever.mox.png");
        await file.saveAs(join(PICTURES, "saved.png"));
        const legend = await page.evaluate(() => {
            const canvas = window.moxView.picture();
            const { data } = canvas.getContext("2d").getImageData(canvas.width - 200, 20, 180, 200);
            return new Set(data).size;
        });
        assert.ok(legend > 50, `${legend} different values where the legend is`);
        await close(page);
    });

    test("hides a part and finds it by its name", async () => {
        const page = await open(address);
        const all = await colours(page);
        await page.click("#hideAll");
        await settle(page);
        assert.ok(Object.keys(await colours(page)).length < 5);
        const name = await page.evaluate(() => window.moxView.description.parts[0].name);
        await page.fill("#search", name);
        await page.check("#tree input");
        await settle(page);
        const some = Object.keys(await colours(page)).length;
        assert.ok(some > 1 && some <= Object.keys(all).length);
        await page.click("#showAll");
        await settle(page);
        assert.deepEqual(await colours(page), all);
        await close(page);
    });

    test("refuses a range that is none, and keeps one that is", async () => {
        const page = await open(address);
        await page.selectOption("#range", "fixed");
        await page.fill("#low", "5");
        await page.fill("#high", "1");
        await page.locator("#high").blur();
        assert.match(await page.textContent("#limitsProblem"), /lower one first/);
        await page.fill("#low", "0.5");
        await page.locator("#low").blur();
        await settle(page);
        assert.equal(await page.textContent("#limitsProblem"), "");
        const ticks = await legendTexts(page);
        assert.ok(ticks[0].startsWith("1.0") && ticks[0].endsWith("▲"), ticks[0]);
        assert.ok(ticks.at(-1).startsWith("0.5") && ticks.at(-1).endsWith("▼"), ticks.at(-1));
        await close(page);
    });

    for (const [width, height] of [
        [1000, 700],
        [390, 780],
    ]) {
        for (const colorScheme of ["light", "dark"]) {
            test(`fits a window of ${width} pixels in the ${colorScheme}`, async () => {
                const page = await open(address, { width, height, colorScheme });
                const back = await page.evaluate(() => getComputedStyle(document.body).backgroundColor);
                assert.equal(back, colorScheme === "dark" ? "rgb(22, 25, 29)" : "rgb(246, 247, 249)");
                assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), width);
                await picture(page, `${colorScheme}-${width}`);
                await close(page);
            });
        }
    }
});

describe("a square of known numbers", { skip: !hasGmsh }, () => {
    let model;
    let address;
    before(() => {
        model = squareModel("square", 4);
        address = pageOf(model);
    });

    test("gives for each picked node and element what the reader gives", async () => {
        const page = await open(`${address}#factor=0&mover=-1`);
        const displacements = rowsOf(model, "/square/square", "Displacement", "-s", "first");
        for (const node of [0, 7, 12, 24]) {
            const at = await page.evaluate((place) => window.moxView.scene.project(place), node);
            const box = await page.locator("#canvas").boundingBox();
            const inwards = (size, place) => (place < size / 2 ? 3 : -3);
            await page.mouse.click(box.x + at.x + inwards(box.width - 200, at.x), box.y + at.y + inwards(box.height, at.y));
            const { title, rows } = await pickedTexts(page);
            const id = Number(title.replace("Node ", ""));
            assert.equal(id, await page.evaluate((place) => window.moxView.mesh.nodeIds[place], node));
            const z = rows.Displacement_z ?? rows["Displacement_z"];
            assert.equal(Math.fround(Number(z)), Math.fround(displacements.get(id)[2]), `node ${id}`);
            assert.equal(rows.Coordinates, `${(id - 1) % 5}, ${Math.floor((id - 1) / 5)}, 0`);
        }
        await page.selectOption("#pickKind", "element");
        const field = await page.$$eval("#field option", (all) => all.find((one) => one.text.startsWith("Height"))?.value);
        await page.selectOption("#field", field);
        await settle(page);
        const heights = rowsOf(model, "/square/square", "Height", "-s", "first");
        for (const [x, y] of [[0.5, 0.5], [2.5, 1.5], [3.5, 3.5]]) {
            const corner = Math.floor(y) * 5 + Math.floor(x);
            const [a, b] = await page.evaluate(
                ([one, other]) => [window.moxView.scene.project(one), window.moxView.scene.project(other)],
                [corner, corner + 6],
            );
            const box = await page.locator("#canvas").boundingBox();
            await page.mouse.click(box.x + (a.x + b.x) / 2, box.y + (a.y + b.y) / 2);
            const { title, rows } = await pickedTexts(page);
            const id = Number(title.replace("Element ", ""));
            assert.equal(Number(rows.Height), heights.get(id)[0], title);
            assert.equal(Number(rows.Height), Math.floor(x) + Math.floor(y));
        }
        await picture(page, "picked");
        await close(page);
    });

    test("has a legend from the least to the greatest number", async () => {
        const page = await open(address);
        const field = await page.$$eval("#field option", (all) => all.find((one) => one.text.startsWith("Height"))?.value);
        await page.selectOption("#field", field);
        await settle(page);
        const ticks = await legendTexts(page);
        assert.equal(Number(ticks[0]), 6);
        assert.equal(Number(ticks.at(-1)), 0);
        await close(page);
    });
});

describe("names that look like markup", { skip: !hasGmsh }, () => {
    test("are shown as text and run nothing", async () => {
        const part = "</script><img src=x onerror=alert(1)><!--<script>";
        const result = "<b onmouseover=alert(2)>&lt;'`${alert(3)}";
        const page = await open(pageOf(squareModel("hostile", 3, part, [result])));
        assert.ok((await page.textContent("#tree")).includes(part), await page.textContent("#tree"));
        const options = await page.$$eval("#field option", (all) => all.map((one) => one.textContent));
        assert.ok(options.some((text) => text.startsWith(result)), options.join());
        await page.selectOption("#field", { index: options.findIndex((text) => text.startsWith(result)) });
        await settle(page);
        assert.ok((await page.textContent("#legend")).startsWith(result));
        assert.equal(await page.locator("img, b").count(), 0);
        await picture(page, "hostile");
        await close(page);
    });
});

describe("a model of 200,000 elements", { skip: !hasGmsh }, () => {
    let model;
    before(() => (model = squareModel("large", 448)));

    test("has its first picture within three seconds", async () => {
        const page = await open(pageOf(model));
        // On a machine that others load, the browser's own work says more than the clock.
        const { time, work } = page.firstPicture;
        console.log(`first picture after ${(time / 1000).toFixed(1)} s, with ${(work / 1000).toFixed(1)} s of work`);
        await picture(page, "large");
        assert.ok(Math.min(time, work) < 3000, `${time} ms, ${work} ms of work`);
        await close(page);
    });

    test("is served whole where a page has no room for its surface", async () => {
        assert.throws(() => pageOf(model, "--max-size", "1"), /surface too large for a page of 1 MB.*--serve/);
        const { address, stop } = await serve(model);
        try {
            const served = await open(address);
            assert.ok(Object.keys(await colours(served)).length > 50);
            await close(served, true);
        } finally {
            stop();
        }
    });
});

describe("a model with more results than a page has room for", { skip: !hasGmsh }, () => {
    test("says what is left out, and can't choose it", async () => {
        const names = Array.from({ length: 120 }, (_, i) => `Result ${i + 1}`);
        const page = await open(pageOf(squareModel("wide", 120, "square", names), "--max-size", "1"));
        assert.match(await page.textContent("#noteList"), /of 121 results are left out/);
        const last = page.locator("#field option").last();
        assert.match(await last.textContent(), /^Result 120 .*left out$/);
        assert.ok(await last.isDisabled());
        await picture(page, "left-out");
        await close(page);
    });
});

/** Starts mox view --serve and waits for its address. */
async function serve(model) {
    const child = spawn(MOX, ["view", "--serve", "--no-open", model], { stdio: ["ignore", "ignore", "pipe"] });
    const address = await new Promise((found, failed) => {
        let text = "";
        child.stderr.on("data", (bytes) => {
            text += bytes;
            const url = /http:\S+/.exec(text);
            if (url) {
                found(url[0]);
            }
        });
        child.on("exit", () => failed(new Error(text)));
    });
    const ended = new Promise((done) => child.on("exit", (code, signal) => done({ code, signal })));
    return { address, child, ended, stop: () => child.kill("SIGKILL") };
}

/** The status that a server answers, with headers that a browser would not let a page choose. */
function status(address, { path, headers = {}, method = "GET" } = {}) {
    const url = new URL(address);
    return new Promise((done, failed) => {
        const asked = request(
            { host: url.hostname, port: url.port, path: path ?? url.pathname, method, headers: { host: url.host, ...headers } },
            (answer) => {
                answer.resume();
                done(answer.statusCode);
            },
        );
        asked.on("error", failed);
        asked.end();
    });
}

describe("mox view --serve", () => {
    test("answers its own page to this machine alone, and ends with Ctrl-C", async (context) => {
        let server;
        try {
            server = await serve(CANTILEVER);
        } catch (error) {
            if (/cpp-httplib/.test(error.message)) {
                context.skip("built without cpp-httplib");
                return;
            }
            throw error;
        }
        const { address, child, ended, stop } = server;
        try {
            const url = new URL(address);
            assert.equal(url.hostname, "127.0.0.1");
            assert.equal(await status(address), 200);
            assert.equal(await status(address, { path: "/" }), 404, "the secret is needed");
            assert.equal(await status(address, { path: `${url.pathname}block/positions` }), 200);
            assert.equal(await status(address, { path: `${url.pathname}block/nothing` }), 404);
            assert.equal(await status(address, { path: `${url.pathname}../../etc/passwd` }), 404);
            assert.equal(await status(address, { headers: { host: "example.org" } }), 403);
            assert.equal(await status(address, { headers: { host: `localhost.example:${url.port}` } }), 403);
            assert.equal(await status(address, { headers: { origin: "http://example.org" } }), 403);
            assert.equal(await status(address, { headers: { origin: "null" } }), 403);
            assert.equal(await status(address, { headers: { "sec-fetch-site": "cross-site" } }), 403);
            assert.equal(await status(address, { method: "POST" }), 403);
            const page = await open(address);
            await page.click("#previous");
            await settle(page);
            assert.match(await page.textContent("#legend"), /Load step 4/);
            await close(page, true);
            child.kill("SIGINT");
            const { signal } = await ended;
            assert.equal(signal, "SIGINT");
        } finally {
            stop();
        }
    });
});

describe("models made by others", { skip: !existsSync(MODELS) && "none are here" }, () => {
    for (const file of existsSync(MODELS) ? readdirSync(MODELS) : []) {
        if (![".e", ".g", ".exo", ".cgns", ".msh"].includes(extname(file))) {
            continue;
        }
        test(`${file} is seen`, async () => {
            const model = join(folder, `${basename(file, extname(file))}.mox`);
            mox("import", "--overwrite", join(MODELS, file), model);
            const page = await open(pageOf(model));
            const found = await colours(page);
            const background = Math.max(...Object.values(found));
            const all = Object.values(found).reduce((sum, count) => sum + count, 0);
            assert.ok(all - background > 20, `${all - background} pixels differ from the background`);
            await picture(page, `model-${basename(file, extname(file))}`);
            await close(page);
        });
    }
});
