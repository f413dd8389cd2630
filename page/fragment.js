// Shows reports of "tolvik -html". Names in them are not escaped, so they are not parsed as HTML: only
// the few forms that tolvik writes are recognised, all else is text.

import { element } from './dom.js';

// The lengths are limited, so that marks without an end take no quadratic time.
const heading = /<\/PRE><H4>(.{0,255}?)<\/H4><PRE>/;
const mark = new RegExp(
    '<FONT COLOR="#(990000|000000)">(.{0,255}?)</FONT>' +
    '|<a onclick="openfile\\(\'(.*?)\'\\)" style="[^"]*" title="[^"]*">(.*?)</a>', 'g');

// Returns the parts of a report: { title, text }. The text before the first heading has the title "".
export function splitreport(text) {
    const pieces = text.split(heading);
    const parts = [];
    for (let i = -1; i < pieces.length; i += 2)
        parts.push({ title: i < 0 ? '' : pieces[i], text: pieces[i + 1].trimEnd() });
    return parts.filter((part) => part.title !== '' || part.text !== '');
}

// Returns the address of a source, resolved against that of the page; null unless its scheme is
// http:, https: or file:.
export function sourceaddress(path, base) {
    try {
        const address = new URL(path, base);
        return ['http:', 'https:', 'file:'].includes(address.protocol) ? address.href : null;
    } catch {
        return null;
    }
}

// Opens a source in a new tab: the function that the links of the reports call.
export function openfile(path) {
    const address = sourceaddress(path, document.baseURI);
    if (address !== null)
        window.open(address, '_blank', 'noopener');
}

function sourcelink(path, text) {
    const address = sourceaddress(path, document.baseURI);
    if (address === null)
        return text;
    const click = (event) => {
        event.preventDefault();
        openfile(path);
    };
    return element('a', { href: address, rel: 'noopener', click }, text);
}

// Returns the text as nodes, with links to sources and marked names of other libraries.
function textnodes(text) {
    const nodes = [];
    let end = 0;
    for (const found of text.matchAll(mark)) {
        const [whole, colour, library, path, label] = found;
        nodes.push(text.slice(end, found.index));
        if (path !== undefined)
            nodes.push(sourcelink(path, label));
        else
            nodes.push(colour === '990000' ? element('span', { class: 'other' }, library) : library);
        end = found.index + whole.length;
    }
    nodes.push(text.slice(end));
    return nodes;
}

function textblock(text) {
    return text === '' ? null : element('pre', {}, textnodes(text));
}

// Returns the subjects of a report: a SYMBOL or FILE part, named by its first line, with the parts
// after it.
function subjectsof(parts) {
    const subjects = [];
    for (const part of parts) {
        if (part.title === 'SYMBOL' || part.title === 'FILE') {
            const [name, ...rest] = part.text.split('\n');
            subjects.push({ title: part.title, name: name.trim(), text: rest.join('\n'), parts: [] });
        } else if (subjects.length > 0) {
            subjects.at(-1).parts.push(part);
        } else {
            subjects.push({ title: part.title, name: '', text: part.text, parts: [] });
        }
    }
    return subjects;
}

// "trigger.o (420 bytes)" is too long for the contents.
function shortname(name) {
    return name.replace(/ \((.*, )?-?\d+ bytes.*\)$/, '');
}

function showsubject(subject, id) {
    const title = `${subject.title} ${subject.name}`.trim();
    return element('section', { class: 'subject', id },
        title === '' ? null : element('h3', {}, title),
        textblock(subject.text),
        subject.parts.map((part) => [element('h4', {}, part.title), textblock(part.text)]));
}

// Shows a report in `main` and its headings in `contents`. `id` is the start of its elements' ids.
export function showreport(report, id, main, contents) {
    const subjects = subjectsof(splitreport(report.text));
    const entries = subjects.map((subject, i) => subject.name === '' ? null
        : element('li', {}, element('a', { href: `#${id}-${i}` }, shortname(subject.name))));
    contents.append(element('li', {}, element('a', { href: `#${id}` }, report.name),
        element('ul', {}, entries)));
    main.append(element('section', { id }, element('h2', {}, report.name),
        subjects.map((subject, i) => showsubject(subject, `${id}-${i}`))));
}
