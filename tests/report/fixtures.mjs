// SPDX-License-Identifier: Apache-2.0
// Makes the homes of the tests and writes their pages.
import { execFileSync, spawnSync } from "node:child_process";
import fs from "node:fs";
import path from "node:path";

export const hostile = "</script><script>window.pwned=1</script><!--<script>\"'&\u2028\u0000\u202e";
const badUtf8 = Buffer.from([0xff, 0xc3, 0x28, 0xed, 0xa0, 0x80]);
const root = "000000000000";
const macAt = number => (0x0a4e00000001 + number).toString(16).padStart(12, "0");
const nodeLine = (number, father, air = 56) =>
    `${macAt(number)} ${father} ${air} 14 16 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1000 0 0 0 0 0\n`;

/* A name may be bytes that are not UTF-8. */
function write(directory, name, content) {
    fs.mkdirSync(directory, { recursive: true });
    fs.writeFileSync(Buffer.concat([Buffer.from(directory + "/"), Buffer.from(name)]), content);
}

function lines(count, lineOf) {
    return Array.from({ length: count }, (_, i) => lineOf(i)).join("");
}

/* The files of a home, with each field of the first lines replaced by the text, one after the other. */
function spoil(from, to, text) {
    const word = text.replaceAll(" ", "");
    for (const name of fs.readdirSync(from).filter(one => one.endsWith(".txt"))) {
        const rows = fs.readFileSync(path.join(from, name), "latin1").split("\n").filter(row => row !== "");
        const spoiled = [...rows];
        for (const row of rows.slice(0, 1)) {
            const fields = row.split(" ");
            fields.forEach((_, at) =>
                spoiled.push(fields.map((field, i) => i === at ? word : field).join(" ")));
        }
        const bytes = Buffer.from(spoiled.join("\n"));
        write(to, name, Buffer.concat([bytes, Buffer.from("\n"), badUtf8, Buffer.from(" 1 2\n")]));
    }
}

/*
 * The pages: a name, its file and what it shows. `status` is that of the command; `devices`,
 * `snapshots`, `missing` values and `steps` of heat maps are counts; `notes` are texts.
 */
export class Fixtures {
    constructor(algdata, meshRound, directory) {
        this.algdata = algdata;
        this.meshRound = meshRound;
        this.directory = directory;
        this.pages = [];
    }

    run(...args) {
        return execFileSync(this.algdata, args,
            { encoding: "utf8", maxBuffer: 1 << 28, stdio: ["ignore", "pipe", "ignore"] });
    }

    at(...parts) {
        return path.join(this.directory, ...parts);
    }

    demo(directory, rounds) {
        fs.mkdirSync(directory, { recursive: true });
        execFileSync(this.meshRound, rounds ? [directory, "--rounds", String(rounds)] : [directory]);
        fs.copyFileSync(new URL("../../examples/mesh_round/algdata.toml", import.meta.url),
            path.join(directory, "algdata.toml"));
        return directory;
    }

    add(name, about, ...args) {
        const file = this.at(`${name}.html`);
        const done = spawnSync(this.algdata, ["report", ...args, "-o", file], { encoding: "utf8" });
        if (done.status !== (about.status ?? 0))
            throw new Error(`algdata report ${args.join(" ")}: status ${done.status}, ${done.stderr}`);
        this.pages.push({ name, file, snapshots: 1, findings: true, ...about });
    }

    make() {
        const demo = this.demo(this.at("demo"));
        this.add("demo", { devices: 6 }, demo);
        for (const round of [1, 2, 3])
            this.demo(this.at("rounds", `round${round}`), round);
        const named = ["--config", path.join(demo, "algdata.toml")];
        this.add("rounds", { devices: 6, snapshots: 3 }, this.at("rounds"), ...named);
        execFileSync("tar", ["czf", this.at("home.tar.gz"), "-C", this.directory, "demo"]);
        this.add("archive", { devices: 6 }, this.at("home.tar.gz"), ...named);
        for (let round = 1; round <= 20; ++round)
            this.demo(this.at("twenty", `r${round}`), round);
        this.add("twenty", { devices: 6, snapshots: 20 }, this.at("twenty"), ...named);
        this.makeHostile(demo);
        this.makeUnusual(demo);
        return this.pages;
    }

    makeHostile(demo) {
        const fileName = hostile.replaceAll("/", "_").replaceAll("\0", "");
        const home = this.at("hostile", fileName);
        spoil(demo, home, hostile);
        write(home, fileName + ".txt", nodeLine(0, root) + nodeLine(3, macAt(0)));
        write(home, Buffer.concat([badUtf8, Buffer.from("_re_0a4e00000004.txt")]),
            fs.readFileSync(path.join(demo, "score_re_0a4e00000004.txt")));
        const binary = Array.from({ length: 4096 }, (_, i) => (i * 167 + (i >> 8)) & 255);
        write(home, "binary.txt", Buffer.from(binary));
        const quoted = JSON.stringify(hostile.replaceAll("\0", ""));
        write(home, "algdata.toml", `[names]\n${lines(6, i => `"${macAt(i)}" = ${quoted}\n`)}`);
        this.add("hostile", { hostile: true }, home);
        this.add("hostile-redacted", {}, "--redact", home);
        execFileSync("cp", ["-r", home, home + "2"]); // fs.cpSync cannot copy names that are not UTF-8
        this.add("hostile-snapshots", { snapshots: 2, hostile: true }, home, home + "2");
    }

    makeUnusual(demo) {
        const home = (name, file, content) => {
            write(this.at(name), file, content);
            return this.at(name);
        };
        this.add("none", { devices: 0, findings: false },
            home("none", "scan.txt", lines(3, () => `${macAt(0)} 0a6000000001  0   6  40\n`)));
        this.add("empty", { devices: 0 }, home("empty", "a.txt", ""));
        this.add("one", { devices: 1, findings: false }, home("one", "rank.txt", `${macAt(0)} ${root} 0\n`));
        const fatherOf = i => i === 0 ? root : macAt((i - 1) / 3 | 0);
        this.add("fifty", { devices: 50, steps: 5 },
            home("fifty", "node.txt", lines(50, i => nodeLine(i, fatherOf(i), i * 2))));
        const fathers = [root, macAt(2), macAt(1), macAt(99)];
        this.add("cycle", { devices: 4, notes: ["in a cycle", "no file lists its father"] },
            home("cycle", "node.txt", lines(4, i => nodeLine(i, fathers[i]))));
        const few = this.at("few");
        for (const name of ["decision.txt", "bridging_now.txt", "stations_res.txt"])
            write(few, name, fs.readFileSync(path.join(demo, name)));
        this.add("missing-files", { findings: false }, few);
        const short = this.at("short");
        write(short, "delay_re_0a4e00000002.txt", `${macAt(0)} 15 x 17 18 19 20 21 22 23 24 25 26\n` +
            lines(2, i => `${macAt(i + 2)}${" 12".repeat(15)}\n`));
        write(short, "stations.txt", fs.readFileSync(path.join(demo, "stations_res.txt"), "utf8")
            .split("\n").map((row, i) => i === 1 ? row.replace(/ +\S+$/, "") : row).join("\n"));
        this.add("missing-values", { missing: 4 }, short);
        const partly = this.at("partly");
        execFileSync("cp", ["-r", demo, partly]);
        write(partly, "damaged.tar.gz", fs.readFileSync(this.at("home.tar.gz")).subarray(0, 2000));
        this.add("incomplete", { status: 2, devices: 6 }, partly, path.join(partly, "damaged.tar.gz"));
    }
}
