// All of one object or subindex, beside the rows.

/** Frames that carry a row, by the row; read from the cells of the frames once. */
let carriersOfRows = null;

function carriersOf(row) {
    if (carriersOfRows === null) {
        carriersOfRows = new Map();
        for (const line of data.lines) {
            for (const frame of line.frames) {
                for (const cell of frame.cells) {
                    const place = cell.link ? placeOf(cell.link) : null;
                    if (place && place.row) {
                        carriersOfRows.set(place.row, [...(carriersOfRows.get(place.row) || []), {line, frame}]);
                    }
                }
            }
        }
    }
    return carriersOfRows.get(row) || [];
}

async function copyText(text) {
    try {
        await navigator.clipboard.writeText(text);
    } catch (error) { // not allowed, or a page over plain HTTP
        const field = make('textarea', {class: 'hidden-text', 'aria-hidden': 'true'});
        field.value = text;
        document.body.append(field);
        field.select();
        document.execCommand('copy');
        field.remove();
    }
    say(`Copied ${plain(text)}`);
}

function copyButton(text, what) {
    return make('button', {type: 'button', class: 'copy', onclick: () => copyText(text)}, what);
}

function carrierLinks(row) {
    const carriers = carriersOf(row);
    if (!carriers.length) {
        return null;
    }
    return make('span', {}, ...carriers.flatMap(({line, frame}, at) => [
        at ? ', ' : '', linked(frameLink(line, frame), shown(frame.name || frame.key))]));
}

function limitsText(row) {
    const [low, high] = [row.text('low'), row.text('high')];
    return low || high ? make('span', {}, shown(low || '\u2026'), ' to ', shown(high || '\u2026')) : null;
}

/** Its own one, else that of the object, which often speaks for all of its subindices. */
function descriptionOf(row) {
    if (row.text('description')) {
        return paragraphs(row.text('description'));
    }
    const general = row.parent ? row.parent.text('description') : '';
    return general ? [make('p', {class: 'fine'}, shown(row.parent.text('name')), ':'), ...paragraphs(general)] : [];
}

function drawObjectDetails(row) {
    const identifier = row.text('identifier');
    const text = (column) => (row.text(column) ? shown(row.text(column)) : null);
    const copied = [copyButton(row.link, 'Copy link')];
    if (identifier) {
        copied.unshift(copyButton(identifier, 'Copy name'));
    }
    byId('objects-details').replaceChildren(
        make('h3', {}, make('code', {}, row.place), ' ', shown(row.text('name'))),
        row.parent ? make('p', {class: 'of'}, 'in ', linked(row.parent.link, shown(row.parent.text('name')))) : '',
        definitions([
            ['In gen_indices.h', identifier ? make('code', {class: 'identifier'}, shown(identifier)) : null, 'broad'],
            ['Object', text('code')],
            ['Type', text('type')],
            ['Access', text('access')],
            ['Default', text('default')],
            ['Limits', limitsText(row)],
            ['PDO', text('pdo')],
            ['Carried by', carrierLinks(row)],
            ['Storage', text('storage')],
            ['Variable', row.text('variable') ? make('code', {}, shown(row.text('variable'))) : null, 'broad'],
            ['Subindices', row.children.length ? String(row.children.length) : null],
        ]),
        make('p', {class: 'buttons'}, ...copied),
        make('div', {class: 'description'}, ...descriptionOf(row)));
}
