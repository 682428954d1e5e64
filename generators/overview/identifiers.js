// Identifiers: a map of the 2,048 of 11 bits, and those of 29 bits as a table.

const kBaseIdentifiers = 0x800;
const kFunctionSpan = 0x80; // identifiers of one function code, CiA 301, 7.3.3

/** The predefined connection set of CANopen, by function code. */
const kPredefined = ['NMT', 'SYNC, EMCY', 'TIME', 'TPDO 1', 'RPDO 1', 'TPDO 2', 'RPDO 2', 'TPDO 3', 'RPDO 3',
    'TPDO 4', 'RPDO 4', 'SDO response', 'SDO request', '', 'heartbeat', 'LSS'];

/** Kinds of frames as the map tells them apart. */
const kMapKinds = [
    ['nmt', 'NMT, SYNC, TIME', /^(NMT|SYNC|TIME|LSS)/i],
    ['emcy', 'EMCY', /^EMCY|^emergency/i],
    ['tpdo', 'TPDO', /^TPDO/i],
    ['rpdo', 'RPDO', /^RPDO/i],
    ['sdo', 'SDO', /^SDO/i],
    ['heartbeat', 'heartbeat', /^heartbeat|^guard/i],
    ['other', 'other frames', /./],
];

/** How the map is laid out: few wide columns on a narrow screen. */
const kWideMap = {columns: 64, cell: 15, label: 92, top: 18, font: 11};
const kNarrowMap = {columns: 32, cell: 15, label: 62, top: 24, font: 17};

function mapKind(frame, identifier) {
    const word = (frame && frame.kind) || identifier.function || 'other';
    return kMapKinds.find(([, , form]) => form.test(word));
}

/** Identifiers with all that use them: [{id, uses: [{identifier, frame}]}], in order. */
function usedIdentifiers(line, extended) {
    const byNumber = new Map();
    const known = line.identifiers.filter(({id}) => typeof id === 'number');
    for (const identifier of known.filter((one) => Boolean(one.extended) === extended)) {
        if (!byNumber.has(identifier.id)) {
            byNumber.set(identifier.id, {id: identifier.id, extended, line, uses: []});
        }
        byNumber.get(identifier.id).uses.push({identifier, frame: line.framesByKey.get((identifier.frame || '').toLowerCase()) || null});
    }
    return [...byNumber.values()].sort((a, b) => a.id - b.id);
}

function useText(use) {
    const {identifier, frame} = use;
    const name = frame ? frame.name || frame.key : identifier.frame || '';
    return [identifier.function, name === identifier.function ? '' : name, sentText(identifier.direction),
        identifier.node ? `node ${identifier.node}` : ''].filter(Boolean).map(plain).join(', ');
}

function isCanopen(line) {
    return /CANopen/i.test(line.type || '');
}

function freeIdentifierText(line, id) {
    const name = isCanopen(line) ? kPredefined[Math.floor(id / kFunctionSpan)] : '';
    const node = id % kFunctionSpan;
    const usual = name ? `, by default ${name}${node ? ` of node ${node}` : ''}` : '';
    return `${identifierText(id, false)}: not used${usual}`;
}

function identifierLine(line, used, id) {
    const entry = used.get(id);
    if (!entry) {
        return freeIdentifierText(line, id);
    }
    const clash = entry.uses.length > 1 ? 'collision: ' : '';
    return `${identifierText(id, false)}: ${clash}${entry.uses.map(useText).join('; ')}`;
}

class IdentifierMap {
    constructor(line, entries) {
        this.line = line;
        this.used = new Map(entries.map((entry) => [entry.id, entry]));
        this.cursor = entries.length ? entries[0].id : 0;
        this.readout = make('output', {class: 'readout', 'aria-live': 'polite'});
        this.node = make('div', {class: 'map'});
        const narrow = window.matchMedia('(max-width: 700px)');
        narrow.addEventListener('change', () => this.draw(narrow.matches ? kNarrowMap : kWideMap));
        this.draw(narrow.matches ? kNarrowMap : kWideMap);
    }

    draw(layout) {
        this.layout = layout;
        const {columns, cell, label, top} = layout;
        const rows = kBaseIdentifiers / columns;
        this.drawing = makeSvg('svg', {
            class: 'id-map', viewBox: `0 0 ${label + columns * cell + 2} ${top + rows * cell + 2}`, tabindex: '0',
            role: 'application', 'aria-roledescription': 'map',
            'aria-label': `Map of the 11-bit identifiers of ${lineTitle(this.line)}. Arrow keys move, N and P go to ` +
                'the next and previous one in use, Enter opens its frame.',
            onkeydown: (event) => this.key(event),
            onpointermove: (event) => this.tell(this.idAt(event)),
            onpointerleave: () => this.tell(this.cursor),
            onclick: (event) => this.moveTo(this.idAt(event)),
            ondblclick: () => this.open(),
        });
        this.drawGround(rows);
        this.used.forEach((entry) => this.drawing.append(this.usedCell(entry)));
        this.mark = makeSvg('rect', {class: 'cursor', width: cell, height: cell});
        this.drawing.append(this.mark);
        this.node.replaceChildren(this.drawing, this.readout);
        this.moveTo(this.cursor);
    }

    drawGround(rows) {
        const {columns, cell, label, top, font} = this.layout;
        const write = (kind, x, y, text) =>
            this.drawing.append(makeSvg('text', {class: kind, x, y, 'font-size': font}, text));
        for (let column = 0; column < columns; column += 16) {
            write('axis', label + column * cell, font, `+${hex(column, 2)}`);
        }
        const perFunction = kFunctionSpan / columns;
        for (let code = 0; code * perFunction < rows; ++code) {
            const y = top + code * perFunction * cell;
            this.drawing.append(makeSvg('rect', {
                class: `band band${code % 2}`, x: label, y, width: columns * cell, height: perFunction * cell,
            }));
            write('axis', 0, y + font, hex(code * kFunctionSpan, 3));
            if (isCanopen(this.line) && kPredefined[code] && columns === kWideMap.columns) {
                write('axis faint', 0, y + 2.3 * font, kPredefined[code]);
            }
        }
        let path = '';
        for (let column = 0; column <= columns; ++column) {
            path += `M${label + column * cell} ${top}v${rows * cell}`;
        }
        for (let row = 0; row <= rows; ++row) {
            path += `M${label} ${top + row * cell}h${columns * cell}`;
        }
        this.drawing.append(makeSvg('path', {class: 'mesh', d: path}));
    }

    corner(id) {
        const {columns, cell, label, top} = this.layout;
        return {x: label + (id % columns) * cell, y: top + Math.floor(id / columns) * cell};
    }

    usedCell(entry) {
        const {cell} = this.layout;
        const {x, y} = this.corner(entry.id);
        const [kind] = mapKind(entry.uses[0].frame, entry.uses[0].identifier);
        const clash = entry.uses.length > 1;
        const group = makeSvg('g', {'data-id': entry.id, class: clash ? 'used collision' : 'used'},
            makeSvg('title', {}, identifierLine(this.line, this.used, entry.id)),
            makeSvg('rect', {class: `id ${kind}`, x: x + 1, y: y + 1, width: cell - 2, height: cell - 2, rx: 2}));
        if (clash) {
            const side = cell - 6;
            const cross = `M${x + 3} ${y + 3}l${side} ${side}m0 -${side}l-${side} ${side}`;
            group.append(makeSvg('path', {class: 'cross', d: cross}));
        }
        return group;
    }

    idAt(event) {
        const {columns, cell, label, top} = this.layout;
        const box = this.drawing.getBoundingClientRect();
        const scale = (label + columns * cell + 2) / box.width;
        const column = Math.floor(((event.clientX - box.left) * scale - label) / cell);
        const row = Math.floor(((event.clientY - box.top) * scale - top) / cell);
        const inside = column >= 0 && column < columns && row >= 0 && row * columns < kBaseIdentifiers;
        return inside ? row * columns + column : this.cursor;
    }

    tell(id) {
        const text = identifierLine(this.line, this.used, id);
        if (this.readout.textContent !== text) {
            this.readout.textContent = text;
        }
    }

    moveTo(id) {
        this.cursor = Math.max(0, Math.min(kBaseIdentifiers - 1, id));
        const {x, y} = this.corner(this.cursor);
        this.mark.setAttribute('x', x);
        this.mark.setAttribute('y', y);
        this.tell(this.cursor);
    }

    /** The next identifier in use, or the previous one; stays where there is none. */
    neighbour(step) {
        for (let id = this.cursor + step; id >= 0 && id < kBaseIdentifiers; id += step) {
            if (this.used.has(id)) {
                return id;
            }
        }
        return this.cursor;
    }

    open() {
        const entry = this.used.get(this.cursor);
        const use = entry && entry.uses.find((one) => one.frame);
        if (use) {
            window.location.hash = frameLink(this.line, use.frame);
        }
    }

    key(event) {
        const {columns} = this.layout;
        const steps = {
            ArrowLeft: -1, ArrowRight: 1, ArrowUp: -columns, ArrowDown: columns,
            PageUp: -kFunctionSpan, PageDown: kFunctionSpan,
        };
        if (event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        const targets = {Home: 0, End: kBaseIdentifiers - 1, n: this.neighbour(1), p: this.neighbour(-1)};
        if (event.key === 'Enter') {
            this.open();
        } else if (event.key in targets) {
            this.moveTo(targets[event.key]);
        } else if (event.key in steps) {
            const next = this.cursor + steps[event.key];
            this.moveTo(next >= 0 && next < kBaseIdentifiers ? next : this.cursor);
        } else {
            return;
        }
        event.preventDefault();
    }
}

function mapLegend(entries) {
    const kinds = new Set(entries.map((entry) => mapKind(entry.uses[0].frame, entry.uses[0].identifier)[0]));
    const items = kMapKinds.filter(([kind]) => kinds.has(kind))
        .map(([kind, title]) => make('li', {}, make('span', {class: `key-box ${kind}`}), title));
    if (entries.some((entry) => entry.uses.length > 1)) {
        items.push(make('li', {}, make('span', {class: 'key-box collision'}, '\u00d7'), 'collision'));
    }
    return make('ul', {class: 'key'}, ...items);
}

function frameOfUse(line, use) {
    const name = shown(use.frame ? use.frame.name || use.frame.key : use.identifier.frame || '');
    return use.frame ? linked(frameLink(line, use.frame), name) : name;
}

/** One row for each use, so that a collision shows all that collide. */
function usesOf(entries) {
    return entries.flatMap((entry) => entry.uses.map((use) => ({...use, entry})));
}

function identifierNode(row) {
    const code = make('code', {}, identifierText(row.entry.id, row.entry.extended));
    return row.entry.uses.length > 1 ? make('span', {}, code, ' ', chip('error', 'collision')) : code;
}

/** The parts of a 29-bit identifier of J1939: J1939-21, 5.2. */
function pduParts(id) {
    const format = (id >> 16) & 0xff;
    const specific = (id >> 8) & 0xff;
    const toOne = format < 240;
    return {
        priority: (id >> 26) & 7,
        pgn: (id >> 8) & (toOne ? 0x3ff00 : 0x3ffff),
        destination: toOne ? specific : null,
        source: id & 0xff,
    };
}

function identifierColumns(line, extended, entries) {
    const functionOf = (row) => row.identifier.function || '';
    const columns = [
        {title: 'Identifier', value: (row) => row.entry.id, node: identifierNode},
        {title: 'Function', value: functionOf, node: (row) => shown(functionOf(row))},
        {title: 'Direction', value: (row) => sentText(row.identifier.direction)},
        {title: 'Frame', value: (row) => (row.frame && row.frame.name) || '', node: (row) => frameOfUse(line, row)},
    ];
    if (extended && /J1939/.test(line.type || '')) {
        const part = (title, name, text) => {
            const value = (row) => pduParts(row.entry.id)[name];
            return {title, kind: 'number', value, node: (row) => text(value(row))};
        };
        columns.splice(1, 0, part('Priority', 'priority', String), part('PGN', 'pgn', (pgn) => hex(pgn, 4)),
            part('Destination', 'destination', (value) => (value === null ? '' : hex(value, 2))),
            part('Source', 'source', (value) => hex(value, 2)));
    } else if (entries.some((entry) => entry.uses.some((use) => use.identifier.node))) {
        columns.push({
            title: 'Node', kind: 'number', value: (row) => row.identifier.node || 0,
            node: (row) => (row.identifier.node ? String(row.identifier.node) : ''),
        });
    }
    return columns;
}

function identifierTable(line, extended, entries) {
    const caption = extended ? 'Identifiers of 29 bits' : 'Identifiers of 11 bits in use';
    return scrolling(`${caption}, ${lineTitle(line)}`,
        sortedTable(caption, identifierColumns(line, extended, entries), usesOf(entries)));
}

/** Asks for the node-ID that the project leaves open. */
function nodeIdForm(line) {
    const field = make('input', {type: 'number', min: '1', max: '127', inputmode: 'numeric'});
    field.addEventListener('input', () => {
        const node = Number(field.value);
        applyNodeId(line, Number.isInteger(node) && node >= 1 && node <= 127 ? node : null);
    });
    return make('form', {class: 'controls', onsubmit: (event) => event.preventDefault()},
        make('label', {}, 'Node ID, which the project leaves open ', field));
}

function drawLineIdentifiers(line, body) {
    const base = usedIdentifiers(line, false);
    const extended = usedIdentifiers(line, true);
    body.replaceChildren();
    if (base.length) {
        body.append(new IdentifierMap(line, base).node, mapLegend(base), identifierTable(line, false, base));
    }
    if (extended.length) {
        body.append(identifierTable(line, true, extended));
    }
}

function drawIdentifiers() {
    const lines = data.lines.filter((line) => line.identifiers.length);
    for (const line of lines) {
        const body = make('div', {class: 'line-identifiers'});
        const isOpen = hangsOnNodeId(line);
        byId('identifiers-body').append(lineHeading('h3', line), isOpen ? nodeIdForm(line) : '', body);
        drawLineIdentifiers(line, body);
        if (isOpen) {
            document.addEventListener(kRenumbered, () => drawLineIdentifiers(line, body));
        }
    }
    return lines.length > 0;
}
