// Footprint: what the generated tables take of RAM and of constants.

function bytesText(bytes) {
    return `${grouped(bytes)} B`;
}

function sizeColumn(title, key, largest) {
    return {
        title, kind: 'number', value: (row) => row[key] || 0,
        node: (row) => make('span', {class: 'measured'}, bytesText(row[key] || 0), bar((row[key] || 0) / largest, key)),
    };
}

function footprintTable(caption, columns, rows) {
    const largest = Math.max(1, ...rows.map((row) => Math.max(row.ram || 0, row.rom || 0)));
    const lines = data.lines.length > 1 ? [{
        title: 'Line', kind: 'number', value: (row) => (typeof row.line === 'number' ? row.line : -1),
        node: (row) => (typeof row.line === 'number' ? String(row.line) : 'all'),
    }] : [];
    const [first, ...others] = columns;
    const all = [first, ...lines, ...others, sizeColumn('RAM', 'ram', largest), sizeColumn('Constants', 'rom', largest)];
    return scrolling(caption, sortedTable(caption, all, rows));
}

function total(title, bytes, kind) {
    return make('div', {class: `gauge ${kind}`},
        make('span', {class: 'gauge-title'}, title), make('strong', {}, bytesText(bytes)));
}

function drawFootprint() {
    const footprint = data.footprint;
    if (!footprint || !(footprint.arrays || []).length) {
        return false;
    }
    byId('footprint-lead').append('Bytes that the generated tables take. ', footprint.note ? shown(footprint.note) : '');
    const tables = make('div', {class: 'pair'});
    byId('footprint-body').append(make('div', {class: 'gauges'}, total('RAM', footprint.ram || 0, 'ram'),
        total('Constants', footprint.rom || 0, 'rom')), tables);
    const text = (title, key) => ({title, value: (row) => row[key] || '', node: (row) => shown(row[key] || '')});
    if ((footprint.areas || []).length) {
        tables.append(footprintTable('By area of the object dictionary', [text('Area', 'area')], footprint.areas));
    }
    tables.append(footprintTable('By array', [text('Array', 'name'), text('Area', 'area'), {
        title: 'Elements', kind: 'number', value: (row) => row.count || 0,
        node: (row) => (row.count ? grouped(row.count) : ''),
    }], footprint.arrays));
    return true;
}
