// SPDX-License-Identifier: Apache-2.0
// Pictures of pages, to look at and for the documents.
import fs from "node:fs";
import path from "node:path";
import { open, urlOf } from "./browser.mjs";

export async function takePictures(browser, fixture, directory) {
    for (const width of [1280, 400])
        for (const colorScheme of ["light", "dark"]) {
            const options = { viewport: { width, height: 900 }, colorScheme };
            const { page, close } = await open(browser, urlOf(fixture), options);
            const picture = path.join(directory, `${fixture.name}-${width}-${colorScheme}.png`);
            await page.screenshot({ path: picture, fullPage: true });
            await close();
        }
}

/* The part of a page from its first line over time on. */
async function linesOverTime(page) {
    const boxes = await page.locator("#changes figure").evaluateAll(all => all.map(one => {
        const box = one.getBoundingClientRect();
        return [box.top + window.scrollY, box.bottom + window.scrollY];
    }));
    const top = Math.min(...boxes.map(box => box[0]));
    const height = Math.max(...boxes.map(box => box[1])) - top;
    return page.screenshot({ fullPage: true, clip: { x: 0, y: top, width: 1080, height } });
}

/* The pictures of the documents: the top of a page, and lines over snapshots. */
export async function renewImages(browser, pages, images) {
    const maxBytes = 150000;
    const viewport = { width: 1080, height: 726 };
    const shots = [["demo", "report.png", page => page.screenshot()],
        ["rounds", "report-snapshots.png", linesOverTime]];
    fs.mkdirSync(images, { recursive: true });
    for (const [name, image, shoot] of shots) {
        const fixture = pages.find(one => one.name === name);
        const { page, close } = await open(browser, urlOf(fixture), { viewport });
        const bytes = await shoot(page);
        if (bytes.length > maxBytes)
            throw new Error(`${image} has ${bytes.length} bytes, at most ${maxBytes}`);
        fs.writeFileSync(path.join(images, image), bytes);
        await close();
    }
}
