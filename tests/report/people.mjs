// SPDX-License-Identifier: Apache-2.0
// What people do with a page: read, sort, filter, follow links, print; with a keyboard and a narrow screen.
import { execFileSync } from "node:child_process";
import fs from "node:fs";
import path from "node:path";
import axe from "axe-core";
import { open, urlOf } from "./browser.mjs";
import * as inPage from "./inPage.mjs";

const sorted = numbers => [...numbers].sort((a, b) => a - b);

export async function checkAccess(checks, opened, fixture) {
    const { page } = opened;
    await page.evaluate(() => document.querySelectorAll("details").forEach(one => { one.open = true; }));
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
            const pairs = await page.evaluate(inPage.contrastsOf);
            const steps = new Set(pairs.flatMap(pair => pair.key.match(/heattext t\d/) ?? []));
            check(fixture.steps === undefined || steps.size === fixture.steps, `${steps.size} steps of heat`);
            for (const pair of pairs)
                check(pair.contrast >= pair.needed,
                    `${pair.key}: ${pair.contrast.toFixed(2)}, needed ${pair.needed}`);
        });
    }
    await page.emulateMedia({ media: "screen", colorScheme: "light" });
}

export async function checkNarrow(checks, opened, fixture) {
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
        const kind = ["#snapshot", "th button", "input.filter", "svg a.card", ".switch input", ".scroll",
            "summary", "nav a", ".skip"].find(selector => at.matches(selector));
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

export async function checkKeyboard(checks, browser, fixture) {
    await checks.in("keyboard", fixture.name, async check => {
        const { page, close } = await open(browser, urlOf(fixture));
        const kinds = await reached(page);
        const wanted = [".skip", "nav a", "svg a.card", "th button", "input.filter", ".switch input",
            "summary"];
        for (const kind of fixture.snapshots > 1 ? [...wanted, "#snapshot"] : wanted)
            check(kinds.has(kind), `Tab does not reach ${kind}, but ${[...kinds].join(", ")}`);
        check(![...kinds].some(kind => kind.endsWith("outline")), `${[...kinds].join(", ")}`);
        await close();
    });
}

export async function checkSorting(checks, browser, fixture) {
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
            const shown = await values();
            check(JSON.stringify(shown) === JSON.stringify(wanted), `not ${order}: ${shown}`);
        }
        const clients = page.locator("article:visible section[id$=-clients]");
        const filter = clients.locator("input.filter").first();
        await filter.focus();
        await page.keyboard.type("RE5 ATTIC");
        const shown = await table.locator("tbody tr:visible").allTextContents();
        check(shown.length > 0 && shown.every(text => text.includes("RE5 attic")), `filtered: ${shown}`);
        const tally = await clients.locator("[role=status]").first().textContent();
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

export async function checkSelector(checks, browser, fixture) {
    await checks.in("selector", fixture.name, async check => {
        const { page, close } = await open(browser, urlOf(fixture));
        const shown = () => page.locator("article.snapshot:visible")
            .evaluateAll(all => all.map(one => one.id).join());
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
export async function checkLinks(checks, browser, fixture) {
    await checks.in("deep links", fixture.name, async check => {
        const { page, close } = await open(browser, urlOf(fixture));
        const ids = await page.evaluate(() => {
            const rows = [...document.querySelectorAll("#s1 tr[id]")].map(row => row.id);
            const folded = [...document.querySelectorAll("#s1 details tr[id]")].map(row => row.id);
            return [rows[0], rows[rows.length >> 1], folded[0], folded[folded.length - 1],
                "s1-findings", "s1-links"];
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

// Of A4 within the margins of the browser. What is up to twice as wide, it prints smaller.
const paperWidth = 717;

/* What a printed page looks like, from the PDF of the browser. */
export async function checkPrint(checks, opened, fixture, directory) {
    await checks.in("print", fixture.name, async check => {
        await opened.page.emulateMedia({ colorScheme: "dark" });
        const pdf = path.join(directory, `${fixture.name}.pdf`);
        await opened.page.pdf({ path: pdf, format: "A4", printBackground: true });
        const text = execFileSync("pdftotext", ["-layout", pdf, "-"],
            { encoding: "utf8", maxBuffer: 1 << 28 });
        for (const name of await opened.page.locator("article > h2").allTextContents())
            check(text.replace(/\s/g, "").includes(name.replace(/\s/g, "")), `${name} is not printed`);
        const named = /0a4e00000001|M1/.test(text);
        check(named || fixture.devices === 0 || fixture.hostile, "no device is printed");
        check(fixture.name !== "demo" || text.includes("median (quartiles)"), "no chart is printed");
        await opened.page.emulateMedia({ media: "print" });
        await opened.page.setViewportSize({ width: paperWidth, height: 1000 });
        const widths = await opened.page.evaluate(() =>
            [...document.querySelectorAll("table")].map(table => table.getBoundingClientRect().right));
        const widest = Math.max(0, ...widths);
        check(widest <= 2 * paperWidth, `a table ends at ${widest} of ${paperWidth}`);
        await opened.page.setViewportSize({ width: 1280, height: 900 });
        await opened.page.emulateMedia({ media: "screen" });
        const picture = execFileSync("pdftoppm", ["-gray", "-r", "20", pdf], { maxBuffer: 1 << 28 });
        const white = whiteShares(picture);
        white.forEach((share, i) =>
            check(share > 0.5, `page ${i + 1} is ${Math.round(share * 100)} % white`));
        check(white.length > 0, "no page");
        fs.rmSync(pdf);
    });
}

/* The share of white pixels of each picture of a PGM stream. */
function whiteShares(bytes) {
    const shares = [];
    for (let at = 0; at < bytes.length;) {
        const start = bytes.subarray(at, at + 40).toString("latin1");
        const [head, width, height] = start.match(/^P5\s(\d+)\s(\d+)\s255\s/);
        const pixels = bytes.subarray(at + head.length, at + head.length + width * height);
        shares.push(pixels.filter(pixel => pixel > 250).length / pixels.length);
        at += head.length + pixels.length;
    }
    return shares;
}
