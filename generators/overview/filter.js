// What is typed above the object dictionary, as a question that each row answers.

const kAccessWords = ['ro', 'wo', 'rw', 'rwr', 'rww', 'const'];
const kTypeWord = /^(?:[uir]\d{1,2}|bool|vs|os|us|utf8|tod|td|domain)$/;
const kFieldWord = /^(name|type|access|variable|description|default|pdo|storage|identifier):(.+)$/;
const kPlaceWord = /^(?:0x)?([0-9a-f]{1,4})(?::(?:0x)?([0-9a-f]{1,2})?)?$/;
const kTextColumns = ['name', 'variable', 'identifier', 'type'];

/** The texts of the project in small letters, each made when it is asked first. */
const smallTexts = new Array(data.texts.length);

/** Answers \a asked by the number of a text; many rows share a text, which is asked once. */
function answers(asked) {
    const known = new Uint8Array(data.texts.length); // 1 is yes, 2 is no
    return (number) => {
        if (known[number] === 0) {
            smallTexts[number] = smallTexts[number] || data.texts[number].toLowerCase();
            known[number] = asked(smallTexts[number]) ? 1 : 2;
        }
        return known[number] === 1;
    };
}

/** "rw" also finds "rwr" and "rww", which say more of the same. */
function accessQuestion(word) {
    const fits = answers((text) => text === word || (word === 'rw' && /^rw[rw]$/.test(text)));
    return (row) => fits(row.textNumber('access'));
}

function typeQuestion(word) {
    const fits = answers((text) => shortType(text.toUpperCase()).toLowerCase() === word);
    return (row) => fits(row.textNumber('type'));
}

function fieldQuestion(field, word) {
    const fits = answers((text) => text.includes(word));
    return (row) => fits(row.textNumber(field));
}

function textQuestion(word) {
    const fits = answers((text) => text.includes(word));
    return (row) => kTextColumns.some((column) => fits(row.textNumber(column))) ||
        (row.parent !== null && fits(row.parent.textNumber('name')));
}

/** "20" finds 0x20.., "2010:1" one subindex; what is written with 0x or a colon is nothing but a place. */
function placeQuestion(word) {
    const [, digits, sub] = kPlaceWord.exec(word);
    return (row) => row.index.toString(16).padStart(4, '0').startsWith(digits) &&
        (sub === undefined || (row.sub !== null && (String(row.sub) === sub || row.sub === parseInt(sub, 16))));
}

function questionOf(word) {
    const field = kFieldWord.exec(word);
    if (field) {
        return fieldQuestion(field[1], field[2]);
    }
    if (kAccessWords.includes(word)) {
        return accessQuestion(word);
    }
    if (kTypeWord.test(word)) {
        return typeQuestion(word);
    }
    if (kPlaceWord.test(word)) {
        const place = placeQuestion(word);
        const text = textQuestion(word);
        return /^0x|:/.test(word) ? place : (row) => place(row) || text(row);
    }
    return textQuestion(word);
}

/** A function that tells of a row whether all words fit, or null if nothing was typed. */
function rowFilter(typed) {
    const questions = typed.toLowerCase().split(/\s+/).filter(Boolean).map(questionOf);
    return questions.length ? (row) => questions.every((asked) => asked(row)) : null;
}
