// The picture of what an object links in: a cell for each object, below it the cells of those that it
// links in first. The width is the bytes of the object and of all below it.
import {hierarchy, partition} from 'd3-hierarchy';
import {fillof, legend, libraryfills} from './colours.js';
import {bytes, element} from './dom.js';
import {activate, drawpicture, makepicture, share} from './picture.js';

const LEAST = 1; // pixels of the narrowest cell that is drawn
const WIDE = 8; // pixels of a cell after select() looks into a cell around it

// Returns {element, select(object)}. `linked` is the result of a closure. onselect(object) is called
// after the reader chooses a cell, not by select().
export function icicle(graph, linked, onselect) {
    const fills = libraryfills(graph);
    const root = makenodes(linked);
    const state = {
        graph, linked, fills, root, onselect, zoom: root, trail: [], shown: [], places: new Map(),
        laid: {}, nodes: new Map(root.descendants().map(node => [node.object, node])),
    };
    state.frame = makepicture({
        label: 'Picture of the linked objects, width by bytes',
        help: 'Click or Enter: look into a cell. Escape or the outer cell: back. Arrow keys: move.',
        layout: (width, letter) => layout(state, width, letter),
        cells: (top, bottom) => state.shown.filter(({y, height}) => y < bottom && y + height > top),
        place: node => state.places.get(node),
        describe: node => describe(state, node),
        move: (node, key) => move(state, node, key),
        open: node => open(state, node),
        back: () => back(state),
    }, root);
    state.frame.element.append(legend(graph, fills, linked.objects) ?? '');
    return {element: state.frame.element, select: object => select(state, object)};
}

// Returns the tree of nodes with value (bytes with all below), x0 and x1 (from 0 to 1). The root has
// no object when several objects are at the top. The time of hierarchy() would grow with the square
// of the depth.
function makenodes(linked) {
    const Node = hierarchy({}).constructor;
    const makenode = (number, object, value) => Object.assign(new Node(number), {number, object, value});
    const nodes = Array.from(linked.objects, (object, position) => makenode(position, object, linked.below[position]));
    const top = nodes.filter(({number}) => linked.parents[number] < 0);
    const root = top.length === 1 ? top[0] : makenode(-1, -1, linked.total);
    for (const node of nodes) {
        if (node === root)
            continue;
        node.parent = nodes[linked.parents[node.number]] ?? root;
        (node.parent.children ??= []).push(node);
        node.depth = node.parent.depth + 1;
        root.height = Math.max(root.height, node.depth);
    }
    return partition()(root);
}

// Sets the cells that are wide enough, the outer one first, and returns the picture's height.
function layout(state, width, letter) {
    const {zoom, trail} = state;
    if (state.laid.zoom === zoom && state.laid.width === width)
        return state.laid.height;
    const height = Math.round(letter.height * 1.8);
    const scale = width / (zoom.x1 - zoom.x0 || 1);
    const cell = (node, x, row, wide) => ({
        node, x, y: row * height, width: wide, height: height - 1, row, level: row + 1,
        fill: fillofnode(state, node), name: nameof(state, node),
    });
    const rows = trail.length > 0 ? 1 : 0;
    state.shown = [];
    if (rows > 0) {
        const outer = cell(trail.at(-1), 0, 0, width);
        state.shown.push({...outer, name: `‹ ${outer.name}`, outer: true});
    }
    const rest = [zoom];
    let bottom = 0;
    while (rest.length > 0) {
        const node = rest.pop();
        const wide = node === zoom ? width : (node.x1 - node.x0) * scale;
        if (wide < LEAST)
            continue;
        const row = node.depth - zoom.depth + rows;
        state.shown.push(cell(node, node === zoom ? 0 : (node.x0 - zoom.x0) * scale, row,
                              Math.max(LEAST, wide - 1)));
        bottom = Math.max(bottom, row + 1);
        for (let i = (node.children?.length ?? 0) - 1; i >= 0; --i)
            rest.push(node.children[i]);
    }
    state.places = new Map(state.shown.map(shown => [shown.node, shown]));
    if (!state.places.has(state.frame.active))
        state.frame.active = zoom;
    state.laid = {zoom, width, height: bottom * height};
    return state.laid.height;
}

function fillofnode(state, node) {
    return node.object < 0 ? state.fills.at(-1)
                           : fillof(state.fills, state.graph.objects[node.object]);
}

function nameof(state, node) {
    return node.object < 0 ? 'all objects' : state.graph.objects[node.object].name;
}

function describe(state, node) {
    const {graph, linked, root} = state;
    const whole = `${bytes(node.value)} with all below`;
    const name = text => element('bdi', {}, text);
    if (node.object < 0)
        return [`${nameof(state, node)}: ${whole}`];
    const {library} = graph.objects[node.object];
    const cause = linked.causes[node.data];
    const hasParent = node.parent !== null && node.parent.object >= 0;
    return [
        name(nameof(state, node)), library === undefined ? '' : [' in ', name(graph.libraries[library])],
        `: ${bytes(graph.size(node.object))}; ${whole}, ${share(node.value, root.value)} of the total`,
        cause < 0 ? '' : ['; linked by ', name(graph.symbols[cause]),
                          hasParent ? [' from ', name(nameof(state, node.parent))] : ''],
    ];
}

function move(state, node, key) {
    const here = state.places.get(node);
    const row = () => state.shown.filter(shown => shown.row === here.row);
    const ends = {Home: state.shown[0], End: state.shown.at(-1)};
    const next = {
        ArrowUp: () => here.outer ? null : state.places.get(node.parent) ?? state.shown[0],
        ArrowDown: () => here.outer ? state.places.get(state.zoom)
                                    : node.children?.map(child => state.places.get(child)).find(Boolean),
        ArrowLeft: () => row()[row().indexOf(here) - 1],
        ArrowRight: () => row()[row().indexOf(here) + 1],
    };
    return (ends[key] ?? next[key]?.())?.node ?? null;
}

// Looks into the node, or back when it is the outer cell.
function open(state, node) {
    if (node === state.trail.at(-1)) {
        back(state);
        return;
    }
    if (node !== state.zoom && node.children !== undefined) {
        state.trail.push(state.zoom);
        state.zoom = node;
    }
    choose(state, node);
    if (node.object >= 0)
        state.onselect(node.object);
}

// Returns whether the picture was looking into a cell.
function back(state) {
    if (state.trail.length === 0)
        return false;
    const node = state.zoom;
    state.zoom = state.trail.pop();
    choose(state, node);
    return true;
}

function choose(state, node) {
    state.frame.selected = node;
    drawpicture(state.frame);
    activate(state.frame, node);
}

// Marks the object's cell. Looks into a cell around it where it would be too narrow. Of an object
// without bytes the cell above it is marked.
function select(state, object) {
    let node = state.nodes.get(object);
    if (node === undefined)
        return;
    while (node.value === 0 && node.parent !== null)
        node = node.parent;
    const width = state.frame.view.clientWidth;
    const pixels = outer => (node.x1 - node.x0) / (outer.x1 - outer.x0) * width;
    if (!node.ancestors().includes(state.zoom) || pixels(state.zoom) < LEAST) {
        const around = node.ancestors().reverse().find(outer => outer === node || pixels(outer) >= WIDE);
        state.trail = around === state.root ? [] : [state.root];
        state.zoom = around;
    }
    choose(state, node);
}
