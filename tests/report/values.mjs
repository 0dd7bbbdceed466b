// SPDX-License-Identifier: Apache-2.0
// Charts show the values of their tables, and tables those of the files.
import path from "node:path";
import * as inPage from "./inPage.mjs";

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
        return { columns: byName(chart.columns.filter(name => name.startsWith("sample "))), zeros: true };
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
    const tolerance = unit * 0.11 + 1e-6; // coordinates have one decimal
    if (/The chart has the first \d+ of \d+\./.test(chart.description)) {
        const strange = shown.filter(value => !wanted.some(cell => Math.abs(value - cell) <= tolerance));
        check(shown.length < wanted.length && strange.length === 0,
            `${chart.title}: not in its table: ${strange}`);
        return;
    }
    check(shown.length === wanted.length && shown.length > 0,
        `${chart.title}: ${shown.length} marks, ${wanted.length} values in the table`);
    const tabled = sorted(wanted);
    const differing = sorted(shown).map((value, i) => [value, tabled[i]])
        .filter(([value, cell]) => !(Math.abs(value - cell) <= tolerance));
    const [drawn, cell] = differing[0] ?? [];
    check(differing.length === 0,
        `${chart.title}: ${differing.length} differ, the first: ${drawn} is drawn, ${cell} is in the table`);
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

export async function checkValues(checks, opened, fixture) {
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
    check(rows.length === wanted.length && rows.length > 0,
        `${what}: ${rows.length} rows, ${wanted.length} records`);
    const differing = rows.findIndex((row, i) =>
        JSON.stringify(row) !== JSON.stringify(wanted[i]?.map(String)));
    check(differing === -1, `${what}: ${rows[differing]} on the page, ${wanted[differing]} exported`);
}

export async function checkExport(checks, opened, fixtures) {
    await checks.in("tables equal algdata export", "demo", async check => {
        const rowsOf = caption => opened.page.evaluate(inPage.rowsOf, caption);
        const pick = (rows, ...columns) => rows.map(row => columns.map(column => row[column]));
        checkRows(check, "clients",
            pick(await rowsOf("Clients"),
                "client", "AP", "band", "RSSI", "rx rate", "tx rate", "rx packets", "MCS"),
            exported(fixtures, "station").map(one => [one.deviceMac, nameOf(one.apMac), one.connectBand,
                one.rssi, one.rxRate, one.txRate, one.rxPackageCount, one.mcslevel]));
        const links = exported(fixtures, "bridging").filter(one => /now/.test(one.source))
            .filter(one => one.fatherDeviceMAC !== "000000000000");
        checkRows(check, "links",
            pick(await rowsOf("Links by band"),
                "link", "band", "RSSI", "rx rate", "tx rate", "rx MCS", "tx MCS"),
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
            for (const [row, value] of [["predicted throughput", one.thrputPredict],
                ["average delay", one.timeDelayAverage], ["RSSI, band 0", one.rssi[0]]])
                check(shown[row].split(" ")[0] === String(value), `score ${owner}, ${row}: ${shown[row]}`);
        }
    });
}
