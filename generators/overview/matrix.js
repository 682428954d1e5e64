// Which bit of a frame carries what: a drawing with a column for each bit and a row for each byte, and the same as
// a table.

const kColumn = 40; // of a drawing, in its own units
const kRow = 28;
const kLeft = 22;
const kTop = 18;
const kTints = 6;

/** The bits [from, to) of a byte that a cell takes, for each byte that it touches. */
function bytesOfCell(cell) {
    const parts = [];
    const end = cell.start + cell.bits;
    for (let byte = cell.start >> 3; byte * 8 < end; ++byte) {
        parts.push({byte, from: Math.max(cell.start - byte * 8, 0), to: Math.min(end - byte * 8, 8)});
    }
    return parts;
}

function xOf(bit) {
    return kLeft + (8 - bit) * kColumn; // left edge of the bit below
}

function yOf(byte) {
    return kTop + byte * kRow;
}

/** What of [from, to) lies outside of the neighbour's bits. */
function uncovered(part, other) {
    if (!other) {
        return [[part.from, part.to]];
    }
    return [[part.from, Math.min(part.to, other.from)], [Math.max(part.from, other.to), part.to]]
        .filter(([from, to]) => from < to);
}

/** The outline of all parts of a cell: no line between two bytes of one value. */
function outline(parts) {
    let path = '';
    parts.forEach((part, at) => {
        const top = yOf(part.byte);
        const bottom = top + kRow;
        path += `M${xOf(part.to)} ${top}V${bottom}M${xOf(part.from)} ${top}V${bottom}`;
        for (const [from, to] of uncovered(part, parts[at - 1])) {
            path += `M${xOf(to)} ${top}H${xOf(from)}`;
        }
        for (const [from, to] of uncovered(part, parts[at + 1])) {
            path += `M${xOf(to)} ${bottom}H${xOf(from)}`;
        }
    });
    return path;
}

/** Where the name of a cell has most room: its full bytes, or its widest part. */
function roomOf(parts) {
    const full = parts.filter((part) => part.to - part.from === 8);
    if (full.length) {
        return {x: kLeft, y: yOf(full[0].byte), width: 8 * kColumn, height: full.length * kRow};
    }
    const widest = parts.reduce((best, part) => (part.to - part.from > best.to - best.from ? part : best));
    return {x: xOf(widest.to), y: yOf(widest.byte), width: (widest.to - widest.from) * kColumn, height: kRow};
}

/** Width of a character in a drawing, on the safe side: the font is that of the reader. */
function characterWidth(character) {
    if (character > '\u2e7f') {
        return 13; // of East Asia
    }
    return /[A-Zmw@%\u2026]/.test(character) ? 9 : 6.7;
}

/** As much of a name as there is room for; nothing if that would tell nothing. */
function fitted(name, width) {
    const characters = Array.from(name);
    const end = '\u2026';
    const widthOf = (some) => some.reduce((sum, one) => sum + characterWidth(one), 0);
    if (widthOf(characters) <= width) {
        return name;
    }
    while (characters.length && widthOf([...characters, end]) > width) {
        characters.pop();
    }
    return characters.length >= 6 ? characters.join('') + end : '';
}

function tintOf(cell, number) {
    return cell.gap ? 'gap' : `tint${(number - 1) % kTints}`;
}

function cellText(kind, x, y, text) {
    return makeSvg('text', {class: kind, x, y, 'text-anchor': 'middle', 'dominant-baseline': 'central'}, text);
}

function drawCell(cell, number) {
    const parts = bytesOfCell(cell);
    const name = plain(cell.name || '');
    const room = roomOf(parts);
    const text = fitted(name, room.width - 26);
    const inCell = [];
    if (text) {
        inCell.push(cellText('number', room.x + 8, room.y + 9, number));
    }
    if (name) {
        inCell.push(cellText('name', room.x + room.width / 2, room.y + room.height / 2, text || number));
    }
    return makeSvg('g', {
        class: `cell ${tintOf(cell, number)}`,
        'data-start': cell.start, 'data-bits': cell.bits,
    },
    makeSvg('title', {}, `${name ? `${number}: ${name}` : 'free'}, ${bitsText(cell)}`),
    ...parts.map((part) => makeSvg('rect', {
        class: 'ground', x: xOf(part.to), y: yOf(part.byte), width: (part.to - part.from) * kColumn, height: kRow,
    })),
    makeSvg('path', {class: 'edge', d: outline(parts)}),
    ...inCell);
}

/** For each bit how many cells take it. */
function usesOfBits(frame, bytes) {
    const uses = new Uint8Array(bytes * 8);
    for (const cell of frame.cells) {
        for (let bit = cell.start; bit < cell.start + cell.bits; ++bit) {
            ++uses[bit];
        }
    }
    return uses;
}

function bytesOfFrame(frame) {
    return frame.cells.reduce((most, cell) => Math.max(most, (cell.start + cell.bits + 7) >> 3), frame.length || 0);
}

/** Rectangles over the bits of which \a asked(uses) holds, a run of bits of a byte each. */
function markBits(uses, asked, kind) {
    const marks = [];
    for (let byte = 0; byte * 8 < uses.length; ++byte) {
        for (let from = 0; from < 8; ++from) {
            let to = from;
            while (to < 8 && asked(uses[byte * 8 + to])) {
                ++to;
            }
            if (to > from) {
                marks.push(makeSvg('rect', {
                    class: kind, x: xOf(to), y: yOf(byte), width: (to - from) * kColumn, height: kRow,
                }));
                from = to;
            }
        }
    }
    return marks;
}

function drawMatrix(frame) {
    const bytes = bytesOfFrame(frame);
    const uses = usesOfBits(frame, bytes);
    const height = kTop + bytes * kRow + 2;
    const width = kLeft + 8 * kColumn + 2;
    const drawing = makeSvg('svg', {
        class: 'matrix', viewBox: `0 0 ${width} ${height}`, role: 'img',
        'aria-label': `Bits of ${plain(frame.name || frame.key)}; the table below says the same`,
    });
    for (let bit = 0; bit < 8; ++bit) {
        const x = xOf(bit + 1) + kColumn / 2;
        drawing.append(makeSvg('text', {class: 'axis', x, y: 11, 'text-anchor': 'middle'}, bit));
    }
    for (let byte = 0; byte < bytes; ++byte) {
        drawing.append(makeSvg('text', {
            class: 'axis', x: kLeft - 6, y: yOf(byte) + kRow / 2, 'text-anchor': 'end', 'dominant-baseline': 'central',
        }, byte));
    }
    drawing.append(...markBits(uses, (count) => count === 0, 'free'));
    drawing.append(...frame.cells.map((cell, at) => (cell.bits > 0 ? drawCell(cell, at + 1) : '')));
    let ticks = '';
    for (let bit = 1; bit < 8; ++bit) {
        ticks += `M${xOf(bit)} ${kTop}V${yOf(bytes)}`;
    }
    drawing.append(makeSvg('path', {class: 'ticks', d: ticks}));
    drawing.append(...markBits(uses, (count) => count > 1, 'clash'));
    drawing.append(makeSvg('rect', {class: 'frame-edge', x: kLeft, y: kTop, width: 8 * kColumn, height: bytes * kRow}));
    return drawing;
}

/** "byte 2, bits 0-3" of a cell; places count from 0, as in the drawing. */
function bitsText(cell) {
    if (cell.bits <= 0) {
        return 'none';
    }
    const end = cell.start + cell.bits - 1;
    const first = cell.start >> 3;
    const last = end >> 3;
    if (cell.start % 8 === 0 && end % 8 === 7) {
        return first === last ? `byte ${first}` : `bytes ${first}\u2013${last}`;
    }
    if (first === last) {
        const low = cell.start % 8;
        const high = end % 8;
        return low === high ? `byte ${first}, bit ${low}` : `byte ${first}, bits ${low}\u2013${high}`;
    }
    return `${first}.${cell.start % 8}\u2013${last}.${end % 8}`;
}

function longBitsText(cell) {
    const end = cell.start + cell.bits - 1;
    return `byte ${cell.start >> 3}, bit ${cell.start % 8} to byte ${end >> 3}, bit ${end % 8}`;
}

function overlaps(frame, uses, cell) {
    return uses.slice(cell.start, cell.start + cell.bits).some((count) => count > 1);
}

function legendRow(frame, uses, cell, number, withTypes) {
    const name = linked(cell.link, shown(cell.name || 'free'));
    return make('tr', {class: cell.gap ? 'gap' : null},
        make('td', {}, make('span', {class: `swatch ${tintOf(cell, number)}`}, cell.name ? String(number) : '')),
        make('th', {scope: 'row'}, name,
            overlaps(frame, uses, cell) ? make('span', {}, ' ', chip('error', 'overlap')) : null,
            cell.note ? make('span', {class: 'note'}, ' ', shown(cell.note)) : null),
        make('td', {class: 'nowrap', title: cell.bits > 0 ? longBitsText(cell) : null}, bitsText(cell)),
        withTypes ? make('td', {class: 'type', title: cell.type || null}, shown(shortType(cell.type || ''))) : null,
        make('td', {class: 'number'}, String(cell.bits)));
}

function drawLegend(frame) {
    const uses = usesOfBits(frame, bytesOfFrame(frame));
    const withTypes = frame.cells.some((cell) => cell.type);
    const titles = ['No.', 'Name', 'Place', withTypes ? 'Type' : '', 'Bits'].filter(Boolean);
    return make('table', {class: 'plain legend'},
        make('caption', {class: 'hidden-text'}, `Content of ${plain(frame.name || frame.key)}`),
        make('thead', {}, make('tr', {}, ...titles.map((title) =>
            make('th', {scope: 'col', class: title === 'Bits' ? 'number' : null}, title)))),
        make('tbody', {}, ...frame.cells.map((cell, at) => legendRow(frame, uses, cell, at + 1, withTypes))));
}
