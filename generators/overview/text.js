// Texts and numbers as they stand on the page. Texts of a project are foreign: nothing in them becomes markup,
// and nothing in them hides or turns what stands around it.

/** Characters that nobody sees, or that change the direction of their neighbours. */
const kHidden =
    /[\u0000-\u001f\u007f-\u009f\u00ad\u034f\u061c\u115f\u1160\u17b4\u17b5\u180b-\u180f\u200b-\u200f\u2028-\u202e\u2060-\u206f\u3164\ufe00-\ufe0f\ufeff\uffa0\ufff0-\ufffb]/;
const kHiddenRuns = new RegExp(`(${kHidden.source})`);

function codePoint(character) {
    return 'U+' + character.charCodeAt(0).toString(16).toUpperCase().padStart(4, '0');
}

/** For attributes and drawings, where no element can isolate a text. */
function plain(text) {
    return text.split(kHiddenRuns).map((part) => (kHidden.test(part) ? `[${codePoint(part)}]` : part)).join('');
}

/** A text of the project, isolated from its neighbours. */
function shown(text) {
    const node = make('bdi');
    for (const part of String(text).split(kHiddenRuns)) {
        if (kHidden.test(part)) {
            node.append(make('span', {class: 'unseen', title: 'A character that is not visible'}, codePoint(part)));
        } else {
            node.append(part);
        }
    }
    return node;
}

/** A description: line ends and tabulators are welcome. */
function paragraphs(text) {
    return text.split(/\r?\n/).map((line) => make('p', {}, shown(line.replace(/\t/g, ' '))));
}

function hex(number, digits) {
    return '0x' + number.toString(16).toUpperCase().padStart(digits, '0');
}

function identifierText(id, extended) {
    return hex(id, extended ? 8 : 3);
}

function placeText(index, sub) {
    return hex(index, 4) + (sub === null ? '' : ':' + sub);
}

const kEnglish = new Intl.NumberFormat('en');

/** 12345 as "12,345". */
function grouped(number) {
    return kEnglish.format(number);
}

function counted(number, one, many = one + 's') {
    return `${grouped(number)} ${number === 1 ? one : many}`;
}

function percent(share) {
    const value = share * 100;
    return `${value >= 10 || value === 0 ? value.toFixed(1) : value.toPrecision(2)} %`;
}

/** At most two decimals, none that are 0. */
function rounded(number) {
    return grouped(Math.round(number * 100) / 100);
}

const kTypeWords = [
    [/^UNSIGNED(\d+)$/, 'U$1'],
    [/^INTEGER(\d+)$/, 'I$1'],
    [/^REAL(\d+)$/, 'R$1'],
    [/^BOOLEAN$/, 'BOOL'],
    [/^VISIBLE_?STRING$/, 'VS'],
    [/^OCTET_?STRING$/, 'OS'],
    [/^UNICODE_?STRING$/, 'US'],
    [/^UTF8_?STRING$/, 'UTF8'],
    [/^TIME_OF_DAY$/, 'TOD'],
    [/^TIME_DIFFERENCE$/, 'TD'],
];

/** "UNSIGNED32" as "U32"; a type without a short word stays as it is. */
function shortType(type) {
    const row = kTypeWords.find(([form]) => form.test(type));
    return row ? type.replace(row[0], row[1]) : type;
}
