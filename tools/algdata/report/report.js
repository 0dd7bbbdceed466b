// SPDX-License-Identifier: Apache-2.0
// Sorts and filters tables, and switches between snapshots and between stored and
// loaded values. Everything is on the page without it.
(function () {
    "use strict";

    function make(name, attributes, text) {
        const element = document.createElement(name);
        for (const key of Object.keys(attributes || {}))
            element.setAttribute(key, attributes[key]);
        if (text !== undefined)
            element.textContent = text;
        return element;
    }

    function all(selector, within) {
        return Array.from((within || document).querySelectorAll(selector));
    }

    // ---- Sorting -----------------------------------------------------------------

    // Numbers by value, other texts by the alphabet, missing values last.
    function compare(a, b) {
        const none = "\u2013";
        if (a === none || b === none)
            return a === b ? 0 : a === none ? 1 : -1;
        const number = /^-?\d+(\.\d+)?$/;
        if (number.test(a) && number.test(b))
            return a - b;
        return a.localeCompare(b, "en", { numeric: true });
    }

    function sortBy(table, column, head) {
        const descending = head.getAttribute("aria-sort") === "ascending";
        const body = table.tBodies[0];
        const keyOf = row => (row.cells[column] ? row.cells[column].textContent : "");
        const rows = Array.from(body.rows).map((row, index) => ({ row, index, key: keyOf(row) }));
        rows.sort((a, b) => {
            const order = compare(a.key, b.key);
            const missing = (a.key === "\u2013") !== (b.key === "\u2013");
            return (descending && !missing ? -order : order) || a.index - b.index;
        });
        for (const one of rows)
            body.appendChild(one.row);
        for (const other of all("th", table.tHead))
            other.removeAttribute("aria-sort");
        head.setAttribute("aria-sort", descending ? "descending" : "ascending");
    }

    function makeSortable(table) {
        all("th", table.tHead).forEach((head, column) => {
            const button = make("button", { type: "button" }, head.textContent);
            button.addEventListener("click", () => sortBy(table, column, head));
            head.replaceChildren(button);
        });
    }

    // ---- Filter ------------------------------------------------------------------

    const fewRows = 8;

    function makeFilterable(table) {
        const body = table.tBodies[0];
        if (body.rows.length <= fewRows)
            return;
        const box = make("div", { class: "tally" });
        const label = make("label", {}, "Filter rows ");
        const input = make("input", { class: "filter", type: "search" });
        const tally = make("span", { role: "status" });
        label.append(input);
        box.append(label, " ", tally);
        table.parentNode.before(box);
        input.addEventListener("input", () => {
            const wanted = input.value.toLowerCase();
            let shown = 0;
            for (const row of body.rows) {
                row.hidden = !row.textContent.toLowerCase().includes(wanted);
                shown += row.hidden ? 0 : 1;
            }
            tally.textContent = wanted === "" ? "" : shown + " of " + body.rows.length;
        });
    }

    // ---- Snapshots ---------------------------------------------------------------

    function show(id) {
        for (const article of all("article.snapshot"))
            article.hidden = article.id !== id;
    }

    function makeSelector(controls) {
        const snapshots = JSON.parse(document.getElementById("data").textContent).snapshots;
        if (snapshots.length < 2)
            return;
        const label = make("label", {}, "Snapshot ");
        const select = make("select", { id: "snapshot" });
        for (const snapshot of snapshots)
            select.append(make("option", { value: snapshot.id }, snapshot.name));
        label.append(select);
        controls.append(label);
        select.addEventListener("change", () => {
            show(select.value);
            history.replaceState(null, "", "#" + select.value);
        });
        // A link shows the snapshot that it leads into.
        const follow = () => {
            const target = document.getElementById(decodeURIComponent(location.hash.slice(1)));
            const article = target && target.closest("article.snapshot");
            if (target && !article)
                return;
            select.value = article ? article.id : snapshots[0].id;
            show(select.value);
        };
        window.addEventListener("hashchange", follow);
        follow();
    }

    // A link into a part that is folded or filtered out shows it.
    function reveal() {
        const target = document.getElementById(decodeURIComponent(location.hash.slice(1)));
        if (!target)
            return;
        for (let at = target; at; at = at.parentElement) {
            if (at.tagName === "DETAILS")
                at.open = true;
            if (!at.matches("article"))
                at.hidden = false;
        }
        target.scrollIntoView();
    }

    // ---- Stored and loaded -------------------------------------------------------

    function makeSwitch(article) {
        const parts = all("[data-view]", article);
        if (parts.length === 0)
            return;
        const set = make("fieldset", { class: "switch" });
        set.append(make("legend", {}, "Show values"));
        const use = view => parts.forEach(part => { part.hidden = part.dataset.view !== view; });
        for (const view of ["stored", "loaded"]) {
            const label = make("label");
            const input = make("input", { type: "radio", name: "view-" + article.id, value: view });
            input.checked = view === "stored";
            input.addEventListener("change", () => use(view));
            label.append(input, " as " + view);
            set.append(label);
        }
        parts[0].before(set);
        use("stored");
    }

    all("table.sortable").forEach(makeSortable);
    all("table.sortable").forEach(makeFilterable);
    makeSelector(document.getElementById("controls"));
    all("article.snapshot").forEach(makeSwitch);
    window.addEventListener("hashchange", reveal);
    if (location.hash !== "")
        reveal();
    // Paper has the tables of the charts.
    let unfolded = [];
    window.addEventListener("beforeprint", () => {
        unfolded = all("details:not(.more)").filter(part => !part.open);
        unfolded.forEach(part => { part.open = true; });
    });
    window.addEventListener("afterprint", () => unfolded.forEach(part => { part.open = false; }));
})();
