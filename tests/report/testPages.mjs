// SPDX-License-Identifier: Apache-2.0
// Opens the pages of `algdata report` in Chromium and checks what people and programs rely on.
//
//     node testPages.mjs ALGDATA MESH_ROUND DIRECTORY
import { execFileSync } from "node:child_process";
import fs from "node:fs";
import http from "node:http";
import path from "node:path";
import { pathToFileURL } from "node:url";
import axe from "axe-core";
import { startBrowser } from "./browser.mjs";
import { Checks } from "./checks.mjs";
import { Fixtures } from "./fixtures.mjs";
import * as inPage from "./inPage.mjs";

const sandboxed = "sandbox allow-same-origin; default-src 'none'; img-src 'self'; style-src 'self'";

/* Opens a page in a context of its own and collects what it complains of and requests. */
async function open(browser, url, options = {}) {
    const context = await browser.newContext({ viewport: { width: 1280, height: 900 }, ...options });
    const page = await context.newPage();
    page.setDefaultTimeout(20000);
    const seen = { complaints: [], requests: [] };
    page.on("console", message => seen.complaints.push(`console: ${message.text()}`));
    page.on("pageerror", error => seen.complaints.push(`error: ${error.message}`));
    page.on("dialog", dialog => { seen.complaints.push("a dialog"); dialog.dismiss(); });
    page.on("request", request => seen.requests.push(request.url()));
    await page.addInitScript(() => {
        window.violations = [];
        document.addEventListener("securitypolicyviolation", event =>
            window.violations.push(`${event.effectiveDirective} ${event.blockedURI}`));
    });
    await page.goto(url);
    return { page, context, seen, close: () => context.close() };
}

const urlOf = fixture => pathToFileURL(fixture.file).href;
const unfold = page => page.evaluate(() => document.querySelectorAll("details").forEach(one => { one.open = true; }));

// ---- Content -----------------------------------------------------------------------------------

function checkContent(check, fixture, content) {
    for (const fault of content.wrong.slice(0, 5))
        check(false, fault);
    check(content.wrong.length === 0, `${content.wrong.length} wrong texts or attributes`);
    check(!content.pwned, "a script of the input has run");
    check(content.scripts === 2, `${content.scripts} scripts`);
    check(content.snapshots === fixture.snapshots, `${content.snapshots} snapshots`);
    if (fixture.devices !== undefined)
        check(content.devices === fixture.devices * fixture.snapshots, `${content.devices} devices`);
    check(content.cards >= content.devices, `${content.cards} cards of ${content.devices} devices`);
    check(content.findings > 0 === fixture.findings, `${content.findings} findings`);
    if (fixture.hostile)
        check(content.text.includes("</script><script>window.pwned=1</script><!--<script>\"'&"),
            "the text of the input is not shown");
    for (const note of fixture.notes ?? [])
        check(content.text.includes(note), `"${note}" is not there`);
}

/* The tree, the findings and the tables can be seen without any script. */
async function checkSeen(check, page, fixture) {
    const selectors = ["h1", "section[id$=-findings]"];
    if (fixture.devices !== 0)
        selectors.push("svg .card", "svg .card text", "section[id$=-devices] table tbody tr");
    if (fixture.findings)
        selectors.push("section[id$=-findings] table tbody tr");
    const seen = await page.evaluate(inPage.visibleOf, selectors);
    for (const selector of selectors)
        check(seen[selector], `${selector} cannot be seen`);
}

async function checkQuiet(checks, browser, fixture) {
    const opened = await open(browser, urlOf(fixture));
    await checks.in("content, no complaint, no request", fixture.name, async check => {
        checkContent(check, fixture, await opened.page.evaluate(inPage.contentOf));
        await checkSeen(check, opened.page, fixture);
        check(opened.seen.complaints.length === 0, opened.seen.complaints.join("; "));
        check(opened.seen.requests.length === 1, `requests: ${opened.seen.requests.join(" ")}`);
        const violations = await opened.page.evaluate(() => window.violations);
        check(violations.length === 0, `violations: ${violations.join("; ")}`);
    });
    await checks.in("missing values are dashes", fixture.name, async check => {
        if (fixture.missing === undefined)
            return;
        const missing = await opened.page.evaluate(() => document.querySelectorAll(".missing").length);
        check(missing >= fixture.missing, `${missing} dashes`);
        const row = (await opened.page.evaluate(inPage.rowsOf, "Delays, as stored"))[0];
        check(row["sample 0"] === "15" && row["sample 1"] === "\u2013", `samples ${JSON.stringify(row)}`);
        check(row["sample 14"] === "\u2013", `samples ${JSON.stringify(row)}`);
    });
    return opened;
}

async function checkWithoutScripts(checks, browser, fixture) {
    await checks.in("scripts off", fixture.name, async check => {
        const { page, seen, close } = await open(browser, urlOf(fixture), { javaScriptEnabled: false });
        await checkSeen(check, page, fixture);
        const content = await page.evaluate(inPage.contentOf);
        checkContent(check, fixture, content);
        check(await page.locator("button, input, select").count() === 0, "controls that do nothing");
        check(await page.locator("article.snapshot:visible").count() === fixture.snapshots, "hidden snapshots");
        check(seen.complaints.length === 0, seen.complaints.join("; "));
        check(seen.requests.length === 1, `requests: ${seen.requests.join(" ")}`);
        await close();
    });
}

/* As viewers of build results serve a page: without its style and its script. */
async function checkSandboxed(checks, browser, fixture, server) {
    await checks.in("served under a sandbox policy", fixture.name, async check => {
        server.requests.length = 0;
        const { page, seen, close } = await open(browser, `${server.url}/${path.basename(fixture.file)}`);
        await checkSeen(check, page, fixture);
        checkContent(check, fixture, await page.evaluate(inPage.contentOf));
        const expected = /Content Security Policy|frame is sandboxed/;
        const others = seen.complaints.filter(text => !expected.test(text));
        check(others.length === 0, others.join("; "));
        check(seen.requests.length === 1, `requests: ${seen.requests.join(" ")}`);
        check(server.requests.length === 1, `requests to the server: ${server.requests.join(" ")}`);
        await close();
    });
}

function startServer(directory) {
    const requests = [];
    const server = http.createServer((request, response) => {
        requests.push(request.url);
        response.writeHead(200, { "Content-Type": "text/html", "Content-Security-Policy": sandboxed });
        response.end(fs.readFileSync(path.join(directory, path.basename(request.url))));
    });
    return new Promise(resolve => server.listen(0, "127.0.0.1", () =>
        resolve({ url: `http://127.0.0.1:${server.address().port}`, requests, close: () => server.close() })));
}

// ---- Values -------------------------------------------------------------------------------------

const dash = "\u2013";
const sorted = numbers => [...numbers].sort((a, b) => a - b);

/* The columns of a chart's table whose values the chart shows; zeros of the first ones have no mark. */
function shownColumns(chart) {
    const byName = names => chart.columns.flatMap((name, i) => names.includes(name) ? [i] : []);
    if (/-rssi$/.test(chart.id))
        return { columns: byName(["RSSI"]), zeros: false };
    if (/-rates$/.test(chart.id))
        return { columns: byName(["rx rate", "tx rate"]), zeros: false };
    if (/-delays-/.test(chart.id))
        return { columns: chart.columns.flatMap((name, i) => name.startsWith("sample ") ? [i] : []), zeros: true };
    if (/-channels$/.test(chart.id))
        return { columns: byName(["sightings"]), zeros: true };
    return { columns: chart.columns.flatMap((_, i) => i === 0 ? [] : [i]), zeros: true };
}

function cellsOf(chart, columns, zeros) {
    return chart.rows.flatMap(row => columns.map(i => row[i]))
        .filter(cell => cell !== dash && (zeros || cell !== "0")).map(Number);
}

/* A chart of many rows shows the first ones, and says so. */
function checkSame(check, chart, shown, wanted, unit) {
    if (/The chart has the first \d+ of \d+\./.test(chart.description)) {
        const strange = shown.filter(value => !wanted.some(cell => Math.abs(value - cell) <= unit * 0.11 + 1e-6));
        check(shown.length < wanted.length && strange.length === 0, `${chart.title}: not in its table: ${strange}`);
        return;
    }
    check(shown.length === wanted.length && shown.length > 0,
        `${chart.title}: ${shown.length} marks, ${wanted.length} values in the table`);
    const tolerance = unit * 0.11 + 1e-6; // coordinates have one decimal
    const tabled = sorted(wanted);
    const differing = sorted(shown).map((value, i) => [value, tabled[i]])
        .filter(([value, cell]) => !(Math.abs(value - cell) <= tolerance));
    check(differing.length === 0, `${chart.title}: ${differing.length} differ, first: ${differing[0]?.[0]} is drawn, ` +
        `${differing[0]?.[1]} is in the table`);
}

function checkChart(check, chart) {
    check(chart.title !== "" && chart.description !== "", `${chart.id}: no title or description`);
    const { columns, zeros } = shownColumns(chart);
    if (chart.cells.length !== 0) {
        const cells = chart.rows.flatMap(row => row.slice(1));
        check(JSON.stringify(cells) === JSON.stringify(chart.cells), `${chart.title}: the cells differ`);
    } else if (/-clientplot$/.test(chart.id)) {
        const at = ["RSSI", "rx rate"].map(name => chart.columns.indexOf(name));
        checkSame(check, chart, chart.marks.map(mark => mark.x), cellsOf(chart, [at[0]], true), chart.xUnit);
        checkSame(check, chart, chart.marks.map(mark => mark.y), cellsOf(chart, [at[1]], true), chart.yUnit);
    } else if (chart.yUnit !== 0) {
        checkSame(check, chart, chart.marks.map(mark => mark.y), cellsOf(chart, columns, zeros), chart.yUnit);
    } else {
        checkSame(check, chart, chart.marks.map(mark => mark.x), cellsOf(chart, columns, zeros), chart.xUnit);
    }
    const mute = chart.marks.filter(mark => mark.text !== "" && !/\d/.test(mark.text));
    check(mute.length === 0, `${chart.title}: a mark says "${mute[0]?.text}"`);
}

async function checkValues(checks, opened, fixture) {
    await checks.in("charts equal their tables", fixture.name, async check => {
        for (const chart of await opened.page.evaluate(inPage.chartsOf))
            checkChart(check, chart);
    });
}

const names = { "01": "FAP hall", "02": "RE1 living room", "03": "RE2 study", "04": "RE3 workshop",
    "05": "RE4 bedroom", "06": "RE5 attic" };
const nameOf = mac => mac.startsWith("0a4e") ? names[mac.slice(-2)] : mac;

function exported(fixtures, kind, view = "stored") {
    const text = fixtures.run("export", fixtures.at("demo"), "-k", kind, "--view", view, "-f", "ndjson");
    return text.split("\n").filter(line => line !== "").map(line => JSON.parse(line))
        .filter(one => !/history|log|previous|detail/.test(path.basename(one.source)));
}

function checkRows(check, what, rows, wanted) {
    check(rows.length === wanted.length && rows.length > 0, `${what}: ${rows.length} rows, ${wanted.length} records`);
    const differing = rows.findIndex((row, i) => JSON.stringify(row) !== JSON.stringify(wanted[i]?.map(String)));
    check(differing === -1, `${what}: ${rows[differing]} on the page, ${wanted[differing]} exported`);
}

async function checkExport(checks, opened, fixtures) {
    await checks.in("tables equal algdata export", "demo", async check => {
        const rowsOf = caption => opened.page.evaluate(inPage.rowsOf, caption);
        const pick = (rows, ...columns) => rows.map(row => columns.map(column => row[column]));
        checkRows(check, "clients",
            pick(await rowsOf("Clients"), "client", "AP", "band", "RSSI", "rx rate", "tx rate", "rx packets", "MCS"),
            exported(fixtures, "station").map(one => [one.deviceMac, nameOf(one.apMac), one.connectBand, one.rssi,
                one.rxRate, one.txRate, one.rxPackageCount, one.mcslevel]));
        const links = exported(fixtures, "bridging").filter(one => /now/.test(one.source))
            .filter(one => one.fatherDeviceMAC !== "000000000000");
        checkRows(check, "links",
            pick(await rowsOf("Links by band"), "link", "band", "RSSI", "rx rate", "tx rate", "rx MCS", "tx MCS"),
            links.flatMap(one => [0, 1, 2, 3, 4].map(band => [
                `${nameOf(one.deviceMAC)} to ${nameOf(one.fatherDeviceMAC)}`, band, one.bridgingRssi[band],
                one.bridgingRxRate[band], one.bridgingTxRate[band], one.bridgingRxMcs[band],
                one.bridgingTxMcs[band]])));
        const samples = Array.from({ length: 15 }, (_, i) => `sample ${i}`);
        checkRows(check, "delays", pick(await rowsOf("Delays, as stored"), ...samples),
            exported(fixtures, "time-delay").map(one => one.delayTime));
        for (const [view, column] of [["stored", "RSSI, as stored"], ["loaded", "as loaded"]])
            checkRows(check, "sightings", pick(await rowsOf("Sightings$"), column),
                exported(fixtures, "scanning", view).map(one => [one.rssi]));
        const air = ["band 0", "band 1", "band 2", "band 3", "band 4"];
        for (const [view, caption] of [["stored", "Air in use"], ["loaded", "Utilization"]])
            checkRows(check, caption, pick(await rowsOf(caption), ...air),
                exported(fixtures, "ap-node", view).map(one => one.wirelessChannelUtilization));
        for (const one of exported(fixtures, "score")) {
            const owner = path.basename(one.source).slice(9, 21);
            const rows = await rowsOf(`Candidate fathers of ${nameOf(owner)}`);
            const shown = Object.fromEntries(rows.map(row => [row.value, row[nameOf(one.fatherMAC)]]));
            check(shown["predicted throughput"].split(" ")[0] === String(one.thrputPredict), `score ${owner}`);
            check(shown["average delay"].split(" ")[0] === String(one.timeDelayAverage), `score ${owner}`);
            check(shown["RSSI, band 0"].split(" ")[0] === String(one.rssi[0]), `score ${owner}`);
        }
    });
}

// ---- People ---------------------------------------------------------------------------------------

async function checkAccess(checks, opened, fixture) {
    const { page } = opened;
    await unfold(page);
    for (const colorScheme of ["light", "dark"]) {
        await page.emulateMedia({ colorScheme });
        await checks.in(`accessible, ${colorScheme}`, fixture.name, async check => {
            if (!await page.evaluate(() => "axe" in window))
                await page.evaluate(axe.source);
            // Only the contrast depends on the scheme.
            const rules = colorScheme === "light" ? {} : { runOnly: ["color-contrast"] };
            const { violations, passes } = await page.evaluate(options => window.axe.run(document, options),
                { resultTypes: ["violations"], ...rules });
            check(passes.length >= (colorScheme === "light" ? 10 : 1), `${passes.length} rules apply`);
            for (const rule of violations)
                check(false, `${rule.id}: ${rule.help}: ${rule.nodes[0].html.slice(0, 200)} ` +
                    `${rule.nodes[0].failureSummary ?? ""} (${rule.nodes.length} places)`);
            check(violations.length === 0, `${violations.length} violations`);
        });
    }
    for (const [name, media] of [["light", { colorScheme: "light" }], ["dark", { colorScheme: "dark" }],
        ["print", { media: "print", colorScheme: "dark" }]]) {
        await page.emulateMedia(media);
        await checks.in("contrast in charts", `${fixture.name}, ${name}`, async check => {
            for (const pair of await page.evaluate(inPage.contrastsOf))
                check(pair.contrast >= pair.needed, `${pair.key}: ${pair.contrast.toFixed(2)}, needed ${pair.needed}`);
        });
    }
    await page.emulateMedia({ media: "screen", colorScheme: "light" });
}

async function checkNarrow(checks, opened, fixture) {
    await checks.in("320 pixels wide", fixture.name, async check => {
        await opened.page.setViewportSize({ width: 320, height: 640 });
        const { width } = await opened.page.evaluate(inPage.contentOf);
        check(width <= 320, `the page is ${width} wide`);
        await opened.page.setViewportSize({ width: 1280, height: 900 });
    });
}

/* The kinds of elements that the Tab key reaches. */
async function reached(page) {
    const kinds = new Set();
    const kindOf = () => {
        const at = document.activeElement;
        const kind = ["#snapshot", "th button", "input.filter", "svg a.card", ".switch input", ".scroll", "summary",
            "nav a", ".skip"].find(selector => at.matches(selector));
        const outlined = getComputedStyle(at).outlineStyle !== "none" || at.matches("svg a");
        return at === document.body ? "" : `${kind}${outlined ? "" : " without outline"}`;
    };
    await page.evaluate(() => window.scrollTo(0, 0));
    for (let i = 0; i < 400; ++i) {
        await page.keyboard.press("Tab");
        const kind = await page.evaluate(kindOf);
        if (kind === "")
            break;
        kinds.add(kind);
    }
    return kinds;
}

async function checkKeyboard(checks, browser, fixture) {
    await checks.in("keyboard", fixture.name, async check => {
        const { page, close } = await open(browser, urlOf(fixture));
        const kinds = await reached(page);
        const wanted = [".skip", "nav a", "svg a.card", "th button", "input.filter", ".switch input", "summary"];
        for (const kind of fixture.snapshots > 1 ? [...wanted, "#snapshot"] : wanted)
            check(kinds.has(kind), `Tab does not reach ${kind}, but ${[...kinds].join(", ")}`);
        check(![...kinds].some(kind => kind.endsWith("outline")), `${[...kinds].join(", ")}`);
        await close();
    });
}

async function checkSorting(checks, browser, fixture) {
    await checks.in("sorting and filter", fixture.name, async check => {
        const { page, close } = await open(browser, urlOf(fixture));
        const table = page.locator("article:visible section[id$=-clients] table").first();
        const head = table.locator("th").filter({ hasText: "rx rate" });
        const column = await head.evaluate(cell => cell.cellIndex);
        const values = () => table.evaluate((element, at) =>
            [...element.tBodies[0].rows].map(row => Number(row.cells[at].textContent)), column);
        const before = await values();
        for (const order of ["ascending", "descending", "ascending"]) {
            await head.locator("button").focus();
            await page.keyboard.press("Enter");
            check(await head.getAttribute("aria-sort") === order, `aria-sort is not ${order}`);
            check(await table.locator("[aria-sort]").count() === 1, "two columns are sorted");
            const wanted = order === "ascending" ? sorted(before) : sorted(before).reverse();
            check(JSON.stringify(await values()) === JSON.stringify(wanted), `not ${order}: ${await values()}`);
        }
        const filter = page.locator("article:visible section[id$=-clients] input.filter").first();
        await filter.focus();
        await page.keyboard.type("RE5 ATTIC");
        const shown = await table.locator("tbody tr:visible").allTextContents();
        check(shown.length > 0 && shown.every(text => text.includes("RE5 attic")), `filtered: ${shown}`);
        const tally = await page.locator("article:visible section[id$=-clients] [role=status]").first().textContent();
        check(tally === `${shown.length} of ${before.length}`, `the tally is ${tally}`);
        await filter.fill("");
        check(await table.locator("tbody tr:visible").count() === before.length, "rows stay hidden");
        await close();
    });
    await checks.in("stored and loaded", fixture.name, async check => {
        const { page, close } = await open(browser, urlOf(fixture));
        const shown = () => page.locator("article:visible figure[data-view]:visible")
            .evaluateAll(all => [...new Set(all.map(one => one.dataset.view))].join());
        check(await shown() === "stored", "not as stored at first");
        await page.locator("article:visible .switch input[value=loaded]").focus();
        await page.keyboard.press("Space");
        check(await shown() === "loaded", "the switch does not show the values as loaded");
        await close();
    });
}

async function checkSelector(checks, browser, fixture) {
    await checks.in("selector", fixture.name, async check => {
        const { page, close } = await open(browser, urlOf(fixture));
        const shown = () => page.locator("article.snapshot:visible").evaluateAll(all => all.map(one => one.id).join());
        const newest = `s${fixture.snapshots}`;
        check(await shown() === newest, `${await shown()} at first`);
        await page.locator("#snapshot").focus();
        await page.keyboard.press("ArrowDown");
        check(await shown() === `s${fixture.snapshots - 1}`, `${await shown()} after a step`);
        await page.reload();
        check(await shown() === `s${fixture.snapshots - 1}`, `${await shown()} after loading it again`);
        await page.locator("#snapshots tbody a").last().click();
        await page.locator("#s1").waitFor();
        check(await shown() === "s1", `${await shown()} after a link to the first`);
        check(await page.locator("#snapshot").inputValue() === "s1", "the selector names another snapshot");
        await page.goBack();
        await page.locator(`#s${fixture.snapshots - 1}`).waitFor();
        check(await shown() === `s${fixture.snapshots - 1}`, `${await shown()} after going back`);
        await close();
    });
}

/* Links to a device, to a folded row and to one of an older snapshot. */
async function checkLinks(checks, browser, fixture) {
    await checks.in("deep links", fixture.name, async check => {
        const { page, close } = await open(browser, urlOf(fixture));
        const ids = await page.evaluate(() => {
            const rows = [...document.querySelectorAll("#s1 tr[id]")].map(row => row.id);
            const folded = [...document.querySelectorAll("#s1 details tr[id]")].map(row => row.id);
            return [rows[0], rows[rows.length >> 1], folded[0], folded[folded.length - 1], "s1-findings", "s1-links"];
        });
        await close();
        for (const id of ids) {
            const linked = await open(browser, `${urlOf(fixture)}#${id}`);
            for (const how of ["opened", "loaded again"]) {
                if (how === "loaded again")
                    await linked.page.reload();
                const target = linked.page.locator(":target");
                check(await target.getAttribute("id") === id, `${id}, ${how}: not the target`);
                check(await target.isVisible(), `${id}, ${how}: not visible`);
                const top = await target.evaluate(element => element.getBoundingClientRect().top);
                check(top >= -1 && top < 900, `${id}, ${how}: ${top} from the top`);
            }
            check(linked.page.url().endsWith(`#${id}`), `${linked.page.url()} has lost the link`);
            await linked.close();
        }
    });
}

/* What a printed page looks like, from the PDF of the browser. */
async function checkPrint(checks, opened, fixture, directory) {
    await checks.in("print", fixture.name, async check => {
        await opened.page.emulateMedia({ colorScheme: "dark" });
        const pdf = path.join(directory, `${fixture.name}.pdf`);
        await opened.page.pdf({ path: pdf, format: "A4", printBackground: true });
        const text = execFileSync("pdftotext", ["-layout", pdf, "-"], { encoding: "utf8", maxBuffer: 1 << 28 });
        for (const name of await opened.page.locator("article > h2").allTextContents())
            check(text.replace(/\s+/g, " ").includes(name.trim()), `${name} is not printed`);
        check(fixture.devices === 0 || text.includes("0a4e00000001") || text.includes("M1"), "no device is printed");
        for (const folded of fixture.printed ?? [])
            check(text.includes(folded), `${folded} is not printed`);
        const picture = execFileSync("pdftoppm", ["-gray", "-r", "20", pdf], { maxBuffer: 1 << 28 });
        const white = whiteShares(picture);
        white.forEach((share, i) => check(share > 0.5, `page ${i + 1} is ${Math.round(share * 100)} % white`));
        check(white.length > 0, "no page");
        fs.rmSync(pdf);
    });
}

/* The share of white pixels of each picture of a PGM stream. */
function whiteShares(bytes) {
    const shares = [];
    for (let at = 0; at < bytes.length;) {
        const [head, width, height] = bytes.subarray(at, at + 40).toString("latin1").match(/^P5\s(\d+)\s(\d+)\s255\s/);
        const pixels = bytes.subarray(at + head.length, at + head.length + width * height);
        shares.push(pixels.filter(pixel => pixel > 250).length / pixels.length);
        at += head.length + pixels.length;
    }
    return shares;
}

// ---- Pictures --------------------------------------------------------------------------------------

async function takePictures(browser, fixture, directory) {
    for (const width of [1280, 400])
        for (const colorScheme of ["light", "dark"]) {
            const { page, close } = await open(browser, urlOf(fixture), { viewport: { width, height: 900 }, colorScheme });
            await page.screenshot({ path: path.join(directory, `${fixture.name}-${width}-${colorScheme}.png`), fullPage: true });
            await close();
        }
}

// ---- All of it ---------------------------------------------------------------------------------------

const [algdata, meshRound, directory] = process.argv.slice(2).map(one => path.resolve(one));
const fixtures = new Fixtures(algdata, meshRound, directory);
const pages = fixtures.make();
const checks = new Checks();
const { browser, close: endBrowser } = await startBrowser();
const server = await startServer(directory);
// What these are made of is on smaller pages too.
const large = ["twenty", "hostile-snapshots", "hostile-redacted"];
for (const fixture of pages) {
    const opened = await checkQuiet(checks, browser, fixture);
    await checkNarrow(checks, opened, fixture);
    if (!fixture.hostile)
        await checkValues(checks, opened, fixture);
    if (fixture.name === "demo")
        await checkExport(checks, opened, fixtures);
    await checkPrint(checks, opened, fixture, directory);
    if (!large.includes(fixture.name))
        await checkAccess(checks, opened, fixture);
    await opened.close();
    await checkWithoutScripts(checks, browser, fixture);
    await checkSandboxed(checks, browser, fixture, server);
    if (["demo", "rounds"].includes(fixture.name)) {
        await checkKeyboard(checks, browser, fixture);
        await checkSorting(checks, browser, fixture);
        await checkLinks(checks, browser, fixture);
    }
    if (["rounds", "twenty"].includes(fixture.name))
        await checkSelector(checks, browser, fixture);
    if (["demo", "rounds", "fifty", "hostile", "cycle"].includes(fixture.name))
        await takePictures(browser, fixture, directory);
}
server.close();
await endBrowser();
process.exitCode = checks.print() ? 0 : 1;
