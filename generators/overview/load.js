// Bus load: what share of the time the frames of a line take. The bits of a frame come with the data, as
// [least, average, most]; here they meet bit rates and periods.

const kBitRates = [10, 20, 50, 100, 125, 250, 500, 800, 1000]; // kbit/s, CiA 301, 5.1, and 100
const kDataBitRates = [500, 1000, 2000, 4000, 5000, 8000];
const kAverage = 1;
const kMost = 2;

/** Transmission types of PDOs that come with each SYNC, or with each so many: CiA 301, 7.5.2.36. */
function isCyclicSynchronous(frame) {
    return frame.transmission >= 1 && frame.transmission <= 240;
}

class LineLoad {
    constructor(line) {
        this.line = line;
        this.frames = line.frames.filter((frame) => frame.bits && frame.enabled !== false);
        this.typed = new Map(); // periods in ms that the reader has typed in, by frame
        this.bitRate = line.bitRate || (/J1939/.test(line.type || '') ? 250 : 500);
        this.dataBitRate = line.dataBitRate || Math.max(2000, this.bitRate);
        this.isBurst = false; // all that has an inhibit time is sent as often as this allows
        this.sync = this.frames.find((frame) => frame.kind === 'SYNC') || null;
    }

    /** In ms, null if nobody knows it. */
    period(frame) {
        if (this.typed.has(frame)) {
            return this.typed.get(frame);
        }
        if (this.isBurst && frame.inhibit && !isCyclicSynchronous(frame)) {
            return frame.inhibit;
        }
        if (frame.cycle) {
            return frame.cycle;
        }
        if (this.sync && frame !== this.sync && isCyclicSynchronous(frame)) {
            const cycle = this.period(this.sync);
            return cycle ? cycle * frame.transmission : null;
        }
        return null;
    }

    /** Whether a reader has to say the period of this frame, or has said it. */
    isOpen(frame) {
        return !frame.cycle && (this.typed.has(frame) || this.period(frame) === null);
    }

    /** The time that a frame takes on the bus, in ms: bits by kbit/s. */
    duration(frame, which) {
        const {arbitration, data: fast} = frame.bits;
        return arbitration[which] / this.bitRate + fast[which] / this.dataBitRate;
    }

    share(frame, which) {
        const period = this.period(frame);
        return period ? this.duration(frame, which) / period : 0;
    }

    sum(which) {
        return this.frames.reduce((sum, frame) => sum + this.share(frame, which), 0);
    }
}

function rateChoice(title, rates, current, picked) {
    const all = [...new Set([...rates, current])].sort((a, b) => a - b);
    const other = make('input', {
        type: 'number', min: '1', step: 'any', inputmode: 'decimal', 'aria-label': `${title} in kbit/s`, hidden: true,
    });
    const select = make('select', {},
        ...all.map((rate) => make('option', {value: rate, selected: rate === current}, `${grouped(rate)} kbit/s`)),
        make('option', {value: ''}, 'other'));
    const change = () => {
        other.hidden = select.value !== '';
        const rate = Number(select.value || other.value);
        if (rate > 0) {
            picked(rate);
        }
    };
    select.addEventListener('change', change);
    other.addEventListener('input', change);
    return make('span', {class: 'rate'}, make('label', {}, title, ' ', select), other);
}

function burstChoice(load, changed) {
    const box = make('input', {type: 'checkbox'});
    box.addEventListener('change', () => {
        load.isBurst = box.checked;
        changed();
    });
    return make('label', {}, box, 'As often as inhibit times allow');
}

function loadClass(share) {
    return share > 1 ? 'over' : share > 0.7 ? 'high' : share > 0.4 ? 'middle' : 'low';
}

function loadSummary(title, share) {
    return make('div', {class: `gauge ${loadClass(share)}`},
        make('span', {class: 'gauge-title'}, title),
        make('strong', {}, percent(share)),
        bar(share, loadClass(share)),
        share > 1 ? make('span', {class: 'gauge-note'}, 'More than the bus can carry') : null);
}

function periodField(load, frame, changed) {
    const typed = load.typed.get(frame);
    const input = make('input', {
        type: 'number', min: '0', step: 'any', inputmode: 'decimal', class: 'period',
        'aria-label': `Period of ${plain(frame.name || frame.key)} in ms`, value: typed || null, placeholder: 'ms',
    });
    input.addEventListener('input', () => {
        if (Number(input.value) > 0) {
            load.typed.set(frame, Number(input.value));
        } else {
            load.typed.delete(frame);
        }
        changed();
    });
    return input;
}

function periodSource(load, frame) {
    if (load.isBurst && load.period(frame) === frame.inhibit) {
        return ' inhibit';
    }
    if (!frame.cycle) {
        return isCyclicSynchronous(frame) ? ' SYNC' : '';
    }
    return frame.cycle === frame.event ? ' event' : '';
}

function bitsOf(frame, which) {
    return rounded(frame.bits.arbitration[which] + frame.bits.data[which]);
}

/** A row of the table; the cells of its load follow what is typed. */
function loadRow(load, frame, changed) {
    const average = make('td', {class: 'number'});
    const most = make('td', {class: 'number'});
    const period = make('td', {class: 'number'});
    const open = load.isOpen(frame);
    if (open) {
        period.append(periodField(load, frame, changed));
    }
    const identifier = make('td', {class: 'wide-only'});
    const update = (sum) => {
        const known = load.period(frame);
        identifier.replaceChildren(identifierFact(frame) || '');
        if (!open) {
            const source = periodSource(load, frame);
            period.replaceChildren(known ? `${rounded(known)} ms` : '', source ? make('small', {}, source) : '');
        } else {
            period.firstChild.placeholder = known ? rounded(known) : 'ms';
        }
        average.textContent = known ? percent(load.share(frame, kAverage)) : '';
        const share = load.share(frame, kMost);
        most.replaceChildren(...(known ? [percent(share), bar(share / (sum || 1))] : []));
    };
    const row = make('tr', {},
        make('th', {scope: 'row'}, linked(frameLink(load.line, frame), shown(frame.name || frame.key))),
        identifier,
        make('td', {class: 'number wide-only'}, String(frame.length || 0)),
        make('td', {class: 'number wide-only'}, bitsOf(frame, kAverage)),
        make('td', {class: 'number wide-only'}, bitsOf(frame, kMost)),
        period, average, most);
    return {row, update};
}

function loadTable(load, changed) {
    const known = load.frames.filter((frame) => !load.isOpen(frame))
        .sort((a, b) => load.share(b, kMost) - load.share(a, kMost));
    const open = load.frames.filter((frame) => load.isOpen(frame));
    const rowsOf = (frames) => frames.map((frame) => loadRow(load, frame, changed));
    const first = rowsOf(known);
    const second = rowsOf(open);
    const numbers = (title, extra = '') => make('th', {scope: 'col', class: `number ${extra}`}, title);
    const table = make('table', {class: 'plain load-table'},
        make('caption', {class: 'hidden-text'}, `Frames of ${lineTitle(load.line)} by load`),
        make('thead', {}, make('tr', {}, make('th', {scope: 'col'}, 'Frame'),
            make('th', {scope: 'col', class: 'wide-only'}, 'Identifier'), numbers('Bytes', 'wide-only'),
            numbers('Bits, average', 'wide-only'), numbers('Bits, most', 'wide-only'),
            numbers('Period'), numbers('Average'), numbers('Worst'))),
        make('tbody', {}, ...first.map((one) => one.row)));
    if (open.length) {
        const title = `Without a period: ${counted(open.length, 'frame')}, not in the sum until you type one in`;
        table.append(make('tbody', {},
            make('tr', {}, make('th', {colspan: '8', scope: 'rowgroup', class: 'group-title'}, title)),
            ...second.map((one) => one.row)));
    }
    return {table, updates: [...first, ...second].map((one) => one.update)};
}

/** The part of a line; \a told(load) hears of each change. */
function drawLineLoad(load, told) {
    const gauges = make('div', {class: 'gauges', 'aria-live': 'polite'});
    let updates = [];
    const update = () => {
        const most = load.sum(kMost);
        gauges.replaceChildren(loadSummary('Average', load.sum(kAverage)), loadSummary('Worst case', most));
        updates.forEach((one) => one(most));
        told();
    };
    const built = loadTable(load, () => update());
    updates = built.updates;
    const choice = (title, rates, name) => rateChoice(title, rates, load[name], (rate) => {
        load[name] = rate;
        update();
    });
    const rates = make('form', {class: 'controls', onsubmit: (event) => event.preventDefault()},
        choice('Bit rate', kBitRates, 'bitRate'));
    if (load.frames.some((frame) => frame.bits.data[kMost] > 0)) {
        rates.append(choice('Data bit rate', kDataBitRates, 'dataBitRate'));
    }
    if (load.frames.some((frame) => frame.inhibit && !isCyclicSynchronous(frame))) {
        rates.append(burstChoice(load, update));
    }
    const node = make('article', {class: 'card load-line'}, lineHeading('h3', load.line), rates, gauges,
        scrolling(`Load of ${lineTitle(load.line)}`, built.table));
    return {node, update};
}

function loadSums(loads) {
    return make('table', {class: 'plain'}, make('caption', {}, 'All lines'),
        make('thead', {}, make('tr', {}, ...['Line', 'Bit rate', 'Average', 'Worst case'].map((title, at) =>
            make('th', {scope: 'col', class: at ? 'number' : null}, title)))),
        make('tbody', {}, ...loads.map((load) => make('tr', {},
            make('th', {scope: 'row'}, `${lineTitle(load.line)}, ${load.line.type || ''}`),
            make('td', {class: 'number'}, `${grouped(load.bitRate)} kbit/s`),
            make('td', {class: 'number'}, percent(load.sum(kAverage))),
            make('td', {class: 'number'}, percent(load.sum(kMost)))))));
}

function drawLoad() {
    const loads = data.lines.map((line) => new LineLoad(line)).filter((load) => load.frames.length);
    const body = byId('load-body');
    const sums = make('div', {});
    const drawSums = () => {
        if (loads.length > 1) {
            sums.className = 'sums';
            sums.replaceChildren(scrolling('Load of all lines', loadSums(loads)));
        }
    };
    body.append(sums);
    for (const load of loads) {
        const part = drawLineLoad(load, drawSums);
        body.append(part.node);
        part.update();
        document.addEventListener(kRenumbered, part.update);
    }
    return loads.length > 0;
}
