// Frames: for each PDO, group and CAN frame its facts, and its bits.

const kDrawnAtOnce = 12; // before the page is shown
const kDrawnSoon = 200; // further frames are drawn when they come into view

function freeText(frame) {
    const bytes = frame.length || 0;
    const uses = usesOfBits(frame, bytesOfFrame(frame)).slice(0, bytes * 8);
    for (const cell of frame.cells.filter((one) => one.gap && !one.name)) {
        uses.fill(0, cell.start, cell.start + cell.bits);
    }
    const free = uses.reduce((count, use) => count + (use === 0 ? 1 : 0), 0);
    return bytes ? `${free} of ${bytes * 8} bits` : null;
}

function milliseconds(time) {
    return time === null || time === undefined || time === 0 ? null : `${rounded(time)} ms`;
}

function transmissionText(frame) {
    if (frame.transmission === null || frame.transmission === undefined) {
        return null;
    }
    const words = frame.transmissionText;
    return words ? make('span', {}, shown(words), ` (${frame.transmission})`) : String(frame.transmission);
}

function identifierFact(frame) {
    if (frame.id === null || frame.id === undefined) {
        return frame.idText ? shown(frame.idText) : null;
    }
    const node = make('span', {}, make('code', {}, identifierText(frame.id, frame.extended)));
    if (frame.idText && spelledNumber(frame.idText) !== frame.id) {
        node.append(' = ', shown(frame.idText));
    }
    return node;
}

function spelledNumber(text) {
    return /^0x[0-9a-f]+$/i.test(text) ? parseInt(text, 16) : NaN;
}

function frameFacts(frame) {
    const number = (value, text) => (typeof value === 'number' ? text(value) : null);
    return definitions([
        ['Identifier', identifierFact(frame)],
        ['PGN', number(frame.pgn, (pgn) => `${pgn} (${hex(pgn, 4)})`)],
        ['Priority', number(frame.priority, String)],
        ['Destination', number(frame.destination, (address) => `${address} (${hex(address, 2)})`)],
        ['Length', counted(frame.length || 0, 'byte') + (frame.fd ? ', CAN FD' : '')],
        ['Transmission', transmissionText(frame)],
        ['Cycle', frame.cycle === frame.event ? null : milliseconds(frame.cycle)],
        ['Event time', milliseconds(frame.event)],
        ['Inhibit time', milliseconds(frame.inhibit)],
        ['Deadline', milliseconds(frame.deadline)],
        ['Free', freeText(frame)],
    ]);
}

function frameBits(frame) {
    if (!frame.cells.length && !frame.length) {
        return [make('p', {class: 'fine'}, 'Carries no data.')];
    }
    const label = `Bits of ${plain(frame.name || frame.key)}`;
    const drawing = drawMatrix(frame);
    const isLong = bytesOfFrame(frame) > 16;
    const attributes = {class: 'matrix-window', tabindex: '0', role: 'region', 'aria-label': label};
    return [
        isLong ? make('div', attributes, drawing) : drawing,
        frame.cells.length ? drawLegend(frame) : null,
    ];
}

/** Whether a kind says what the name has not said. */
function tellsMore(kind, name) {
    return Boolean(kind) && kind !== 'frame' && kind.toLowerCase() !== (name || '').toLowerCase();
}

function frameCard(line, frame) {
    const title = make('h4', {}, linked(frame.link && frame.link !== frameLink(line, frame) ? frame.link : null,
        shown(frame.name || frame.key)));
    const clash = usesOfBits(frame, bytesOfFrame(frame)).some((count) => count > 1);
    let facts = frameFacts(frame);
    const card = make('article', {class: 'card frame-card', id: frameLink(line, frame).slice(1), tabindex: '-1'},
        make('header', {}, title,
            make('p', {class: 'chips'},
                tellsMore(frame.kind, frame.name) ? chip('kind', frame.kind) : null,
                frame.direction ? chip(frame.direction, sentText(frame.direction)) : null,
                frame.enabled === false ? chip('off', 'switched off') : null,
                clash ? chip('error', 'overlap') : null)),
        frame.description ? make('p', {class: 'note'}, shown(frame.description)) : null,
        facts);
    document.addEventListener(kRenumbered, () => {
        const current = frameFacts(frame);
        facts.replaceWith(current);
        facts = current;
    });
    return {card, line, frame, drawn: false, searched: null};
}

function drawFrameBits(entry) {
    if (!entry.drawn) {
        entry.drawn = true;
        entry.card.append(...frameBits(entry.frame).filter(Boolean));
    }
}

/** All that a filter of frames looks at, in small letters. */
function searchTextOf(entry) {
    if (entry.searched === null) {
        const {frame} = entry;
        entry.searched = [frame.name, frame.key, frame.kind, sentText(frame.direction), frame.idText,
            typeof frame.id === 'number' ? identifierText(frame.id, frame.extended) : '',
            typeof frame.pgn === 'number' ? `${frame.pgn} ${hex(frame.pgn, 4)}` : '',
            ...frame.cells.map((cell) => cell.name)].join('\n').toLowerCase();
    }
    return entry.searched;
}

function filterFrames(entries) {
    const words = byId('frames-filter').value.toLowerCase().split(/\s+/).filter(Boolean);
    let count = 0;
    for (const entry of entries) {
        const fits = words.every((word) => searchTextOf(entry).includes(word));
        entry.card.hidden = !fits;
        count += fits ? 1 : 0;
    }
    for (const group of document.querySelectorAll('.frame-line')) {
        group.hidden = !group.querySelector('.frame-card:not([hidden])');
    }
    byId('frames-count').textContent = words.length ? `${grouped(count)} of ${counted(entries.length, 'frame')}` :
        counted(entries.length, 'frame');
}

/** Draws in short pieces, so that the page answers meanwhile. */
function drawSoon(entries) {
    entries.slice(0, kDrawnAtOnce).forEach(drawFrameBits);
    if (entries.length > kDrawnAtOnce) {
        setTimeout(() => drawSoon(entries.slice(kDrawnAtOnce)), 0);
    }
}

/** Draws the bits of all frames that are seen, at the latest when they are. */
function drawBits(entries) {
    drawSoon(entries.slice(0, kDrawnSoon));
    const later = new Map(entries.map((entry) => [entry.card, entry]));
    const watcher = new IntersectionObserver((seen) => {
        for (const {target} of seen.filter((one) => one.isIntersecting)) {
            drawFrameBits(later.get(target));
            watcher.unobserve(target);
        }
    }, {rootMargin: '800px'});
    entries.slice(kDrawnAtOnce).forEach((entry) => watcher.observe(entry.card));
    window.addEventListener('beforeprint', () => entries.forEach(drawFrameBits));
}

function drawFrames() {
    const entries = [];
    for (const line of data.lines.filter((one) => one.frames.length)) {
        const ofLine = line.frames.map((frame) => frameCard(line, frame));
        entries.push(...ofLine);
        byId('frames-body').append(make('div', {class: 'frame-line'}, lineHeading('h3', line),
            make('div', {class: 'cards frame-cards'}, ...ofLine.map((entry) => entry.card))));
    }
    drawBits(entries);
    afterTyping(byId('frames-filter'), () => filterFrames(entries));
    filterFrames(entries);
    return entries.length > 0;
}

/** Shows the card of a frame that a link leads to. */
function showFrame(place) {
    const card = byId(linkOf(place).slice(1));
    if (card.hidden) {
        byId('frames-filter').value = '';
        byId('frames-filter').form.dispatchEvent(new Event('submit', {cancelable: true}));
    }
    card.scrollIntoView({block: 'start'});
    card.focus({preventScroll: true});
}
