// SPDX-License-Identifier: Apache-2.0
// Counts checks by group and keeps what does not hold.

export class Checks {
    constructor() {
        this.groups = new Map();
    }

    group(name) {
        if (!this.groups.has(name))
            this.groups.set(name, { count: 0, faults: [], milliseconds: 0 });
        return this.groups.get(name);
    }

    /* Runs a task; its checks belong to the group. An error in it is a fault too. */
    async in(name, about, task) {
        const group = this.group(name);
        const started = Date.now();
        const check = (holds, text) => {
            ++group.count;
            if (!holds)
                group.faults.push(`${about}: ${text}`);
        };
        try {
            await task(check);
        } catch (error) {
            check(false, error.stack);
        }
        group.milliseconds += Date.now() - started;
    }

    /* One line per group; true if everything holds. */
    print() {
        const maxFaults = 12;
        let count = 0;
        let faults = 0;
        for (const [name, group] of this.groups) {
            const verdict = group.faults.length === 0 ? "ok" : `${group.faults.length} do not hold`;
            const seconds = (group.milliseconds / 1000).toFixed(1);
            const figures = `${String(group.count).padStart(6)} checks ${seconds.padStart(6)} s`;
            console.log(`${name.padEnd(44)} ${figures}  ${verdict}`);
            for (const fault of group.faults.slice(0, maxFaults))
                console.log(`    ${fault}`);
            if (group.faults.length > maxFaults)
                console.log(`    and ${group.faults.length - maxFaults} more`);
            count += group.count;
            faults += group.faults.length;
        }
        console.log(`${count} checks, ${faults} do not hold`);
        return faults === 0;
    }
}
