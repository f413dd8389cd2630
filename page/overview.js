// The first view: what is big, what links in most, what is undefined, and all objects and libraries.
import {addressof} from './address.js';
import {closureTotals, libraryUsers, linkedBy} from './data.js';
import {bytesinwords, counted, element, number} from './dom.js';
import {share} from './picture.js';
import {calledname} from './report.js';
import {table} from './table.js';
import {treemap} from './treemap.js';

const MOST = 20;

export function overview(graph) {
    const objects = [...graph.objects.keys()];
    const total = objects.reduce((sum, object) => sum + graph.size(object), 0);
    const hasLibraries = graph.libraries.length > 0;
    const most = element('ol', {class: 'most'}, element('li', {class: 'waits'}, 'Adding up…'));
    const view = element('div', {},
        element('p', {class: 'total'}, element('strong', {}, bytesinwords(total)), ' in ',
                counted(graph.objects.length, 'object'),
                hasLibraries ? ` of ${counted(graph.libraries.length, 'library', 'libraries')}` : '', ', ',
                counted(graph.symbols.length, 'symbol')),
        total === 0 ? null : treemap(graph, object => {
            location.hash = addressof(graph, 'object', object);
        }).element,
        element('div', {class: 'pair'},
            section('BIGGEST OBJECTS', biggest(graph, objects, total)),
            section('SYMBOLS THAT LINK IN MOST', most)),
        section('UNDEFINED', ...undefinedsymbols(graph)),
        section('OBJECTS', makeobjecttable(graph)),
        hasLibraries ? section('LIBRARIES', makelibrarytable(graph)) : null);
    closureTotals(graph).then(below => most.replaceChildren(...linkmost(graph, below)));
    return {title: 'Overview', element: view};
}

export function objectsview(graph) {
    return {title: 'Objects', element: makeobjecttable(graph)};
}

function section(heading, ...children) {
    return element('section', {}, element('h2', {}, heading), ...children);
}

function link(graph, kind, thing, text) {
    return element('a', {href: addressof(graph, kind, thing)}, text);
}

// Returns the numbers with the largest values, the largest first.
function largest(numbers, value) {
    return [...numbers].sort((a, b) => value(b) - value(a) || a - b).slice(0, MOST);
}

function biggest(graph, objects, total) {
    return element('ol', {class: 'most'}, largest(objects, graph.size).map(object => element('li', {},
        link(graph, 'object', object, graph.objects[object].name),
        ` ${bytesinwords(graph.size(object))}, ${share(graph.size(object), total)}`)));
}

// All symbols of an object link in the same. The first one stands for the others.
function linkmost(graph, below) {
    const counts = new Map();
    const first = new Map();
    graph.definer.forEach((object, symbol) => {
        if (object < 0)
            return;
        counts.set(object, (counts.get(object) ?? 0) + 1);
        if (!first.has(object))
            first.set(object, symbol);
    });
    return largest(first.keys(), object => below[object]).map(object => element('li', {},
        link(graph, 'symbol', first.get(object), calledname(graph, first.get(object))),
        ` ${bytesinwords(below[object])}`,
        counts.get(object) === 1 ? '' : ` and ${counted(counts.get(object) - 1, 'other')} of `,
        counts.get(object) === 1 ? '' : link(graph, 'object', object, graph.objects[object].name)));
}

function undefinedsymbols(graph) {
    const symbols = [...graph.definer.keys()].filter(symbol => graph.definer[symbol] < 0);
    if (symbols.length === 0)
        return [element('p', {}, 'No symbol is undefined.')];
    return [
        element('p', {}, counted(symbols.length, 'undefined symbol')),
        table({
            label: 'Undefined symbols', rows: symbols, sort: 1,
            columns: [
                {title: 'Symbol', text: true, value: symbol => graph.symbols[symbol],
                 cell: symbol => link(graph, 'symbol', symbol, graph.symbols[symbol])},
                {title: 'References', value: symbol => graph.referrers(symbol).length},
            ],
        }).element,
    ];
}

// Returns a column of values that become known later, {values}: null until then.
function later(title, known) {
    return {
        title, value: row => known.values?.[row],
        cell: row => known.values === null ? '…' : number(known.values[row]),
    };
}

// Returns the table of all objects. It adds up what they link in after it is shown.
function makeobjecttable(graph) {
    const below = {values: null};
    const linkers = {values: null};
    const columns = [
        {title: 'Object', text: true, value: object => graph.objects[object].name,
         cell: object => link(graph, 'object', object, graph.objects[object].name)},
        ...(graph.libraries.length === 0 ? [] : [{
            title: 'Library', text: true, value: object => graph.libraries[graph.objects[object].library],
        }]),
        {title: 'Bytes', value: object => graph.objects[object].size},
        later('Links in (bytes)', below),
        {title: 'Definitions', value: object => graph.objects[object].defines.length},
        {title: 'References', value: object => graph.objects[object].refers.length},
        later('Used by (objects)', linkers),
    ];
    const {element: made, update} = table({
        label: 'Objects', rows: [...graph.objects.keys()], columns,
        sort: columns.findIndex(({title}) => title === 'Bytes'),
    });
    closureTotals(graph).then(values => {
        below.values = values;
        update();
        return linkedBy(graph);
    }).then(values => {
        linkers.values = values;
        update();
    });
    return made;
}

// Returns for each library its objects, bytes, definitions and references.
function addobjects(graph) {
    const libraries = graph.libraries.map(() => ({objects: 0, bytes: 0, defines: 0, refers: 0}));
    graph.objects.forEach(({library, defines, refers}, object) => {
        if (library === undefined)
            return;
        const sum = libraries[library];
        ++sum.objects;
        sum.bytes += graph.size(object);
        sum.defines += defines.length;
        sum.refers += refers.length;
    });
    return libraries;
}

function makelibrarytable(graph) {
    const libraries = addobjects(graph);
    const users = {values: null};
    const {element: made, update} = table({
        label: 'Libraries', rows: [...libraries.keys()], sort: 2,
        columns: [
            {title: 'Library', text: true, value: library => graph.libraries[library],
             cell: library => link(graph, 'library', library, graph.libraries[library])},
            {title: 'Objects', value: library => libraries[library].objects},
            {title: 'Bytes', value: library => libraries[library].bytes},
            {title: 'Definitions', value: library => libraries[library].defines},
            {title: 'References', value: library => libraries[library].refers},
            later('Used by (other objects)', users),
        ],
    });
    linkedBy(graph).then(() => libraryUsers(graph)).then(values => {
        users.values = values;
        update();
    });
    return made;
}
