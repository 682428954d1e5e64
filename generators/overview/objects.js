// The object dictionary as a tree or a table. Only the rows in view are elements, so that 25,000 of them scroll
// and filter at once; the printed page has all that the filter lets through.

const kObjectColumns = [
    {key: 'place', title: 'Index'},
    {key: 'name', title: 'Name'},
    {key: 'type', title: 'Type'},
    {key: 'access', title: 'Access'},
    {key: 'default', title: 'Default'},
    {key: 'low', title: 'Low limit'},
    {key: 'high', title: 'High limit'},
    {key: 'pdo', title: 'PDO'},
    {key: 'storage', title: 'Storage'},
    {key: 'variable', title: 'Variable'},
];

const kAreas = [ // CiA 301, 7.4.2
    [0x0000, 'Data types'],
    [0x1000, 'Communication'],
    [0x2000, 'Manufacturer'],
    [0x6000, 'Device profile'],
    [0xa000, 'Network and system'],
];
const kExpandedAtFirst = 400; // rows; larger dictionaries start with their objects only
const kSpareRows = 12; // above and below those in view

function areaOf(index) {
    return kAreas.filter(([from]) => index >= from).pop()[1];
}

/** A row that only heads others. */
class AreaRow {
    constructor(title) {
        this.title = title;
    }
}

class ObjectView {
    constructor(lines) {
        this.lines = lines;
        this.table = byId('objects-table');
        this.body = byId('objects-body');
        this.window = byId('objects-rows');
        this.rowHeight = 30; // until they are measured
        this.height = 700;
        this.top = 0; // how far it is scrolled; asking the window would lay out the page
        this.mode = 'tree';
        this.sort = {key: 'place', descending: false};
        this.selected = null;
        this.total = lines.reduce((sum, line) => sum + line.objects.rows.length, 0);
        this.expanded = new Set(this.total <= kExpandedAtFirst ? lines.flatMap((line) => line.dictionary) : []);
        this.listen();
        this.update();
        requestAnimationFrame(() => this.measure()); // now it would lay out a page that is not complete
    }

    listen() {
        let waiting = false;
        this.window.addEventListener('scroll', () => {
            if (!waiting) {
                waiting = true;
                requestAnimationFrame(() => {
                    waiting = false;
                    this.top = this.window.scrollTop;
                    this.draw();
                });
            }
        }, {passive: true});
        window.addEventListener('resize', () => this.measure());
        this.table.addEventListener('keydown', (event) => this.key(event));
        this.body.addEventListener('click', (event) => this.click(event));
        afterTyping(byId('objects-filter'), () => this.update(true), this.total > 5000 ? 60 : 0);
        byId('objects-line').addEventListener('change', () => this.update(true));
        for (const radio of document.querySelectorAll('input[name=objects-view]')) {
            radio.addEventListener('change', () => { this.mode = radio.value; this.update(true); });
        }
        byId('objects-expand').addEventListener('click', () => this.expandAll(true));
        byId('objects-collapse').addEventListener('click', () => this.expandAll(false));
        window.addEventListener('beforeprint', () => this.drawAll());
        window.addEventListener('afterprint', () => this.draw());
    }

    expandAll(open) {
        this.expanded = new Set(open ? this.lines.flatMap((line) => line.dictionary) : []);
        this.update();
    }

    shownLines() {
        const wanted = byId('objects-line').value;
        return this.lines.filter((line) => wanted === '' || String(line.number) === wanted);
    }

    /** What the rows are sorted by: a number or a text in small letters. */
    sortValue(row) {
        const {key} = this.sort;
        if (key === 'place') {
            return row.line.number * 0x1000000 + row.index * 0x100 + (row.parent ? row.sub + 1 : 0);
        }
        const text = row.text(key).toLowerCase();
        const number = key === 'type' || text === '' ? NaN : Number(text);
        return Number.isNaN(number) ? text : number;
    }

    sorted(rows) {
        if (this.sort.key === 'place' && !this.sort.descending) {
            return rows; // as they come
        }
        const isText = (value) => (typeof value === 'string' ? 1 : 0);
        const order = rows.map((row) => [this.sortValue(row), row]).sort(([a], [b]) =>
            isText(a) - isText(b) || (a < b ? -1 : a > b ? 1 : 0));
        if (this.sort.descending) {
            order.reverse();
        }
        return order.map(([, row]) => row);
    }

    /** The rows of the table, and how many of them the filter has found. */
    tableRows(fits) {
        const all = this.shownLines().flatMap((line) =>
            line.dictionary.flatMap((object) => [object, ...object.children]));
        const found = fits ? all.filter(fits) : all;
        return {rows: this.sorted(found), found: found.length};
    }

    treeRows(fits) {
        const rows = [];
        let found = 0;
        for (const line of this.shownLines()) {
            let heading = '';
            for (const object of this.sorted(line.dictionary)) {
                const own = fits ? fits(object) : true;
                const children = fits ? object.children.filter(fits) : object.children;
                if (!own && !children.length) {
                    continue;
                }
                const area = (this.lines.length > 1 ? `${lineTitle(line)} \u00b7 ` : '') +
                    (this.sort.key === 'place' ? areaOf(object.index) : 'Objects');
                if (area !== heading) {
                    heading = area;
                    rows.push(new AreaRow(area));
                }
                found += (own ? 1 : 0) + children.length;
                rows.push(object);
                if (this.isOpen(object, fits, children)) {
                    rows.push(...children);
                }
            }
        }
        return {rows, found};
    }

    /** A filter opens what it finds inside of an object. */
    isOpen(object, fits, children) {
        const someOnly = children.length < object.children.length;
        return this.expanded.has(object) || Boolean(fits && children.length && (someOnly || !fits(object)));
    }

    update(toTop = false) {
        this.fits = rowFilter(byId('objects-filter').value);
        const {rows, found} = this.mode === 'tree' ? this.treeRows(this.fits) : this.tableRows(this.fits);
        this.rows = rows;
        const total = counted(this.total, 'row');
        byId('objects-count').textContent = this.fits ? `${grouped(found)} of ${total}` : total;
        byId('objects-folding').hidden = this.mode !== 'tree';
        this.table.setAttribute('role', this.mode === 'tree' ? 'treegrid' : 'grid');
        this.table.setAttribute('aria-rowcount', rows.length + 1);
        this.drawHead();
        if (toTop) {
            this.window.scrollTop = 0;
            this.top = 0;
        }
        this.drawn = null;
        this.draw();
    }

    /** Columns that the style sheet lets a screen of this width have. */
    countColumns() {
        const heads = [...byId('objects-head').querySelectorAll('th')];
        return heads.filter((head) => window.getComputedStyle(head).display !== 'none').length;
    }

    drawHead() {
        byId('objects-head').replaceChildren(make('tr', {'aria-rowindex': '1'}, ...kObjectColumns.map(({key, title}) => {
            const state = key !== this.sort.key ? 'none' : this.sort.descending ? 'descending' : 'ascending';
            return make('th', {scope: 'col', class: `column-${key}`, 'aria-sort': state, 'data-title': title},
                sortButton(title, state, () => this.sortBy(key)));
        })));
    }

    sortBy(key) {
        this.sort = {key, descending: this.sort.key === key && !this.sort.descending};
        this.update(true);
        byId('objects-head').querySelector(`.column-${key} button`).focus();
    }

    /** Sees how much room there is, and draws what fits. */
    measure() {
        const row = this.body.querySelector('tr[id]');
        this.rowHeight = (row && row.getBoundingClientRect().height) || this.rowHeight;
        this.height = this.window.clientHeight || this.height;
        this.top = this.window.scrollTop;
        this.drawn = null;
        this.draw();
    }

    /** Draws the rows in view, if they are not there. */
    draw() {
        const top = Math.max(0, Math.floor(this.top / this.rowHeight) - kSpareRows);
        const count = Math.ceil(this.height / this.rowHeight) + 2 * kSpareRows;
        const end = Math.min(this.rows.length, top + count);
        const from = Math.max(0, Math.min(top, end - count));
        const state = `${from} ${end}`;
        if (this.drawn === state) {
            return;
        }
        this.drawn = state;
        this.columns = this.countColumns();
        this.drawRange(from, end);
    }

    drawRange(from, end) {
        const rows = this.rows.slice(from, end).map((row, at) => this.rowNode(row, from + at));
        this.body.replaceChildren(this.spacer(from), ...rows, this.spacer(this.rows.length - end));
        if (!this.rows.length) {
            this.body.append(make('tr', {}, make('td', {colspan: this.columns, class: 'nothing'},
                'No row fits all words of the filter.')));
        }
        this.noteActive();
    }

    drawAll() {
        this.drawn = null;
        this.columns = kObjectColumns.length; // paper has them all
        this.drawRange(0, this.rows.length);
    }

    /** Stands for the rows that are not drawn. */
    spacer(count) {
        const row = make('tr', {class: 'spacer', 'aria-hidden': 'true', hidden: count === 0},
            make('td', {colspan: this.columns}));
        row.style.height = `${count * this.rowHeight}px`;
        return row;
    }

    rowNode(row, at) {
        if (row instanceof AreaRow) {
            return make('tr', {class: 'area', id: `row${at}`, 'aria-rowindex': at + 2, 'aria-level': '1'},
                make('th', {colspan: this.columns, scope: 'rowgroup'}, row.title));
        }
        const isTree = this.mode === 'tree';
        const isObject = row.parent === null;
        const foldable = isTree && isObject && row.children.length > 0;
        const open = foldable && this.rows[at + 1] && this.rows[at + 1].parent === row;
        const sign = open ? '\u25be' : foldable ? '\u25b8' : '';
        return make('tr', {
            id: `row${at}`, class: `${isObject ? 'object' : 'sub'}${isTree ? ' in-tree' : ''}`, 'data-at': at,
            'aria-rowindex': at + 2, 'aria-level': isTree ? (isObject ? 2 : 3) : null,
            'aria-expanded': foldable ? String(Boolean(open)) : null, 'aria-selected': String(row === this.selected),
            'data-link': row.link,
        },
        make('th', {scope: 'row', class: 'column-place'},
            make('span', {class: foldable ? 'fold' : 'fold none', 'aria-hidden': 'true'}, sign),
            make('code', {}, isTree && !isObject ? ':' + row.sub : row.place)),
        ...kObjectColumns.slice(1).map(({key}) => this.cellNode(row, key)));
    }

    cellNode(row, key) {
        const text = row.text(key);
        if (key === 'type') {
            const word = shortType(text) || (row.parent === null && row.sub === null ? row.text('code') : '');
            return make('td', {class: 'column-type', title: text || null}, shown(word));
        }
        if (key === 'name' && this.mode === 'table' && row.parent) {
            const parent = make('span', {class: 'parent-name'}, shown(row.parent.text('name')), ' \u203a ');
            const title = plain(`${row.parent.text('name')} > ${text}`);
            return make('td', {class: 'column-name', title}, parent, shown(text));
        }
        const title = text.length > 8 ? plain(text) : null; // it may be cut
        return make('td', {class: `column-${key}`, title}, text ? shown(text) : '');
    }

    click(event) {
        const node = event.target.closest('tr[data-at]');
        if (!node) {
            return;
        }
        const row = this.rows[Number(node.dataset.at)];
        if (event.target.closest('.fold:not(.none)')) {
            this.toggle(row);
        }
        this.select(row);
    }

    toggle(row) {
        if (this.expanded.has(row)) {
            this.expanded.delete(row);
        } else {
            this.expanded.add(row);
        }
        this.update();
    }

    select(row, noteHash = true) {
        this.selected = row;
        for (const node of this.body.querySelectorAll('tr[data-at]')) {
            node.setAttribute('aria-selected', String(this.rows[Number(node.dataset.at)] === row));
        }
        this.noteActive();
        drawObjectDetails(row);
        if (noteHash) {
            rememberPlace(row.link);
        }
    }

    noteActive() {
        const at = this.selected ? this.rows.indexOf(this.selected) : -1;
        const node = at < 0 ? null : byId(`row${at}`);
        if (node) {
            this.table.setAttribute('aria-activedescendant', node.id);
        } else {
            this.table.removeAttribute('aria-activedescendant');
        }
    }

    scrollTo(at, toMiddle) {
        const head = byId('objects-head').getBoundingClientRect().height;
        const room = this.window.clientHeight - head;
        const top = at * this.rowHeight;
        if (toMiddle) {
            this.window.scrollTop = top - room / 2;
        } else if (top < this.window.scrollTop) {
            this.window.scrollTop = top;
        } else if (top + this.rowHeight > this.window.scrollTop + room) {
            this.window.scrollTop = top + this.rowHeight - room;
        }
        this.top = this.window.scrollTop;
        this.draw();
    }

    /** Selects the nearest row that is an object or subindex, from \a at in the direction of \a step. */
    goTo(at, step) {
        let next = Math.max(0, Math.min(this.rows.length - 1, at));
        while (this.rows[next] instanceof AreaRow && this.rows[next + step]) {
            next += step;
        }
        const row = this.rows[next];
        if (row && !(row instanceof AreaRow)) {
            this.select(row);
            this.scrollTo(next, false);
            this.noteActive();
        }
    }

    fold(row, open) {
        const isOpen = row.children.length > 0 && this.rows[this.rows.indexOf(row) + 1] &&
            this.rows[this.rows.indexOf(row) + 1].parent === row;
        if (row.parent && !open) {
            this.goTo(this.rows.indexOf(row.parent), 1);
        } else if (row.children.length && isOpen !== open) {
            this.toggle(row);
        }
    }

    key(event) {
        if (event.target !== this.table || event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        const at = this.selected ? this.rows.indexOf(this.selected) : -1;
        const page = Math.max(1, Math.floor(this.window.clientHeight / this.rowHeight) - 2);
        const steps = {ArrowUp: -1, ArrowDown: 1, PageUp: -page, PageDown: page};
        if (event.key in steps) {
            this.goTo(at + steps[event.key], Math.sign(steps[event.key]));
        } else if (event.key === 'Home') {
            this.goTo(0, 1);
        } else if (event.key === 'End') {
            this.goTo(this.rows.length - 1, -1);
        } else if (this.mode === 'tree' && at >= 0 && (event.key === 'ArrowRight' || event.key === 'ArrowLeft')) {
            this.fold(this.selected, event.key === 'ArrowRight');
        } else if (event.key === 'Enter' && at >= 0) {
            byId('objects-details').querySelector('button').focus();
        } else {
            return;
        }
        event.preventDefault();
    }

    /** Brings a row into view, whatever hides it. */
    show(row) {
        byId('objects-filter').value = '';
        byId('objects-line').value = '';
        if (row.parent) {
            this.expanded.add(row.parent);
        }
        this.selected = row;
        this.update();
        this.measure();
        this.scrollTo(this.rows.indexOf(row), true);
        this.select(row, false);
        const narrow = window.matchMedia('(max-width: 1299px)').matches; // the details stand below, over the page
        (narrow ? this.window : byId('objects')).scrollIntoView({block: 'start'});
        this.table.focus({preventScroll: true});
    }
}

let objectView = null;

function drawObjects() {
    const lines = data.lines.filter((line) => line.dictionary.length);
    if (!lines.length) {
        return false;
    }
    byId('objects-line').append(make('option', {value: ''}, 'all'), ...lines.map((line) =>
        make('option', {value: line.number}, `${line.number}, ${plain(line.type || '')}`)));
    byId('objects-line-label').hidden = lines.length < 2;
    byId('objects-details').append(make('p', {class: 'hint'},
        'Choose a row to see all of it. With the keyboard: arrows move and unfold, Enter goes to the details.'));
    objectView = new ObjectView(lines);
    return true;
}
