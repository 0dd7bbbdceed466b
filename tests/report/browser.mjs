// SPDX-License-Identifier: Apache-2.0
// Starts Chromium without any flag that weakens it, except as root, where it cannot start with its sandbox.
import fs from "node:fs";
import os from "node:os";
import path from "node:path";
import { pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

/* The last processes of the browser may still write to it. */
function remove(profile) {
    for (let attempt = 0; attempt < 50 && fs.existsSync(profile); ++attempt)
        try {
            fs.rmSync(profile, { recursive: true, force: true });
        } catch {
            Atomics.wait(new Int32Array(new SharedArrayBuffer(4)), 0, 0, 100);
        }
}

/* The browser, and what ends it. */
export async function startBrowser() {
    const profile = fs.mkdtempSync(path.join(os.tmpdir(), "report-browser-"));
    const flags = ["--headless", "--hide-scrollbars", "--no-first-run", "--remote-debugging-pipe",
        `--user-data-dir=${profile}`];
    if (process.getuid() === 0)
        flags.push("--no-sandbox");
    const browser = await chromium.launch({
        executablePath: process.env.CHROMIUM || "/usr/bin/chromium",
        ignoreDefaultArgs: true, // they switch off many features
        args: flags,
    });
    return { browser, close: () => browser.close().then(() => remove(profile)) };
}

/* Opens a page in a context of its own and collects what it complains of and requests. */
export async function open(browser, url, options = {}) {
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

export const urlOf = fixture => pathToFileURL(fixture.file).href;
