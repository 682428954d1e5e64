// The project as the tool has written it into the page.

const data = JSON.parse(byId('data').textContent);

/**
 * A row of the object dictionary. Strings stay numbers into data.texts until they are shown: large projects
 * repeat them a lot.
 */
class ObjectRow {
    constructor(line, columns, cells, parent) {
        this.line = line;
        this.columns = columns;
        this.cells = cells;
        this.parent = parent; // row of the object, null for that row itself
        this.children = [];
        this.index = cells[0];
        this.sub = cells[1];
    }

    text(column) {
        return data.texts[this.cells[this.columns[column]] || 0];
    }

    /** Number of a text, for questions that are asked once for each text. */
    textNumber(column) {
        return this.cells[this.columns[column]] || 0;
    }

    /** An object that has no subindices is written without one. */
    get place() {
        return placeText(this.index, this.parent ? this.sub : null);
    }

    get link() {
        return `#${this.line.number}/${this.place}`;
    }
}

/** The rows of a line as objects with their subindices. */
function readObjects(line) {
    const columns = {};
    line.objects.columns.forEach((name, at) => { columns[name] = at; });
    const objects = [];
    let current = null;
    for (const cells of line.objects.rows) {
        if (current && current.sub === null && current.index === cells[0] && cells[1] !== null) {
            current.children.push(new ObjectRow(line, columns, cells, current));
        } else {
            current = new ObjectRow(line, columns, cells, null);
            objects.push(current);
        }
    }
    return objects;
}

function lineTitle(line) {
    return `Line ${line.number}`;
}

/** "Line 0 · CANopen · Plant network", as nodes. */
function lineHeading(tag, line) {
    const number = make('span', {class: 'line-number'}, lineTitle(line));
    const node = make(tag, {class: 'line-title'}, number, line.type || '');
    if (line.title) {
        node.append(' \u00b7 ', shown(line.title));
    }
    return node;
}

/** Heard by the document when identifiers have got numbers, or lost them. */
const kRenumbered = 'renumbered';

/** Identifiers that hang on a node-ID which the project leaves open. */
function hangsOnNodeId(line) {
    return typeof line.nodeId !== 'number' &&
        [...line.frames, ...line.identifiers].some(({idBase}) => typeof idBase === 'number');
}

/** Gives them their numbers; null takes these away again. */
function applyNodeId(line, node) {
    for (const one of [...line.frames, ...line.identifiers].filter(({idBase}) => typeof idBase === 'number')) {
        one.id = node === null ? null : one.idBase + node;
    }
    document.dispatchEvent(new Event(kRenumbered));
}

function sentText(direction) {
    return {transmit: 'transmit', receive: 'receive', both: 'transmit and receive'}[direction] || direction || '';
}

for (const line of data.lines) {
    line.frames = line.frames || [];
    line.identifiers = line.identifiers || [];
    line.framesByKey = new Map(line.frames.map((frame) => [frame.key.toLowerCase(), frame]));
    line.dictionary = line.objects && line.objects.rows.length ? readObjects(line) : [];
    line.objectsByIndex = new Map(line.dictionary.map((object) => [object.index, object]));
}
