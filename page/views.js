// The views of one thing, of a kind of things and of search results. Each returns {title, element}
// and, where the program has a report, report(), its text.
import {addressof, whyaddress} from './address.js';
import {linksof} from './data.js';
import {bytes, bytesinwords, counted, element, number} from './dom.js';
import {icicle} from './icicle.js';
import {calledname, datetext, definername, objectreport, symbolreport} from './report.js';
import {makeindex, search} from './search.js';
import {thingname, unknownname} from './suggest.js';
import {linktree} from './tree.js';
import {virtuallist} from './virtual.js';

const MAXFOUND = 200;

// A link to a thing, for a row of a list.
function link(graph, kind, thing, text) {
    return element('a', {href: addressof(graph, kind, thing), tabindex: -1}, text);
}

function inline(graph, kind, thing, text) {
    return element('a', {href: addressof(graph, kind, thing)}, text);
}

function section(heading, ...children) {
    return element('section', {}, element('h2', {}, heading), ...children);
}

// Makes a list of rows; cells(index) returns a row's children.
function rowlist(label, count, cells, options = {}) {
    const rows = virtuallist(index => element('div', {
        class: 'row', role: 'listitem', 'aria-setsize': count, 'aria-posinset': index + 1,
    }, cells(index)), {'aria-label': label, ...options});
    rows.update(count);
    return rows;
}

function note(text) {
    return element('span', {class: 'note'}, text);
}

// The object's library and bytes.
function objectnote(graph, object) {
    const library = graph.libraries[graph.objects[object].library];
    return note([library, bytes(graph.size(object))].filter(text => text !== undefined).join(', '));
}

function objectlist(graph, label, objects) {
    return rowlist(label, objects.length, index => [
        link(graph, 'object', objects[index], graph.objects[objects[index]].name),
        objectnote(graph, objects[index]),
    ]).element;
}

// The words for a symbol's type, scope and size.
function traits({type, scope, size} = {}) {
    return [type, scope].filter(Boolean).map(text => text.toLowerCase())
        .concat(size ? bytesinwords(size) : []).join(', ');
}

function definer(graph, symbol, makelink = link) {
    const object = graph.definer[symbol];
    return object < 0 ? note('undefined') : makelink(graph, 'object', object, graph.objects[object].name);
}

export function symbolview(graph, symbol) {
    const object = graph.definer[symbol];
    const referrers = graph.referrers(symbol);
    const linked = linksof(graph, 'symbol', symbol);
    const info = traits(graph.symbolInfo[symbol]);
    return {
        title: calledname(graph, symbol),
        kind: 'SYMBOL',
        report: () => symbolreport(graph, symbol),
        element: element('div', {},
            info === '' ? null : element('p', {class: 'facts'}, info),
            section('DEFINED IN', element('p', {}, definer(graph, symbol, inline), ' ',
                object < 0 ? null : objectnote(graph, object))),
            linksection(graph, linked, graph.symbols[symbol], 'Total: '),
            section('REFERRED TO IN',
                element('p', {}, counted(referrers.length, 'object')),
                referrers.length > 0 ? objectlist(graph, 'REFERRED TO IN', referrers) : null)),
    };
}

export function objectview(graph, object) {
    const {name, library, source, date, defines, refers} = graph.objects[object];
    const linked = linksof(graph, 'object', object);
    const facts = [
        ['Library', library === undefined ? 'none' : inline(graph, 'library', library, graph.libraries[library])],
        ['Size', bytesinwords(graph.size(object))],
        ['Source', source === undefined ? 'unknown' : sourcelink(graph, source)],
        ['Date', date === undefined ? 'unknown' : datetext(date)],
    ];
    return {
        title: name,
        kind: 'OBJECT',
        report: () => objectreport(graph, object),
        element: element('div', {},
            element('dl', {class: 'facts'}, facts.map(([term, value]) =>
                element('div', {}, element('dt', {}, term), element('dd', {}, value)))),
            linksection(graph, linked, thingname(graph, 'object', object), 'Links in '),
            element('div', {class: 'pair'},
                section('DEFINES', symbollist(graph, 'DEFINES', defines.map(([symbol]) => symbol), index => {
                    const [, type, scope, size] = defines[index];
                    return note(traits({type, scope, size}));
                })),
                section('REFERS TO', symbollist(graph, 'REFERS TO', refers,
                    index => definer(graph, refers[index]))))),
    };
}

function symbollist(graph, label, symbols, more) {
    if (symbols.length === 0)
        return element('p', {}, 'none');
    return rowlist(label, symbols.length, index => [
        link(graph, 'symbol', symbols[index], calledname(graph, symbols[index])), more(index),
    ]).element;
}

// The path is one of a foreign object: it is encoded, and only these schemes may be before it.
function sourcelink(graph, source) {
    const path = source.split('@')[0];
    if (graph.sourcePrefix === undefined || !/^(https?|file):/i.test(graph.sourcePrefix))
        return source;
    const encoded = path.split(/[/\\]/).map(encodeURIComponent).join('/');
    return element('a', {href: graph.sourcePrefix + encoded, rel: 'noreferrer'}, source);
}

// The tree and the picture of the linked objects, which select each other.
function linksection(graph, linked, name, total) {
    if (linked === null)
        return section('LINKS IN', element('p', {}, 'Nothing: the symbol is undefined.'));
    if (linked.objects.length === 0)
        return section('LINKS IN', element('p', {}, 'Nothing.'));
    const libraries = new Set(Array.from(linked.objects, object => graph.objects[object].library));
    libraries.delete(undefined);
    const whyof = object => whyaddress(name, thingname(graph, 'object', object));
    const tree = linktree(graph, linked, object => picture.select(object), whyof);
    const picture = icicle(graph, linked, object => tree.select(object));
    return section('LINKS IN',
        element('p', {class: 'total'}, total, element('strong', {}, bytesinwords(linked.total)), ' in ',
            counted(linked.objects.length, 'object'),
            libraries.size === 0 ? '' : ` of ${counted(libraries.size, 'library', 'libraries')}`),
        element('p', {class: 'note'}, 'Whole objects are linked; each is shown where it is linked in first.'),
        element('div', {class: 'links'}, tree.element, picture.element));
}

export function libraryview(graph, library) {
    const objects = numbers(graph.objects.length).filter(object => graph.objects[object].library === library);
    const total = objects.reduce((sum, object) => sum + graph.size(object), 0);
    return {
        title: graph.libraries[library],
        kind: 'LIBRARY',
        element: element('div', {},
            element('p', {class: 'total'}, `${counted(objects.length, 'object')}, `,
                element('strong', {}, bytesinwords(total))),
            section('OBJECTS', objectlist(graph, 'OBJECTS', objects))),
    };
}

const numbers = count => Array.from({length: count}, (_, number) => number);

// Returns the numbers of the names in their alphabetical order.
function sorted(names) {
    const lower = names.map(name => name.toLowerCase());
    return numbers(names.length).sort((a, b) => (lower[a] < lower[b] ? -1 : lower[a] > lower[b] ? 1 : a - b));
}

export function symbolsview(graph) {
    const symbols = sorted(graph.symbols);
    return {
        title: 'Symbols',
        element: rowlist('Symbols', symbols.length, index => [
            link(graph, 'symbol', symbols[index], calledname(graph, symbols[index])),
            definer(graph, symbols[index]),
            note(traits(graph.symbolInfo[symbols[index]])),
        ]).element,
    };
}

export function librariesview(graph) {
    const libraries = sorted(graph.libraries);
    const counts = graph.libraries.map(() => [0, 0]);
    graph.objects.forEach(({library}, object) => {
        if (library === undefined)
            return;
        ++counts[library][0];
        counts[library][1] += graph.size(object);
    });
    return {
        title: 'Libraries',
        element: rowlist('Libraries', libraries.length, index => {
            const [objects, size] = counts[libraries[index]];
            return [link(graph, 'library', libraries[index], graph.libraries[libraries[index]]),
                    note(`${counted(objects, 'object')}, ${bytesinwords(size)}`)];
        }).element,
    };
}

// The results of a search. `key` handles the keys of the rows. `first` is the address of the first
// result, null without one; focus() goes to it; `summary` is the line for the status.
export function searchview(graph, text, key) {
    const {found, more} = search(makeindex(graph), text, MAXFOUND);
    const rows = rowlist('Results', found.length, i => {
        const {kind, number: thing, name} = found[i];
        const title = kind === 'symbol' ? calledname(graph, thing) : name;
        const details = {
            symbol: () => definer(graph, thing),
            object: () => objectnote(graph, thing),
            library: () => null,
            source: () => link(graph, 'object', thing, graph.objects[thing].name),
        };
        return [link(graph, kind, thing, title), note(kind), details[kind]()];
    }, {key});
    const summary = found.length === 0 ? 'Nothing found'
        : `${counted(found.length, 'result')}${more > 0 ? `, ${number(more)} more not shown` : ''}`;
    return {
        title: `Search: ${text}`,
        element: found.length > 0 ? element('div', {}, element('p', {}, summary), rows.element)
            : text.trim() === '' ? element('p', {}, 'Type a part of a name.') : unknownname(graph, text),
        summary,
        focus: () => rows.focus(0),
        first: found.length > 0 ? addressof(graph, found[0].kind, found[0].number) : null,
    };
}
