// The text of a view: what the program's reports print to standard output.
import {linksof} from './data.js';

const LINE = 2048; // bytes of the libraries' line
const INT32 = 2147483647;
const MOSTSPACES = 16e6; // in LINKS IN: chains of many thousands of objects would exhaust the browser
const months = ['Jan', 'Feb', 'Mar', 'Apr', 'May', 'Jun', 'Jul', 'Aug', 'Sep', 'Oct', 'Nov', 'Dec'];

export function symbolreport(graph, symbol) {
    const linked = linksof(graph, 'symbol', symbol);
    const referrers = graph.referrers(symbol);
    const lines = [
        '', 'SYMBOL', `    ${calledname(graph, symbol)}`,
        '', 'DEFINED IN', `    ${definername(graph, symbol)}`,
        '', 'REFERRED TO IN',
        ...Array.from(referrers, object => `    ${graph.objects[object].name}`),
        `    ${referrers.length} Files`,
        '', 'LINKS IN', ...linklines(graph, linked, () => ''),
    ];
    if (linked !== null && linked.total > 0)
        lines.push(`    Total: ${Math.min(linked.total, INT32)} bytes`);
    return joined(lines);
}

export function objectreport(graph, object) {
    const {name, library, source, date, defines, refers} = graph.objects[object];
    const linked = linksof(graph, 'object', object);
    const where = library === undefined ? '' : `${graph.libraries[library]}, `;
    const lines = ['', 'FILE', `    ${name} (${where}${graph.size(object)} bytes)${' '.repeat(32)}`];
    if (source !== undefined)
        lines.push(`    ${source} ${date === undefined ? '' : `(${datetext(date).replace(', ', ',')})`}`);
    lines.push('', 'DEFINES', ...defines.map(([symbol, , , size]) =>
        `    ${calledname(graph, symbol)}${size ? ` [${size}]` : ''}`));
    lines.push('', 'REFERS TO', ...refers.map(symbol =>
        `    ${calledname(graph, symbol)} (${definername(graph, symbol)})`));
    const libraries = librariesline(graph, linked, library);
    lines.push('', 'LINKS IN', `    Libraries: ${libraries}`, '', ...linklines(graph, linked, number => {
        const other = graph.objects[number].library;
        if (other === undefined)
            return '';
        return other === library ? `${graph.libraries[other]}, ` : `${mark(graph.libraries[other])}, `;
    }));
    // Unlike all other lines this one ends the report without a line feed of its own.
    if (linked.total > 0)
        return `${lines.join('\n')}\n\n    Links ${Math.min(linked.total, INT32)} bytes total\n`;
    return joined(lines);
}

// Returns the lines and the empty one after them.
function joined(lines) {
    return `${lines.join('\n')}\n\n`;
}

// "event_post()"
export function calledname(graph, symbol) {
    return graph.symbols[symbol] + (graph.symbolInfo[symbol]?.type === 'FUNCTION' ? '()' : '');
}

export function definername(graph, symbol) {
    return graph.objects[graph.definer[symbol]]?.name ?? 'unknown';
}

// "Oct 25, 2026"
export function datetext(date) {
    const [year, month, day] = date.match(/^(-?\d+)-(-?\d+)-(-?\d+)$/).slice(1).map(Number);
    return `${months[month - 1] ?? month - 1} ${day}, ${year}`;
}

function linklines(graph, linked, libraryof) {
    if (linked === null)
        return [];
    if (linked.levels.reduce((spaces, level) => spaces + 4 * (level + 1), 0) > MOSTSPACES)
        return ['    Too deep to show as text'];
    return Array.from(linked.objects, (object, i) => {
        const space = ' '.repeat(4 * (linked.levels[i] + 1));
        const name = graph.objects[object].name;
        return `${space}${name} (${libraryof(object)}${graph.size(object)}) [${graph.symbols[linked.causes[i]]}]`;
    });
}

function mark(library) {
    return `<FONT COLOR="#990000">${library}</FONT>`;
}

// The libraries of the linked objects, the own one first. The line is cut after a whole library.
function librariesline(graph, linked, own) {
    const libraries = Array.from(linked.objects, object => graph.objects[object].library)
        .filter(library => library !== undefined);
    let length = 0;
    const marks = [];
    for (const library of new Set([own, ...libraries])) {
        const text = mark(graph.libraries[library] ?? '');
        length += new TextEncoder().encode(text).length + 1;
        if (length >= LINE)
            break;
        marks.push(text);
    }
    return marks.join(',').replace('#990000', '#000000');
}
