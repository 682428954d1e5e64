// Making elements. Texts become text nodes, never markup; styles are classes, since the page's policy allows no
// style attributes.

const kSvg = 'http://www.w3.org/2000/svg';

function fill(node, attributes, children) {
    for (const [name, value] of Object.entries(attributes)) {
        if (name.startsWith('on')) {
            node.addEventListener(name.slice(2), value);
        } else if (value === true) {
            node.setAttribute(name, '');
        } else if (value !== null && value !== undefined && value !== false) {
            node.setAttribute(name, value);
        }
    }
    node.append(...children.filter((child) => child !== null && child !== undefined && child !== ''));
    return node;
}

/** An element; attributes that are null or false are left out, "onclick" and the like are listeners. */
function make(tag, attributes = {}, ...children) {
    return fill(document.createElement(tag), attributes, children);
}

function makeSvg(tag, attributes = {}, ...children) {
    return fill(document.createElementNS(kSvg, tag), attributes, children);
}

function byId(id) {
    return document.getElementById(id);
}

function chip(kind, text) {
    return make('span', {class: `chip ${kind}`}, text);
}

/** A part of the page that scrolls sideways where it must, for the keyboard too. */
function scrolling(label, ...children) {
    return make('div', {class: 'scroll', tabindex: '0', role: 'region', 'aria-label': label}, ...children);
}

/** Rows of [term, description, class]; those without a description are left out. */
function definitions(rows) {
    const list = make('dl', {class: 'facts'});
    for (const [term, description, kind] of rows) {
        if (description !== null && description !== undefined && description !== '') {
            list.append(make('div', {class: kind}, make('dt', {}, term), make('dd', {}, description)));
        }
    }
    return list;
}

/** A number with a bar behind it, as long as its share of the whole. */
function bar(share, kind = '') {
    const inner = make('span', {class: `bar-fill ${kind}`});
    inner.style.width = `${Math.min(100, Math.max(0, share * 100))}%`;
    return make('span', {class: 'bar', 'aria-hidden': 'true'}, inner);
}

function compareCells(a, b) {
    if (typeof a === 'number' && typeof b === 'number') {
        return a - b;
    }
    return String(a).localeCompare(String(b), 'en', {numeric: true});
}

/** The button of a column's head; \a state is 'ascending', 'descending' or 'none'. */
function sortButton(title, state, onclick) {
    const sign = {ascending: '\u25b2', descending: '\u25bc', none: ''}[state];
    return make('button', {type: 'button', class: 'sort', onclick}, title,
        make('span', {class: 'sort-sign', 'aria-hidden': 'true'}, sign));
}

/**
 * A table that sorts by each column. A column has a title, value(row) to sort by, and node(row) if that is not
 * what is shown; "number" columns stand to the right.
 */
function sortedTable(caption, columns, rows, sortedBy = 0) {
    const head = make('tr');
    const body = make('tbody');
    let current = {column: sortedBy, descending: false};

    const draw = () => {
        const {value} = columns[current.column];
        const order = rows.slice().sort((a, b) => compareCells(value(a), value(b)));
        if (current.descending) {
            order.reverse();
        }
        head.replaceChildren(...columns.map((column, at) => {
            const state = at !== current.column ? 'none' : current.descending ? 'descending' : 'ascending';
            const button = sortButton(column.title, state, () => {
                current = {column: at, descending: at === current.column && !current.descending};
                draw();
                head.children[at].querySelector('button').focus();
            });
            return make('th', {scope: 'col', class: column.kind, 'aria-sort': state, 'data-title': column.title}, button);
        }));
        body.replaceChildren(...order.map((row) => make('tr', {}, ...columns.map((column, at) => {
            const content = column.node ? column.node(row) : column.value(row);
            const node = content instanceof Node ? content : column.value(row) === null ? '' : String(content);
            return make(at === 0 ? 'th' : 'td', {scope: at === 0 ? 'row' : null, class: column.kind}, node);
        }))));
    };
    draw();
    return make('table', {class: 'plain'}, caption ? make('caption', {}, caption) : null, make('thead', {}, head), body);
}

/** Calls \a action when nothing was typed for a moment; a filter of many rows shall not answer each key. */
function afterTyping(input, action, pauseMs = 0) {
    let timer = 0;
    input.addEventListener('input', () => {
        clearTimeout(timer);
        timer = setTimeout(action, pauseMs);
    });
    input.form.addEventListener('submit', (event) => {
        event.preventDefault();
        clearTimeout(timer);
        action();
    });
}

let sayTimer = 0;

/** Tells a reader of the screen, and shows for a moment, what an action did. */
function say(text) {
    const place = byId('said');
    place.textContent = text;
    place.classList.add('now');
    clearTimeout(sayTimer);
    sayTimer = setTimeout(() => place.classList.remove('now'), 2500);
}
