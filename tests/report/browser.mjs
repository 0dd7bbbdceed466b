// SPDX-License-Identifier: Apache-2.0
// Starts Chromium without any flag that weakens it, except as root, where it cannot start with its sandbox.
import fs from "node:fs";
import os from "node:os";
import path from "node:path";
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
    const flags = ["--headless", "--no-first-run", "--remote-debugging-pipe", `--user-data-dir=${profile}`];
    if (process.getuid() === 0)
        flags.push("--no-sandbox");
    const browser = await chromium.launch({
        executablePath: process.env.CHROMIUM || "/usr/bin/chromium",
        ignoreDefaultArgs: true, // they switch off many features
        args: flags,
    });
    return { browser, close: () => browser.close().then(() => remove(profile)) };
}
