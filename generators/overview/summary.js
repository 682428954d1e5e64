// Summary: what the project is, what the check found, what was written.

const kFindingKinds = [
    ['error', 'Errors'],
    ['warning', 'Warnings'],
    ['corrected', 'Corrected'],
    ['note', 'Notes'],
];

function countRows(counts) {
    const rows = [
        ['objects', 'object'], ['subindices', 'subindex', 'subindices'], ['pdos', 'PDO'],
        ['groups', 'parameter group'], ['frames', 'frame'], ['signals', 'signal'],
    ];
    return rows.filter(([key]) => counts[key])
        .map(([key, one, many]) => make('li', {}, make('b', {}, grouped(counts[key])), ' ' +
            counted(counts[key], one, many).split(' ').slice(1).join(' ')));
}

function bitRateText(line) {
    if (!line.bitRate) {
        return null;
    }
    const data = line.dataBitRate ? `, data ${grouped(line.dataBitRate)} kbit/s` : '';
    return `${grouped(line.bitRate)} kbit/s${data}`;
}

function lineCard(line) {
    const number = (value) => (value === null || value === undefined ? null : `${value} (${hex(value, 2)})`);
    return make('article', {class: 'card line-card'},
        lineHeading('h3', line),
        definitions([
            ['Node ID', number(line.nodeId)],
            ['Address', number(line.address)],
            ['NAME', line.name ? make('code', {}, shown(line.name)) : null],
            ['Bit rate', bitRateText(line)],
            ['CAN FD', line.canFd ? 'yes' : null],
        ]),
        make('ul', {class: 'counts'}, ...countRows(line.counts || {})));
}

function findingRow(finding) {
    const text = shown(finding.text);
    return make('li', {class: 'finding'},
        linked(finding.link, text),
        make('span', {class: 'origin'},
            finding.rule ? make('code', {}, shown(finding.rule)) : null,
            finding.place ? ' ' : null, finding.place ? shown(finding.place) : null));
}

function drawFindings() {
    const findings = data.findings || [];
    const body = byId('summary-findings');
    body.append(make('h3', {}, 'Findings of the check'));
    if (!findings.length) {
        body.append(make('p', {class: 'fine'}, 'The check found nothing.'));
        return;
    }
    for (const [kind, title] of kFindingKinds) {
        const rows = findings.filter((finding) => finding.kind === kind);
        if (rows.length) {
            const long = rows.length > 12 && kind !== 'error';
            body.append(make('details', {class: `findings ${kind}`, open: !long},
                make('summary', {}, make('h4', {}, chip(kind, title), ' ',
                    make('span', {class: 'badge'}, grouped(rows.length)))),
                make('ul', {}, ...rows.map(findingRow))));
        }
    }
}

function sizeText(bytes) {
    return bytes < 10240 ? `${grouped(bytes)} B` : `${grouped(Math.round(bytes / 1024))} KiB`;
}

function drawFiles() {
    const files = data.files || [];
    if (!files.length) {
        return;
    }
    const largest = Math.max(...files.map((file) => file.bytes), 1);
    const table = sortedTable('', [
        {title: 'File', value: (file) => file.name, node: (file) => shown(file.name)},
        {
            title: 'Size', kind: 'number', value: (file) => file.bytes,
            node: (file) => make('span', {title: `${grouped(file.bytes)} bytes`}, sizeText(file.bytes)),
        },
        {title: 'Share', kind: 'share', value: (file) => file.bytes, node: (file) => bar(file.bytes / largest)},
    ], files);
    byId('summary-files').append(make('h3', {}, 'Generated files'), scrolling('Generated files', table));
}

function drawProject() {
    const project = data.project;
    byId('project-name').append(shown(project.name));
    const version = project.version ? `version ${project.version}` : '';
    const product = [project.vendor, project.product, version].filter(Boolean);
    byId('project-product').append(...product.map((text) => shown(text)).reduce(
        (all, node) => (all.length ? [...all, ' \u00b7 ', node] : [node]), []));
    byId('project-made').append(shown(project.file || ''), make('br'), shown(project.tool || ''));
}

function drawSummary() {
    drawProject();
    byId('summary-lines').append(...data.lines.map(lineCard));
    drawFindings();
    drawFiles();
    return true;
}
