// Puts the page together, and follows its links.

const kSections = [
    ['summary', 'Summary', drawSummary],
    ['comparison', 'Comparison', drawComparison],
    ['frames', 'Frames', drawFrames],
    ['identifiers', 'Identifiers', drawIdentifiers],
    ['load', 'Bus load', drawLoad],
    ['objects', 'Objects', drawObjects],
    ['connections', 'Connections', drawConnections],
    ['footprint', 'Footprint', drawFootprint],
];

/** Notes the place in the address, so that it can be kept or sent; not in the history, which would fill. */
function rememberPlace(link) {
    try {
        window.history.replaceState(null, '', link);
    } catch (error) { // some places of a page do not allow it
    }
}

function followLink() {
    const place = placeOf(window.location.hash);
    if (place && place.row) {
        objectView.show(place.row);
    } else if (place) {
        showFrame(place);
    } else if (/^#\d+\//.test(window.location.hash)) {
        say('There is no such place in this project');
    }
}

/** A link to where the page already is leads there again. */
function followAgain(event) {
    const target = event.target.closest('a[href^="#"]');
    if (target && target.getAttribute('href') === window.location.hash) {
        followLink();
    }
}

/** Marks the section in view in the contents. */
function watchSections() {
    const seen = new Set();
    const watcher = new IntersectionObserver((entries) => {
        entries.forEach(({target, isIntersecting}) => (isIntersecting ? seen.add(target.id) : seen.delete(target.id)));
        const current = kSections.find(([id]) => seen.has(id));
        for (const link of document.querySelectorAll('#contents a')) {
            if (current && link.hash === `#${current[0]}`) {
                link.setAttribute('aria-current', 'true');
            } else {
                link.removeAttribute('aria-current');
            }
        }
    }, {rootMargin: '-15% 0px -75% 0px'});
    kSections.forEach(([id]) => byId(id) && watcher.observe(byId(id)));
}

/** What is folded away on the screen stands on paper. */
function unfoldForPrint() {
    let closed = [];
    window.addEventListener('beforeprint', () => {
        closed = [...document.querySelectorAll('details:not([open])')];
        closed.forEach((details) => { details.open = true; });
    });
    window.addEventListener('afterprint', () => closed.forEach((details) => { details.open = false; }));
}

for (const [id, title, draw] of kSections) {
    if (draw()) {
        byId('contents').append(make('li', {}, make('a', {href: `#${id}`}, title)));
    } else {
        byId(id).remove();
    }
}
watchSections();
unfoldForPrint();
window.addEventListener('hashchange', followLink);
document.addEventListener('click', followAgain);
followLink();
document.documentElement.classList.add('ready');
