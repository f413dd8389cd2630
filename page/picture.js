// The frame of the pictures: cells in an SVG that scrolls, a line of text and the keyboard. Only the
// cells of the visible part are in the document.
import {fillrects} from './colours.js';
import {element, svg} from './dom.js';

const PAPER = 700; // width of a picture in print, where the browser scales it

let pictures = 0;
const frames = new WeakMap(); // element -> frame

// Returns a frame. Its element draws itself after it is inserted, and after its width changes.
// `source` has
// - label, help: texts;
// - layout(width, letter) -> height: called before the functions below;
// - cells(top, bottom) -> [{node, x, y, width, height, fill, name, size, level, outer, ground},
//   ...]: those that reach into this part. `node.number` identifies a node, `size` is a text under
//   the name or undefined, `ground` is a cell with others on it;
// - place(node) -> {y, height};
// - describe(node) -> texts and elements of the line;
// - move(node, key) -> the node that the key leads to, or null;
// - open(node); back() -> whether there was something to go back to.
export function makepicture(source, active) {
    const tree = svg('svg', {
        class: 'cells', role: 'tree', tabindex: 0, 'aria-label': source.label,
    });
    const view = element('div', {class: 'picture-view'}, tree);
    const line = element('p', {class: 'picture-line', 'aria-live': 'polite'});
    const frame = {
        element: element('figure', {class: 'picture'}, view, line,
                         element('p', {class: 'picture-help'}, source.help)),
        source, tree, view, line, active, hovered: null, selected: null,
        cells: [], groups: new Map(), name: `picture-${++pictures}`,
    };
    frames.set(frame.element, frame);
    listen(frame);
    return frame;
}

function listen(frame) {
    const {tree, view} = frame;
    new ResizeObserver(() => drawpicture(frame)).observe(view);
    view.addEventListener('scroll', () => drawpicture(frame), {passive: true});
    tree.addEventListener('pointermove', event => hover(frame, nodeat(frame, event)));
    tree.addEventListener('pointerleave', () => hover(frame, null));
    tree.addEventListener('click', event => {
        const node = nodeat(frame, event);
        if (node !== null)
            open(frame, node);
    });
    tree.addEventListener('keydown', event => {
        if (event.ctrlKey || event.altKey || event.metaKey || !presskey(frame, event.key))
            return;
        event.preventDefault();
        event.stopPropagation();
    });
}

// Returns whether the key means something to the picture.
function presskey(frame, key) {
    if (key === 'Escape')
        return frame.source.back();
    if (key === 'Enter' || key === ' ') {
        open(frame, frame.active);
        return true;
    }
    const node = frame.source.move(frame.active, key);
    if (node !== null)
        activate(frame, node);
    return node !== null || key.startsWith('Arrow');
}

function open(frame, node) {
    frame.hovered = null;
    frame.source.open(node);
}

function nodeat(frame, event) {
    const group = event.target.closest('[data-cell]');
    return group === null ? null : frame.cells[Number(group.dataset.cell)].node;
}

function hover(frame, node) {
    if (node === frame.hovered)
        return;
    frame.groups.get(frame.hovered)?.classList.remove('cell-hovered');
    frame.groups.get(node)?.classList.add('cell-hovered');
    frame.hovered = node;
    showline(frame);
}

// Makes the node the one of the keyboard and scrolls to it.
export function activate(frame, node) {
    const {view} = frame;
    frame.active = node;
    frame.hovered = null;
    drawpicture(frame);
    const {y, height} = frame.source.place(node);
    const {scrollTop, clientHeight} = view;
    view.scrollTop = Math.max(Math.min(scrollTop, y), y + height - clientHeight);
    if (view.scrollTop !== scrollTop)
        drawpicture(frame);
}

// Draws the cells of the visible part, or all of them.
export function drawpicture(frame, all = false) {
    const {tree, view, source} = frame;
    if (view.clientWidth === 0)
        return;
    const width = all ? PAPER : view.clientWidth;
    const letter = measureletter(frame);
    const height = source.layout(width, letter);
    tree.setAttribute('viewBox', `0 0 ${width} ${height}`);
    tree.setAttribute('height', height);
    frame.cells = all ? source.cells(0, height)
                      : source.cells(view.scrollTop, view.scrollTop + view.clientHeight);
    frame.groups = new Map(frame.cells.map((cell, i) => [cell.node, drawcell(frame, cell, i, letter)]));
    tree.replaceChildren(...frame.groups.values());
    markcells(frame);
}

// Returns the size of a letter of the cells' names.
function measureletter(frame) {
    const text = svg('text', {class: 'cell-name'}, '0'.repeat(20));
    frame.tree.append(text);
    const letter = {
        width: text.getComputedTextLength() / 20,
        height: parseFloat(getComputedStyle(text).fontSize),
    };
    text.remove();
    return letter;
}

function drawcell(frame, cell, i, letter) {
    const {x, y, width, height, fill, name, size} = cell;
    const group = svg('g', {
        class: `cell ${fill.colour}${cell.outer ? ' cell-outer' : ''}${cell.ground ? ' cell-ground' : ''}`,
        role: 'treeitem',
        id: `${frame.name}-${cell.node.number}`, 'data-cell': i, 'aria-level': cell.level,
        'aria-label': size === undefined ? name : `${name} ${size}`, 'aria-selected': 'false',
    }, fillrects(cell.ground ? {...fill, pattern: null} : fill, {x, y, width, height}));
    if (width >= 3 * letter.width + 8 && height >= letter.height * 1.2) {
        const middle = Math.min(height, letter.height * 1.8) / 2;
        const hasSize = size !== undefined && height >= letter.height * 3.2 && width >= size.length * letter.width + 8;
        // The inner svg cuts a long name.
        group.append(svg('svg', {x, y, width: width - 2, height},
            svg('text', {class: 'cell-name', x: 4, y: middle + letter.height * 0.35}, name),
            hasSize ? [' ', svg('text', {class: 'cell-name', x: 4, y: middle + letter.height * 1.65}, size)] : null));
    }
    return group;
}

function markcells(frame) {
    const {tree, groups, hovered, active, selected} = frame;
    groups.get(hovered)?.classList.add('cell-hovered');
    groups.get(selected)?.classList.add('cell-selected');
    groups.get(selected)?.setAttribute('aria-selected', 'true');
    groups.get(active)?.classList.add('cell-active');
    if (groups.has(active))
        tree.setAttribute('aria-activedescendant', groups.get(active).id);
    else
        tree.removeAttribute('aria-activedescendant');
    showline(frame);
}

function showline({line, source, hovered, active}) {
    const text = element('p', {}, source.describe(hovered ?? active));
    if (line.textContent !== text.textContent)
        line.replaceChildren(...text.childNodes);
}

// "31.2 %"
export function share(part, whole) {
    return `${(whole > 0 ? part / whole * 100 : 0).toFixed(1)} %`;
}

function drawall(all) {
    for (const figure of document.querySelectorAll('.picture'))
        drawpicture(frames.get(figure), all);
}

addEventListener('beforeprint', () => drawall(true));
addEventListener('afterprint', () => drawall(false));
