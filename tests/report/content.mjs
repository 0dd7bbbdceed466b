// SPDX-License-Identifier: Apache-2.0
// What a page shows, with scripts, without them, and under the policy of viewers.
import fs from "node:fs";
import http from "node:http";
import path from "node:path";
import { open, urlOf } from "./browser.mjs";
import * as inPage from "./inPage.mjs";

const sandboxed = "sandbox allow-same-origin; default-src 'none'; img-src 'self'; style-src 'self'";

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

export async function checkQuiet(checks, browser, fixture) {
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

export async function checkWithoutScripts(checks, browser, fixture) {
    await checks.in("scripts off", fixture.name, async check => {
        const { page, seen, close } = await open(browser, urlOf(fixture), { javaScriptEnabled: false });
        await checkSeen(check, page, fixture);
        const content = await page.evaluate(inPage.contentOf);
        checkContent(check, fixture, content);
        check(await page.locator("button, input, select").count() === 0, "controls that do nothing");
        const snapshots = await page.locator("article.snapshot:visible").count();
        check(snapshots === fixture.snapshots, `${snapshots} snapshots can be seen`);
        check(seen.complaints.length === 0, seen.complaints.join("; "));
        check(seen.requests.length === 1, `requests: ${seen.requests.join(" ")}`);
        await close();
    });
}

/* As viewers of build results serve a page: without its style and its script. */
export async function checkSandboxed(checks, browser, fixture, server) {
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

export function startServer(directory) {
    const requests = [];
    const server = http.createServer((request, response) => {
        requests.push(request.url);
        response.writeHead(200, { "Content-Type": "text/html", "Content-Security-Policy": sandboxed });
        response.end(fs.readFileSync(path.join(directory, path.basename(request.url))));
    });
    const address = () => `http://127.0.0.1:${server.address().port}`;
    return new Promise(resolve => server.listen(0, "127.0.0.1", () =>
        resolve({ url: address(), requests, close: () => server.close() })));
}
