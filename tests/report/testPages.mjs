// SPDX-License-Identifier: Apache-2.0
// Opens the pages of `algdata report` in Chromium and checks what people and programs rely on.
//
//     node testPages.mjs ALGDATA MESH_ROUND DIRECTORY [--update-images]
import path from "node:path";
import { startBrowser } from "./browser.mjs";
import { Checks } from "./checks.mjs";
import { checkQuiet, checkSandboxed, checkWithoutScripts, startServer } from "./content.mjs";
import { Fixtures } from "./fixtures.mjs";
import { checkAccess, checkKeyboard, checkLinks, checkNarrow, checkPrint, checkSelector, checkSorting }
    from "./people.mjs";
import { renewImages, takePictures } from "./pictures.mjs";
import { checkExport, checkValues } from "./values.mjs";

const [algdata, meshRound, directory] = process.argv.slice(2, 5).map(one => path.resolve(one));
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
process.exitCode = checks.print() ? 0 : 1;
if (process.argv[5] === "--update-images")
    await renewImages(browser, pages, new URL("../../docs/images/", import.meta.url).pathname);
await endBrowser();
