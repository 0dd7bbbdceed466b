// SPDX-License-Identifier: Apache-2.0
// Functions that run in the page. Each is sent there as it is, so it uses nothing from outside.

/* What is in the page, and texts that no page may have. */
export function contentOf() {
    const none = /\b(NaN|undefined|Infinity|nan|inf)\b/;
    const hidden = /[\0-\x08\x0b-\x1f\x7f\u200e\u200f\u2028-\u202e\u2066-\u2069\ufffd]/;
    const wrong = [];
    const own = element => element.closest("script, style");
    const walker = document.createTreeWalker(document.documentElement, NodeFilter.SHOW_ALL);
    for (let node = walker.currentNode; node; node = walker.nextNode()) {
        if (node.nodeType === Node.COMMENT_NODE)
            wrong.push(`a comment: ${node.data}`);
        if (node.nodeType === Node.TEXT_NODE && !own(node.parentElement)) {
            if (none.test(node.data) || hidden.test(node.data))
                wrong.push(`the text ${JSON.stringify(node.data)}`);
        }
        for (const attribute of node.attributes ?? []) {
            if (none.test(attribute.value) || hidden.test(attribute.value))
                wrong.push(`${node.tagName} ${attribute.name}=${JSON.stringify(attribute.value)}`);
            if (attribute.name === "style" || attribute.name.startsWith("on"))
                wrong.push(`${node.tagName} has ${attribute.name}`);
            if (/^(src|href|action|data)$/.test(attribute.name) && !attribute.value.startsWith("#"))
                wrong.push(`${node.tagName} leads to ${attribute.value}`);
        }
    }
    const all = selector => [...document.querySelectorAll(selector)];
    const ids = all("[id]").map(element => element.id);
    for (const link of all("a[href]"))
        if (!document.getElementById(decodeURIComponent(link.getAttribute("href").slice(1))))
            wrong.push(`a link to nothing: ${link.getAttribute("href")}`);
    if (new Set(ids).size !== ids.length)
        wrong.push("an id is there twice");
    return {
        wrong,
        pwned: "pwned" in window,
        scripts: all("script").length,
        cards: all("svg .card").length,
        devices: all("section[id$=-devices] tbody tr").length,
        findings: all("section[id$=-findings] tbody tr").length,
        snapshots: all("article.snapshot").length,
        tables: all("table").length,
        charts: all("svg[role=img]").length,
        text: document.body.textContent,
        width: document.documentElement.scrollWidth,
    };
}

/* Whether the first element of each selector can be seen. */
export function visibleOf(selectors) {
    return Object.fromEntries(selectors.map(selector => {
        const element = document.querySelector(selector);
        return [selector, element !== null && element.checkVisibility() &&
            element.getBoundingClientRect().height > 0];
    }));
}

/* The charts: the values of their marks, read off their axes, and the cells of their tables. */
export function chartsOf() {
    const numbers = (svg, anchor, coordinate) => {
        const ticks = [...svg.querySelectorAll(`text.tick[text-anchor=${anchor}]`)]
            .filter(tick => /^-?[\d.]+$/.test(tick.textContent))
            .map(tick => ({ at: Number(tick.getAttribute(coordinate)), value: Number(tick.textContent) }));
        const [first, last] = [ticks[0], ticks[ticks.length - 1]];
        if (!first || first === last)
            return undefined;
        const middle = anchor === "end" ? 4 : 0; // the baseline of a text is below its middle
        const unit = (last.value - first.value) / (last.at - first.at);
        return { unit, valueAt: at => first.value + (at - first.at + middle) * unit };
    };
    return [...document.querySelectorAll("figure.chart")].map(figure => {
        const svg = figure.querySelector("svg[role=img]");
        const marks = [...svg.querySelectorAll("use")]
            .filter(use => use.querySelector("title") || use.getAttribute("href") === "#sample");
        const x = numbers(svg, "middle", "x");
        const y = numbers(svg, "end", "y");
        const table = figure.querySelector("table");
        return {
            id: svg.getAttribute("aria-labelledby").split(" ")[0].replace(/-title$/, ""),
            title: svg.querySelector("title").textContent,
            description: svg.querySelector("desc").textContent,
            marks: marks.map(mark => ({
                x: x?.valueAt(Number(mark.getAttribute("x"))),
                y: y?.valueAt(Number(mark.getAttribute("y"))),
                text: mark.querySelector("title")?.textContent ?? "",
            })),
            xUnit: Math.abs(x?.unit ?? 0),
            yUnit: Math.abs(y?.unit ?? 0),
            cells: [...svg.querySelectorAll("text.heattext")].map(text => text.textContent),
            columns: [...table.tHead.rows[0].cells].map(cell => cell.textContent),
            rows: [...table.tBodies[0].rows].map(row => [...row.cells].map(cell => cell.textContent)),
        };
    });
}

/* The rows of the table whose caption begins like this, by column; "$" ends the caption. */
export function rowsOf(caption) {
    const table = [...document.querySelectorAll("table")]
        .find(one => `${one.caption.textContent}$`.startsWith(caption));
    const columns = [...table.tHead.rows[0].cells].map(cell => cell.textContent);
    return [...table.tBodies[0].rows].map(row =>
        Object.fromEntries([...row.cells].map((cell, i) => [columns[i], cell.textContent])));
}

/* The pairs of colours in charts, with the contrast that they have and need. */
export function contrastsOf() {
    const channels = color => {
        const found = color.match(/^rgba?\((\d+), (\d+), (\d+)(?:, ([\d.]+))?\)$/);
        return found && found[4] !== "0" ? found.slice(1, 4).map(Number) : undefined;
    };
    const luminance = color => {
        const [r, g, b] = color.map(one => one / 255)
            .map(one => one <= 0.04045 ? one / 12.92 : ((one + 0.055) / 1.055) ** 2.4);
        return 0.2126 * r + 0.7152 * g + 0.0722 * b;
    };
    const contrast = (one, other) => {
        const [a, b] = [luminance(one), luminance(other)];
        return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
    };
    const paper = channels(getComputedStyle(document.body).backgroundColor);
    const style = element => getComputedStyle(element);
    // What is behind a text: its cell, its card or the page.
    const behind = text => {
        const cell = text.matches(".heattext") ? text.previousElementSibling
            : text.closest(".card")?.querySelector(".cardbox");
        return (cell && channels(style(cell).fill)) ?? paper;
    };
    const pairs = new Map();
    const add = (what, needed, front, back) => {
        const key = `${what}: ${front} on ${back}`;
        if (!pairs.has(key))
            pairs.set(key, { key, needed, contrast: front && back ? contrast(front, back) : 0 });
    };
    for (const text of document.querySelectorAll("svg text"))
        add(`text ${text.getAttribute("class") ?? ""}`, 4.5, channels(style(text).fill), behind(text));
    for (const mark of document.querySelectorAll("svg use"))
        add("mark", 3, channels(style(mark).color), paper);
    for (const line of document.querySelectorAll(
        "svg :is(.line, .median, .whisker, .box, .branch, .leader, .heat, .cardbox)"))
        add(`line ${line.getAttribute("class")}`, 3, channels(style(line).stroke), paper);
    return [...pairs.values()];
}
