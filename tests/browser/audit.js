// What a reader with a keyboard, a screen reader or weak eyes would stumble over: a list of texts, empty if nothing.
(() => {
    const found = [];
    const isSeen = (node) => node.checkVisibility({checkVisibilityCSS: true}) && !node.closest('.hidden-text, .skip, [aria-hidden=true]');
    const tell = (what, node) => found.push(`${what}: ${node.cloneNode(false).outerHTML || node.textContent}`.slice(0, 160));

    // --- Names, order and structure ---
    const nameOf = (node) => node.getAttribute('aria-label') || (node.labels && [...node.labels].map((label) => label.textContent).join('')) ||
        (/^(INPUT|SELECT)$/.test(node.tagName) ? '' : node.textContent);
    for (const node of document.querySelectorAll('a[href], button, input, select, summary, [tabindex="0"], section, nav, aside')) {
        const heading = document.getElementById(node.getAttribute('aria-labelledby'));
        if (!(nameOf(node) || (heading && heading.textContent) || '').trim()) {
            tell('no name', node);
        }
    }
    const ids = [...document.querySelectorAll('[id]')].map((node) => node.id);
    ids.filter((id, at) => ids.indexOf(id) !== at).forEach((id) => found.push(`id twice: ${id}`));
    document.querySelectorAll('th:not([scope])').forEach((node) => tell('head of a table without scope', node));
    let level = 0;
    for (const node of document.querySelectorAll('h1, h2, h3, h4, h5')) {
        if (Number(node.tagName[1]) > level + 1) {
            tell('heading skips a level', node);
        }
        level = Number(node.tagName[1]);
    }

    // --- Width ---
    if (document.documentElement.scrollWidth > window.innerWidth) {
        found.push(`wider than the screen: ${document.documentElement.scrollWidth}`);
    }

    // --- Contrast, as WCAG 2.1 computes it ---
    const parse = (text) => (text.match(/[\d.]+/g) || []).map(Number);
    const luminance = ([r, g, b]) => [r, g, b].map((value) => value / 255)
        .map((value) => (value <= 0.03928 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4))
        .reduce((sum, value, at) => sum + value * [0.2126, 0.7152, 0.0722][at], 0);
    const contrast = (a, b) => {
        const [low, high] = [luminance(a), luminance(b)].sort((x, y) => x - y);
        return (high + 0.05) / (low + 0.05);
    };
    const groundOf = (node) => {
        for (let one = node; one; one = one.parentElement) {
            const cell = one.closest('g.cell') && one.closest('g.cell').querySelector('rect');
            const color = parse(cell ? getComputedStyle(cell).fill : getComputedStyle(one).backgroundColor);
            if (color.length === 3) { // behind no transparency; a pattern has no color, and its texts an edge of the ground
                return color;
            }
            if (cell) {
                return groundOf(one.closest('svg').parentElement);
            }
        }
        return [255, 255, 255];
    };
    const check = (node, color, what) => {
        const value = contrast(parse(color), groundOf(node));
        if (value < 4.5) {
            tell(`contrast ${value.toFixed(2)} of ${what}`, node);
        }
    };
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    while (walker.nextNode()) {
        const node = walker.currentNode.parentElement;
        if (walker.currentNode.data.trim() && !/^(SCRIPT|STYLE|NOSCRIPT|title|OPTION)$/.test(node.tagName) && isSeen(node)) {
            check(node, getComputedStyle(node)[node.closest('svg') ? 'fill' : 'color'], walker.currentNode.data.trim().slice(0, 30));
        }
    }
    document.querySelectorAll('input[placeholder]').forEach((node) => isSeen(node) && check(node, getComputedStyle(node, '::placeholder').color, node.placeholder));
    return found.slice(0, 20);
})()
