// "Speed 0:76543210 1:76543210": of each value in a drawing its name and the bits below it, as the numbers at the
// left and above name them.
(() => {
    const drawing = document.getElementById('%FRAME%').querySelector('.matrix');
    const number = (node, name) => Number(node.getAttribute(name));
    const axis = [...drawing.querySelectorAll('.axis')].map((node) => ({text: node.textContent, x: number(node, 'x'), y: number(node, 'y')}));
    const top = Math.min(...axis.map(({y}) => y));
    const inside = (at, from, size) => at > from && at < from + size;
    return [...drawing.querySelectorAll('.cell')].map((cell) => {
        const bytes = [...cell.querySelectorAll('rect')].map((rect) => {
            const byte = axis.find(({y}) => y !== top && inside(y, number(rect, 'y'), number(rect, 'height')));
            const bits = axis.filter(({x, y}) => y === top && inside(x, number(rect, 'x'), number(rect, 'width')));
            return `${byte.text}:${bits.sort((a, b) => a.x - b.x).map(({text}) => text).join('')}`;
        });
        return [(cell.querySelector('.name') || {textContent: ''}).textContent, ...bytes].join(' ');
    });
})()
