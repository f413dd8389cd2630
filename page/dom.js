// Elements and texts. Names come from foreign objects: they reach the document only as text nodes and
// harmless attributes.

// Returns a new element. `attributes`: a function is a listener, null, undefined and false are left
// out, true is an empty value. `children`: elements, strings, numbers, arrays of these; null and
// undefined are left out.
export function element(tag, attributes = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (typeof value === 'function')
            made.addEventListener(name, value);
        else if (value === true)
            made.setAttribute(name, '');
        else if (value !== false && value !== null && value !== undefined)
            made.setAttribute(name, value);
    }
    append(made, children);
    return made;
}

function append(parent, children) {
    for (const child of children) {
        if (Array.isArray(child))
            append(parent, child);
        else if (child !== null && child !== undefined)
            parent.append(typeof child === 'number' ? String(child) : child);
    }
}

// Like element(), for SVG.
export function svg(tag, attributes = {}, ...children) {
    const made = document.createElementNS('http://www.w3.org/2000/svg', tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (typeof value === 'function')
            made.addEventListener(name, value);
        else if (value !== null && value !== undefined)
            made.setAttribute(name, value);
    }
    append(made, children);
    return made;
}

const numbers = new Intl.NumberFormat('en');

// "264,124"
export function number(value) {
    return numbers.format(value);
}

// "264,124 bytes"
export function bytes(value) {
    return `${number(value)} ${value === 1 ? 'byte' : 'bytes'}`;
}

// "258 KiB"; empty below 1 KiB.
export function rounded(value) {
    const units = ['KiB', 'MiB', 'GiB', 'TiB'];
    let unit = -1;
    let rest = value;
    while (rest >= 1024 && unit < units.length - 1) {
        rest /= 1024;
        ++unit;
    }
    if (unit < 0)
        return '';
    return `${rest < 10 ? rest.toFixed(1) : number(Math.round(rest))} ${units[unit]}`;
}

// "264,124 bytes (258 KiB)"
export function bytesinwords(value) {
    const short = rounded(value);
    return short === '' ? bytes(value) : `${bytes(value)} (${short})`;
}

// "1 object", "2 objects"
export function counted(value, one, many = `${one}s`) {
    return `${number(value)} ${value === 1 ? one : many}`;
}
