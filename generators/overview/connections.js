// Connections: what goes from one place of the project to another, as a drawing with a row for each end.

const kEndHeight = 40; // px, as in the style sheet
const kLineHeight = 34;

function endKey(end) {
    return `${end.line} ${end.link || ''} ${end.name || ''}`;
}

/** The different ends of one side in the order of lines, with the place where each is drawn. */
function layOutEnds(ends) {
    const byKey = new Map(ends.map((end) => [endKey(end), end]));
    const ordered = [...byKey.values()].sort((a, b) => (a.line || 0) - (b.line || 0));
    const rows = [];
    const centres = new Map();
    let y = 0;
    let line = null;
    for (const end of ordered) {
        if (end.line !== line) {
            line = end.line;
            rows.push({line});
            y += kLineHeight;
        }
        rows.push({end});
        centres.set(endKey(end), y + kEndHeight / 2);
        y += kEndHeight;
    }
    return {rows, centres, height: y};
}

function sideNode(title, side) {
    return make('ul', {class: 'side', 'aria-label': title}, ...side.rows.map((row) => (row.end ?
        make('li', {class: 'end', title: plain(row.end.name || '')}, linked(row.end.link, shown(row.end.name || ''))) :
        make('li', {class: 'side-line'}, typeof row.line === 'number' ? `Line ${row.line}` : 'Project'))));
}

function drawWires(connections, from, to) {
    const height = Math.max(from.height, to.height);
    const drawing = makeSvg('svg', {
        class: 'wires', viewBox: `0 0 100 ${height}`, height, preserveAspectRatio: 'none', 'aria-hidden': 'true',
    });
    for (const connection of connections) {
        const start = from.centres.get(endKey(connection.from));
        const end = to.centres.get(endKey(connection.to));
        drawing.append(makeSvg('path', {
            class: `wire ${/^[a-zA-Z]+$/.test(connection.kind || '') ? connection.kind.toLowerCase() : ''}`,
            d: `M0 ${start}C55 ${start} 45 ${end} 100 ${end}`, 'vector-effect': 'non-scaling-stroke',
        }));
    }
    return drawing;
}

function connectionRow(connection) {
    const line = (one) => (data.lines.length > 1 && typeof one.line === 'number' ? `Line ${one.line}: ` : '');
    const end = (one) => make('td', {}, line(one), linked(one.link, shown(one.name || '')));
    return make('tr', {}, make('th', {scope: 'row'}, connection.kind || ''), end(connection.from), end(connection.to),
        make('td', {}, connection.name ? shown(connection.name) : ''));
}

function drawConnections() {
    const connections = data.connections || [];
    if (!connections.length) {
        return false;
    }
    const from = layOutEnds(connections.map((connection) => connection.from));
    const to = layOutEnds(connections.map((connection) => connection.to));
    byId('connections-body').append(
        make('div', {class: 'card wiring'}, sideNode('From', from), drawWires(connections, from, to), sideNode('To', to)),
        scrolling('Connections', make('table', {class: 'plain'}, make('caption', {}, 'The same as a table'),
            make('thead', {}, make('tr', {},
                ...['Kind', 'From', 'To', 'By'].map((title) => make('th', {scope: 'col'}, title)))),
            make('tbody', {}, ...connections.map(connectionRow)))));
    return true;
}
