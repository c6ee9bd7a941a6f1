// The standard objects.

#include "script/ScriptTestSupport.h"

namespace {

TEST(Library, GlobalFunctions)
{
    check({{"parseInt('42px') + parseInt('0x1f') + parseInt('z', 36) + parseInt(' -7')", "101"},
           {"parseInt('') + '' + parseInt('9', 8)", "NaNNaN"},
           {"parseFloat('3.5e1x') + parseFloat('.5')", "35.5"},
           {"isNaN('x') + '' + isFinite(1 / 0)", "truefalse"},
           {"eval('1 + 1') + eval(5)", "7"},
           {"eval('a b')", "undefined"},
           {"load('/no/such/file')", "false"},
           {"NaN + '' + Infinity + undefined", "NaNInfinityundefined"}});
}

TEST(Library, Objects)
{
    check({{"new Object() + ''", "[object Object]"},
           {"[1, 2] + ''", "1,2"},
           {"var o = {a: 1}; o.hasOwnProperty('a') + '' + o.hasOwnProperty('b')", "truefalse"},
           {"function A() { } A.prototype.isPrototypeOf(new A()) + ''", "true"},
           {"[1].propertyIsEnumerable('length') + ''", "false"},
           {"Object(5) + 1", "6"},
           {"new Boolean(0) ? 'object' : ''", "object"},
           {"new Boolean(true) + ''", "true"},
           {"Boolean.prototype.toString.call", "undefined"},
           {"new Function('a', 'b', 'return a + b')(2, 3)", "5"},
           {"Function('return 7')() + ''", "7"},
           {"(function () { }) + ''", "<<function>>"},
           {"new Function('a b')", "thrown SyntaxError: line 1: expected ';' found identifier"},
           {"new RangeError('text').message + new TypeError().name", "textTypeError"},
           {"var r; try { throw new Error('mine') } catch (e) { r = e.message } r", "mine"},
           {"var n = 0; for (var k in {a: 1}) n++; n > 1 ? 'methods too' : n", "methods too"}});
}

TEST(Library, Numbers)
{
    check({{"new Number(255).toString(16)", "ff"},
           {"(3.14159).toFixed(2) + (2).toFixed()", "3.142"},
           {"(1).toFixed(21)", "thrown RangeError: line 1: fraction digits should 0 through 20"},
           {"Number('12') + Number()", "12"},
           {"Number.MAX_VALUE > 1e300", "true"},
           {"Math.max(1.9, 2.9) + Math.min(-1, 3)", "1"},
           {"Math.max() + '' + Math.min()", "-InfinityInfinity"},
           {"Math.max(1, NaN)", "NaN"},
           {"Math.round(2.5) + Math.round(-2.5) + Math.floor(-1.5)", "-1"},
           {"1 / Math.round(-0.4)", "-Infinity"},
           {"Math.pow(2, 10) + Math.sqrt(16) + Math.abs(-1)", "1029"},
           {"Math.PI > 3.14 && Math.random() < 1", "true"}});
}

TEST(Library, Strings)
{
    check({{"'abc'.length", "3"},
           {"'abc'.charAt(1) + 'abc'.charCodeAt(0) + 'abc'.charAt(9)", "b97"},
           {"'abcabc'.indexOf('c') + 'abcabc'.lastIndexOf('c') + 'abc'.indexOf('x')", "6"},
           {"'abcdef'.slice(-3, -1) + 'abcdef'.substring(4, 1)", "debcd"},
           {"'aXb'.toLowerCase() + 'aXb'.toUpperCase()", "axbAXB"},
           {"'a,b,c'.split(',').length + 'abc'.split('')[2] + 'a'.split()[0]", "3ca"},
           {"'banana'.replace('an', 'o') + 'banana'.search('na')", "boana2"},
           {"'banana'.replace('n', function (found, at) { return at })", "ba2ana"},
           {"'banana'.match('nan').index + '' + 'x'.match('y')", "2null"},
           {"String.fromCharCode(72, 105) + String(12) + String()", "Hi12"},
           {"'a'.concat('b', 3)", "ab3"},
           {"'b'.localeCompare('a') > 0", "true"},
           {"var s = new String('x'); s.length = 5; s.length + s", "1x"}});
}

TEST(Library, Arrays)
{
    check({{"new Array(3).length + '' + new Array(1, 2)[1] + Array('x')[0]", "32x"},
           {"new Array(-1)", "thrown RangeError: line 1: bad length in array constructor"},
           {"var a = [3]; a.push(1, 2); a.pop() + '' + a.length + a", "223,1"},
           {"[1, 2, 3].reverse() + '' + [1, 2].concat([3, [4]], 5)", "3,2,11,2,3,4,5"},
           {"var a = [1, 2, 3]; a.shift() + '' + a + a.length", "12,32"},
           {"[1, 2, 3, 4].slice(1, -1) + ''", "2,3"},
           {"[10, 9, 1].sort() + ''", "1,10,9"},
           {"[10, 9, 1].sort(function (a, b) { return a - b }) + ''", "1,9,10"},
           {"[2, 1].sort(function () { return 1 }).length", "2"},
           {"[1].sort(5)",
            "thrown TypeError: line 1: Array.prototype.sort argument is not a function"},
           {"[null, undefined, 1] + ''", ",undefined,1"},
           {"[].join", "undefined"},
           {"[].join()", "thrown TypeError: line 1: not a function object"}});
}

} // namespace
