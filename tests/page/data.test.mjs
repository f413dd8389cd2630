// Hand-made graphs. An object's name is a letter; it defines the symbol of that name and refers to the
// symbols of the letters after the colon.
import assert from 'node:assert/strict';
import test from 'node:test';
import {addressof, findthing, parseaddress} from '../../page/address.js';
import {
    closure, closureTotals, keepers, libraryUsers, linkedBy, makegraph, objectclosure, path,
} from '../../page/data.js';
import {datetext, symbolreport} from '../../page/report.js';
import {makeindex, nearest, search} from '../../page/search.js';

// "a:bc b:a" has two objects that refer to each other, and a refers to the undefined c.
function graphof(text) {
    const objects = text.split(' ').map(object => object.split(':'));
    const symbols = [...new Set(text.replace(/[ :]/g, ''))];
    return makegraph({
        symbols,
        libraries: ['one.a', 'two.a'],
        objects: objects.map(([name, refers = ''], i) => ({
            name,
            library: [0, 1, undefined][i % 3],
            size: 1 << name.charCodeAt(0) - 97,
            defines: [[symbols.indexOf(name), 'FUNCTION', 'GLOBAL', null]],
            refers: [...refers].map(letter => symbols.indexOf(letter)),
        })),
    });
}

// "a0 b1(a) ...": object, level and parent of each entry.
function shown(graph, linked) {
    const name = position => graph.objects[linked.objects[position]].name;
    return Array.from(linked.objects, (_, i) =>
        name(i) + linked.levels[i] + (linked.parents[i] < 0 ? '' : `(${name(linked.parents[i])})`)).join(' ');
}

test('closures are in depth-first order, each object where it is first reached', () => {
    for (const [text, expected, total] of [
        ['a', 'a0', 1],
        ['a:a', 'a0', 1],
        ['a:x', 'a0', 1],
        ['a:b b:c c:a', 'a0 b1(a) c2(b)', 7],
        ['a:bcd b:d c d:c', 'a0 b1(a) d2(b) c3(d)', 15],
        ['a:bbcb b c:b', 'a0 b1(a) c1(a)', 7],
        ['a:cb b:d c:e d e:b', 'a0 c1(a) e2(c) b3(e) d4(b)', 31],
    ]) {
        const graph = graphof(text);
        const linked = closure(graph, 0);
        assert.equal(shown(graph, linked), expected, text);
        assert.equal(linked.total, total, text);
        assert.equal(linked.below[0], total, text);
    }
});

test('an object shows the definer of its first symbol, then its references', () => {
    const graph = graphof('b:cb a:bc a:b c');
    assert.equal(shown(graph, objectclosure(graph, 1)), 'a0 b1(a) c2(b)');
    assert.equal(shown(graph, objectclosure(graph, 2)), 'a0 b1(a) c2(b)');
    graph.objects[1].defines = [];
    assert.equal(shown(graph, objectclosure(graph, 1)), 'b1 c2(b)');
});

test('a chain of any length needs no recursion', () => {
    const count = 200000;
    const numbers = Array.from({length: count}, (_, i) => i);
    const graph = makegraph({
        symbols: numbers.map(String), libraries: [],
        objects: numbers.map(i => ({
            name: `${i}`, size: 2 ** 31 - 1, defines: [[i]], refers: [i + 1].filter(n => n < count),
        })),
    });
    const linked = closure(graph, 0);
    assert.equal(linked.levels.at(-1), count - 1);
    assert.equal(linked.total, count * (2 ** 31 - 1));
    assert.match(symbolreport(graph, 0), /LINKS IN\n    Too deep to show as text\n    Total: 2147483647 bytes\n/);
});

test('sums of all objects are those of their closures', async () => {
    for (const text of ['a', 'a:b b:a', 'a:bc b:d c:d d', 'a:b b:c c:bd d:e e:d f:ae']) {
        const graph = graphof(text);
        const all = graph.objects.map((_, object) => closure(graph, object));
        assert.deepEqual([...await closureTotals(graph)], all.map(linked => linked.total), text);
        assert.deepEqual([...await linkedBy(graph)], graph.objects.map((_, object) =>
            all.filter((linked, from) => from !== object && linked.objects.includes(object)).length), text);
        assert.deepEqual(await libraryUsers(graph), graph.libraries.map((_, library) => all.filter((linked, from) =>
            graph.objects[from].library !== library &&
            [...linked.objects].some(object => graph.objects[object].library === library)).length), text);
    }
});

test('the chain is the shortest; keepers are all references', () => {
    const graph = graphof('a:bd b:c c:d d:e e:d');
    const letters = pairs => pairs.map(([object, symbol]) =>
        graph.objects[object].name + graph.symbols[symbol]).join(' ');
    assert.equal(letters(path(graph, 0, 4, 0)), 'aa dd ee');
    assert.equal(path(graph, 4, 0), null);
    assert.deepEqual(path(graph, 2, 2, 2), [[2, 2]]);
    assert.equal(letters(keepers(graph, closure(graph, 0), 3)), 'ad cd ed');
});

test('any date of a symbol file is shown as the reports show it', () => {
    for (const [date, shown] of [['2025-11-24', 'Nov 24, 2025'], ['214748-37-47', '36 47, 214748'], ['-2025--9--24', '-10 -24, -2025']])
        assert.equal(datetext(date), shown);
});

test('search ranks by where the text is and counts what it does not return', () => {
    const graph = makegraph({
        symbols: ['unpost', 'event_post', 'POST', 'post_all', 'postpone'], libraries: ['post.a'],
        objects: [{name: 'o.o', source: 'src/post.c', defines: [], refers: []}],
    });
    const found = (text, limit) => {
        const result = search(makeindex(graph), text, limit);
        return [...result.found.map(({name}) => name), result.more].join(' ');
    };
    assert.equal(found('Post', 9), 'POST post.a post_all postpone event_post src/post.c unpost 0');
    assert.equal(found('post', 2), 'POST post.a 5');
    assert.equal(found('', 2), '0');
    assert.equal(found(' post_all() ', 2), 'post_all 0');
    for (const [text, expected] of [['post_alt', 'post_all'], ['events', 'event_post'], ['x', ''], ['', '']]) {
        const names = nearest(makeindex(graph), text, 1, ['symbol']).map(({name}) => name);
        assert.equal(names.join(), expected, text);
    }
});

test('addresses lead to the things that they were made of', () => {
    const names = ['a', "</script>&library=b,'(é%", 'a', '_u'];
    const graph = makegraph({
        symbols: names, libraries: ['a', '&n=2'],
        objects: names.flatMap(name => [{name, library: 1}, {name}, {name, library: 1}])
            .map(object => ({...object, defines: [], refers: []})),
    });
    for (const [kind, count] of [['symbol', 4], ['object', 12], ['library', 2]]) {
        for (let number = 0; number < count; ++number)
            assert.equal(findthing(graph, parseaddress(addressof(graph, kind, number))), number);
    }
    assert.equal(findthing(graph, parseaddress('#symbol=u')), 3);
    assert.equal(findthing(graph, parseaddress('#symbol=a&n=3')), -1);
    assert.deepEqual([' a() ', 'A', 'E', '()'].map(name => findthing(graph, {kind: 'symbol', name})), [0, 0, -1, -1]);
    assert.equal(findthing(graph, parseaddress('#object=%E0%A4%A')), -1);
});
