// Comparison: what is different from an older project, with old and new value.

const kChangeSigns = {added: '+', removed: '\u2212', changed: '~'};
const kGroupTitles = {
    line: 'Lines', setting: 'Settings', object: 'Objects', subindex: 'Subindices', group: 'Groups', signal: 'Signals',
    frame: 'Frames', element: 'Elements of frames', service: 'Services', lock: 'Locks', connection: 'Connections',
    node: 'Nodes', 'line signal': 'Signals of lines', 'signal group': 'Groups of signals', 'line group': 'Groups of lines',
};

/** A value of which there was none before, or is none now, has one side only. */
function fieldRow([name, before, after]) {
    const old = before === null ? null : make('del', {}, shown(before));
    const values = [old, after === null ? null : make('ins', {}, shown(after))].filter(Boolean);
    return make('li', {}, name ? make('span', {class: 'field'}, shown(name), ' ') : null, values[0] || null,
        values[1] ? ' \u2192 ' : null, values[1] || null);
}

function changeNode(change) {
    const sign = make('span', {class: `sign ${change.change}`, 'aria-hidden': 'true'}, kChangeSigns[change.change] || '');
    const fields = change.fields || [];
    return make('li', {class: `change ${change.change}`},
        sign, make('span', {class: 'hidden-text'}, `${change.change}: `),
        make('div', {}, make('span', {class: 'what'}, linked(change.link, shown(change.what))),
            fields.length ? make('ul', {class: 'fields'}, ...fields.map(fieldRow)) : null));
}

function changeTitle(change) {
    const kind = kGroupTitles[change.kind] || change.kind || 'Other';
    return change.line === null || change.line === undefined ? kind : `Line ${change.line}: ${kind}`;
}

/** Groups of changes in the order in which the first of each comes. */
function changeGroups(changes) {
    const groups = new Map();
    for (const change of changes) {
        const title = changeTitle(change);
        groups.set(title, [...(groups.get(title) || []), change]);
    }
    return groups;
}

function changeText(change) {
    return [change.what, change.change, change.kind, ...(change.fields || []).flat()].join('\n').toLowerCase();
}

function drawChanges(changes) {
    const words = byId('comparison-filter').value.toLowerCase().split(/\s+/).filter(Boolean);
    const found = changes.filter((change) => words.every((word) => changeText(change).includes(word)));
    byId('comparison-body').replaceChildren(...[...changeGroups(found)].map(([title, group]) =>
        make('div', {class: 'change-group'}, make('h3', {}, title, ' ', make('span', {class: 'badge'}, grouped(group.length))),
            make('ul', {class: 'card changes'}, ...group.map(changeNode)))));
    byId('comparison-count').textContent = words.length ? `${grouped(found.length)} of ${counted(changes.length, 'change')}` :
        counted(changes.length, 'change');
}

function drawComparison() {
    const comparison = data.comparison;
    if (!comparison) {
        return false;
    }
    const changes = comparison.changes || [];
    const lead = byId('comparison-lead');
    lead.append('Against ', make('b', {}, shown(comparison.with || '')), changes.length ? ': ' : ': no difference.');
    for (const kind of ['added', 'removed', 'changed']) {
        const count = changes.filter((change) => change.change === kind).length;
        if (count) {
            lead.append(chip(kind, `${grouped(count)} ${kind}`), ' ');
        }
    }
    byId('comparison-controls').hidden = !changes.length;
    afterTyping(byId('comparison-filter'), () => drawChanges(changes));
    drawChanges(changes);
    return true;
}
