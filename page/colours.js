// Fills of the pictures: a colour for each library, then patterns on the same colours.
import {element, svg} from './dom.js';

const COLOURS = 12;
const PATTERNS = {
    rising: 'M-2 2L2 -2M0 8L8 0M6 10L10 6',
    falling: 'M-2 6L2 10M0 0L8 8M6 -2L10 2',
    upright: 'M4 0V8',
    level: 'M0 4H8',
    crossed: 'M4 0V8M0 4H8',
    dotted: 'M3 4H5',
};
const LEGEND = 24;

// Returns for each library its fill: {colour, pattern, rank}, a class, a paint and the place in the
// order of the bytes. The twelve libraries of most bytes have no pattern (null). The last entry is
// that of objects in no library.
export function libraryfills(graph) {
    const bytes = graph.libraries.map(() => 0);
    for (const {library, size} of graph.objects) {
        if (library !== undefined)
            bytes[library] += size ?? 0;
    }
    const names = Object.keys(PATTERNS);
    const fills = [];
    const order = [...bytes.keys()].sort((a, b) => bytes[b] - bytes[a]);
    order.forEach((library, rank) => {
        const layer = Math.floor(rank / COLOURS) - 1;
        const pattern = layer < 0 ? null : `url(#pattern-${names[layer % names.length]})`;
        fills[library] = {colour: `fill-${rank % COLOURS + 1}`, pattern, rank};
    });
    if (order.length > COLOURS)
        definepatterns();
    fills.push({colour: order.length > 0 ? 'fill-none' : 'fill-1', pattern: null, rank: order.length});
    return fills;
}

// Adds the patterns to the document once.
function definepatterns() {
    if (document.querySelector('.patterns') !== null)
        return;
    const definitions = Object.entries(PATTERNS).map(([name, path]) => svg('pattern', {
        id: `pattern-${name}`, width: 8, height: 8, patternUnits: 'userSpaceOnUse',
    }, svg('path', {class: 'pattern-edge', d: path}), svg('path', {class: 'pattern-line', d: path})));
    document.body.append(svg('svg', {class: 'patterns', 'aria-hidden': 'true'},
                             svg('defs', {}, definitions)));
}

export function fillof(fills, object) {
    return fills[object.library ?? fills.length - 1];
}

// Returns the rectangle of a fill and, where it has a pattern, the pattern's above it.
export function fillrects(fill, place) {
    const rects = [svg('rect', {class: 'cell-fill', ...place})];
    if (fill.pattern !== null)
        rects.push(svg('rect', {...place, fill: fill.pattern}));
    return rects;
}

// Returns the list of the objects' libraries with their fills; null for fewer than two.
export function legend(graph, fills, objects) {
    const none = graph.libraries.length;
    const used = new Set(Array.from(objects, object => graph.objects[object].library ?? none));
    if (used.size < 2)
        return null;
    const order = [...used].sort((a, b) => fills[a].rank - fills[b].rank);
    const samples = order.slice(0, LEGEND).map(library => element('li', {},
        svg('svg', {class: `sample ${fills[library].colour}`, 'aria-hidden': 'true'},
            fillrects(fills[library], {width: 16, height: 16})),
        graph.libraries[library] ?? 'no library'));
    const more = order.length > LEGEND ? element('li', {}, `and ${order.length - LEGEND} more`) : null;
    return element('ul', {class: 'legend', 'aria-label': 'Colours'}, samples, more);
}
