// The picture of all objects: a rectangle for each library, in it one for each object, the area by
// bytes.
import {hierarchy, treemap as treemaplayout} from 'd3-hierarchy';
import {fillof, legend, libraryfills} from './colours.js';
import {bytes, bytesinwords, counted, element, rounded} from './dom.js';
import {activate, makepicture, share} from './picture.js';

const LEAST = 4; // pixels of the sides of the smallest cell that is drawn

// Returns {element}. onselect(object) is called after the reader chooses an object.
export function treemap(graph, onselect) {
    const fills = libraryfills(graph);
    const none = graph.libraries.length;
    const members = Array.from({length: none + 1}, () => []);
    graph.objects.forEach(({library}, object) => members[library ?? none].push(object));
    const used = [...members.keys()].filter(library => members[library].length > 0);
    const state = {graph, fills, members, used, onselect, trees: new Map(), shown: [], places: new Map()};
    state.total = graph.objects.reduce((sum, _, object) => sum + graph.size(object), 0);
    state.tree = maketree(state, used.length === 1 ? used[0] : -1);
    state.top = state.tree;
    state.frame = makepicture({
        label: 'Picture of all objects, area by bytes',
        help: used.length > 1 ? 'Click or Enter: go to an object, look into a library. Escape: back. ' +
                  'Arrow keys: move to the next larger or smaller one, to the library and into it.'
            : 'Click or Enter: go to an object. Arrow keys: move to the next larger or smaller one.',
        layout: (width, letter) => layout(state, width, letter),
        cells: (top, bottom) => state.shown.filter(({y, height}) => y < bottom && y + height > top),
        place: node => state.places.get(node) ?? {y: 0, height: 0},
        describe: node => describe(state, node),
        move: (node, key) => move(state, node, key),
        open: node => open(state, node),
        back: () => back(state),
    }, state.tree.children?.[0] ?? state.tree);
    state.frame.element.classList.add('treemap');
    state.frame.element.append(legend(graph, fills, graph.objects.keys()) ?? '');
    return {element: state.frame.element};
}

// Returns the tree of all libraries (-1) or of one. Its nodes are made once.
function maketree(state, library) {
    const {graph, members, used, trees} = state;
    if (trees.has(library))
        return trees.get(library);
    const makelibrary = number => ({library: number, below: members[number].map(object => ({object}))});
    const data = library >= 0 ? makelibrary(library) : {below: used.map(makelibrary)};
    const tree = hierarchy(data, ({below}) => below)
        .sum(({object}) => object === undefined ? 0 : graph.size(object))
        .sort((a, b) => b.value - a.value);
    tree.each(node => {
        node.number = node.data.object ?? `library-${node.data.library ?? 'all'}`;
    });
    trees.set(library, tree);
    return tree;
}

// Sets the cells that are large enough, a library before its objects, and returns the height.
function layout(state, width, letter) {
    const {tree, top, graph} = state;
    if (state.laid === tree && state.width === width)
        return state.height;
    const height = Math.round(Math.max(240, Math.min(560, width * 0.55, innerHeight * 0.7)));
    const isNamed = node => node.data.library !== undefined && node !== top;
    treemaplayout().size([width, height]).round(true).paddingInner(1)
        .paddingTop(node => isNamed(node) ? Math.round(letter.height * 1.8) : 0)(tree);
    state.shown = [];
    tree.eachBefore(node => {
        const {x0, x1, y0, y1} = node;
        const {object, library} = node.data;
        if (x1 - x0 < LEAST || y1 - y0 < LEAST || (object === undefined && !isNamed(node)))
            return;
        const isOuter = node === tree;
        const name = object === undefined ? libraryname(graph, library) : graph.objects[object].name;
        state.shown.push({
            node, x: x0, y: y0, width: x1 - x0, height: y1 - y0, level: node.depth + (tree === top ? 0 : 1),
            fill: object === undefined ? state.fills[library] : fillof(state.fills, graph.objects[object]),
            name: isOuter ? `‹ ${name}` : name,
            size: object === undefined ? undefined : rounded(node.value) || bytes(node.value),
            ground: object === undefined, outer: isOuter,
        });
    });
    state.places = new Map(state.shown.map(cell => [cell.node, cell]));
    Object.assign(state, {laid: tree, width, height});
    if (!state.places.has(state.frame.active))
        state.frame.active = state.shown[0]?.node ?? tree;
    return height;
}

function libraryname(graph, library) {
    return graph.libraries[library] ?? 'no library';
}

function describe({graph, members, total}, {data, value}) {
    const {object, library} = data;
    const size = `${bytesinwords(value)}, ${share(value, total)} of all`;
    if (object !== undefined) {
        const {name, library: home} = graph.objects[object];
        return [element('bdi', {}, name), home === undefined ? '' : [' in ', element('bdi', {}, graph.libraries[home])],
                `: ${size}`];
    }
    if (library === undefined)
        return [size];
    return [element('bdi', {}, libraryname(graph, library)),
            `: ${counted(members[library].length, 'object')}, ${size}`];
}

function move({shown, places}, node, key) {
    const row = () => shown.filter(cell => cell.node.parent === node.parent).map(cell => cell.node);
    const next = {
        Home: () => shown[0]?.node,
        End: () => shown.at(-1)?.node,
        ArrowUp: () => node.parent,
        ArrowDown: () => node.children?.[0],
        ArrowLeft: () => row()[row().indexOf(node) - 1],
        ArrowRight: () => row()[row().indexOf(node) + 1],
    };
    const to = next[key]?.();
    return places.has(to) ? to : null;
}

function open(state, node) {
    const {object, library} = node.data;
    if (object !== undefined)
        state.onselect(object);
    else if (node === state.tree)
        back(state);
    else
        look(state, maketree(state, library));
}

function look(state, tree) {
    state.tree = tree;
    activate(state.frame, tree.children[0]);
}

// Returns whether the picture was looking into a library.
function back(state) {
    const {tree, top} = state;
    if (tree === top)
        return false;
    state.tree = top;
    activate(state.frame, top.children.find(node => node.data.library === tree.data.library));
    return true;
}
