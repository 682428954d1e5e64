// Places of the project and the links to them: "#0/0x2010:1", "#1/pgn/0xFEEE", "#0/frame/tpdo1". The number of a
// subindex is decimal.

const kObjectLink = /^#(\d+)\/0x([0-9a-fA-F]{1,4})(?::(\d+))?$/;
const kFrameLink = /^#(\d+)\/(?:frame\/(.+)|((?:pgn|can)\/0x[0-9a-fA-F]+(?:\/transmit|\/receive)?))$/;

const linesByNumber = new Map(data.lines.map((line) => [line.number, line]));

function frameLink(line, frame) {
    return /^(pgn|can)\//.test(frame.key) ? `#${line.number}/${frame.key}` : `#${line.number}/frame/${frame.key}`;
}

function objectPlace([, number, index, sub]) {
    const line = linesByNumber.get(Number(number));
    const object = line && line.objectsByIndex.get(parseInt(index, 16));
    if (!object || sub === undefined) {
        return object ? {row: object} : null;
    }
    const row = object.sub === Number(sub) ? object : object.children.find((child) => child.sub === Number(sub));
    return row ? {row} : null;
}

function framePlace([, number, key, pgnOrId]) {
    const line = linesByNumber.get(Number(number));
    const frame = line && line.framesByKey.get((key || pgnOrId).toLowerCase());
    return frame ? {line, frame} : null;
}

/** {row} for an object or subindex, {line, frame} for a frame, null for what is not in the project. */
function placeOf(link) {
    const object = kObjectLink.exec(link || '');
    const frame = object ? null : kFrameLink.exec(link || '');
    return object ? objectPlace(object) : frame ? framePlace(frame) : null;
}

function linkOf(place) {
    return place.row ? place.row.link : frameLink(place.line, place.frame);
}

/** \a content as a link if the place is in the project, else as it is. */
function linked(link, content) {
    const place = placeOf(link);
    return place ? make('a', {href: linkOf(place)}, content) : content;
}
