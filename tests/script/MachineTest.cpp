// What programs do when they run.

#include "script/ScriptTestSupport.h"

namespace {

TEST(Machine, Arithmetic)
{
    check({{"1 + 2 * 3", "7"},
           {"7 % 4 - -1", "4"},
           {"1 / 0", "Infinity"},
           {"0 / 0", "NaN"},
           {"0.1 + 0.2", "0.3"},
           {"1.23456789", "1.23457"},
           {"'a' + 1 + 2", "a12"},
           {"1 + 2 + 'a'", "3a"},
           {"'3' * '4'", "12"},
           {"' 0x10 ' - 0", "16"},
           {"'' * 1", "NaN"},
           {"null + 1", "1"},
           {"true + true", "2"},
           {"undefined + 1", "NaN"},
           {"5 & 3 | 8 ^ 1", "9"},
           {"-1 >>> 28", "15"},
           {"-16 >> 2", "-4"},
           {"1 << 31", "-2147483648"},
           {"4294967297 | 0", "1"},
           {"~5", "-6"},
           {"-'3'", "-3"},
           {"010 + 0x10", "24"},
           {"typeof 1 + typeof '' + typeof null + typeof undefined + typeof true",
            "numberstringobjectundefinedboolean"},
           {"typeof function () { } + typeof [] + typeof typeof 1", "functionobjectstring"},
           {"void 5", "undefined"}});
}

TEST(Machine, ComparisonsAndLogic)
{
    check({{"1 < 2 && 'a' < 'b'", "true"},
           {"'10' < '9'", "true"},
           {"'10' < 9", "false"},
           {"0/0 <= 0/0", "false"},
           {"2 >= 2", "true"},
           {"null == undefined", "true"},
           {"null == 0", "false"},
           {"'1' == 1", "true"},
           {"true == '1'", "true"},
           {"0/0 == 0/0", "false"},
           {"0/0 != 0/0", "true"},
           {"var a = {}, b = {}; a == b", "false"},
           {"a = b = {}; a == b", "true"},
           {"0 || 'x'", "x"},
           {"0 && x()", "0"},
           {"!'' + ''", "true"},
           {"1 ? 2 : 3", "2"}});
}

TEST(Machine, Statements)
{
    check({{"var s = 0; for (var i = 0; i < 10; i++) s += i; s", "45"},
           {"var i = 0; while (true) { if (++i > 5) break; if (i == 2) continue; } i", "6"},
           {"var i = 10; do { i--; } while (i > 3); i", "3"},
           {"x: for (var i = 0, n = 0; i < 5; i++) for (;;) { n++; if (n > 20) break x; continue "
            "x; } "
            "i + ' ' + n",
            "5 5"},
           {"function k(v) { switch (v) { case 1: return 'one'; case '1': return 'text'; default: "
            "return 'other'; } } k(1) + k('1') + k(2)",
            "onetextother"},
           {"var s = ''; switch (2) { case 1: s += 'a'; case 2: s += 'b'; case 3: s += 'c'; break; "
            "default: s += 'd' } s",
            "bc"},
           {"var o = {a: 1, b: 2}, n = 0; for (var k in o) if (o.hasOwnProperty(k)) n += o[k]; n",
            "3"},
           {"var o = {x: 5}; with (o) { x = x + 1; y = 1 } o.x + ' ' + y", "6 1"},
           {"f(); function f() { return 1 } f()", "1"},
           {"if (0) 1; else 2", "undefined"},
           {"var undeclared2; undeclared1 + ''", "undefined"}});
}

TEST(Machine, FunctionsAndClosures)
{
    check(
        {{"function fib(n) { return n < 2 ? n : fib(n - 1) + fib(n - 2); } fib(15)", "610"},
         {"function f(a, b) { return b; } f(1) + '' + f(1, 2, 3)", "undefined2"},
         {"function c() { var n = 0; return function () { return ++n; }; } var x = c(), y = c(); "
          "x(); x(); y(); x() + ' ' + y()",
          "3 2"},
         {"function f() { return g; function g() { return 7 } } f()()", "7"},
         {"(function (x) { return x * 2 })(21)", "42"},
         {"var o = {n: 5, get: function () { return this.n }}; o.get() + o['get']()", "10"},
         {"function P(x) { this.x = x } P.prototype.twice = function () { return 2 * this.x }; "
          "new P(4).twice()",
          "8"},
         {"function F() { return {a: 1} } new F().a", "1"},
         {"function f() { var s = 0; for (var i = 0; i < arguments.length; i++) s += arguments[i]; "
          "return s } f(1, 2, 3, 4)",
          "10"},
         {"function f(a, a) { return a } f(1, 2)", "2"},
         {"function f(a) { a++; ++a; a += 2; return a-- + a } f(1)", "9"},
         {"function f(n) { function g() { return n-- } g(); g(); return n } f(5)", "3"},
         {"var o = {a: {b: [1, 2, {c: 3}]}}; o.a.b[2].c++ + ++o.a.b[2].c", "8"},
         {"var o = {n: 1}; o.n += 4; o['n'] *= 3; o.n <<= 1; o.n", "30"}});
}

TEST(Machine, ObjectsAndArrays)
{
    check(
        {{"var a = [1, 2, 3]; a[5] = 6; a.length + ' ' + a[4] + ' ' + a['5']", "6 undefined 6"},
         {"var a = [1, 2, 3]; a.length = 1; a[1] + '' + a.length", "undefined1"},
         {"var a = []; for (var i = 0; i < 200; i++) a[i] = i; a[150] + a.length", "350"},
         {"var a = []; a[2] = 'c'; a[0] = 'a'; a[1] = 'b'; a[0] + a[1] + a[2] + a.length", "abc3"},
         {"var a = [1]; a['01'] = 2; a.length", "1"},
         {"var a = [1, 2]; delete a[0]; a[0] + '' + a.length", "undefined2"},
         {"var o = {a: 1}; delete o.a; o.a", "undefined"},
         {"var o = {}; for (var i = 0; i < 50; i++) o['k' + i] = i; delete o.k7; o.k49 + '' + o.k7",
          "49undefined"},
         {"[,1][0]", "undefined"},
         {"'abc'.nothing", "undefined"}});
}

TEST(Machine, ExceptionsAreThrownAndCaught)
{
    check(
        {{"undefined.x", "thrown TypeError: line 1: can't convert undefined to an object"},
         {"\n\nnull.x", "thrown TypeError: line 3: can't convert null to an object"},
         {"var x = 1; x()", "thrown TypeError: line 1: not a function object"},
         {"new 5", "thrown TypeError: line 1: new must be given a constructor object"},
         {"throw 'x'", "thrown x"},
         {"a b", "thrown SyntaxError: line 1: expected ';' found identifier"},
         {"try { throw 1 } catch (e) { e + 1 } 9", "9"},
         {"var r; try { r = null.x } catch (e) { r = e.message } r",
          "line 1: can't convert null to an object"},
         {"var e = 5; try { throw 1 } catch (e) { e = 2 } e", "5"},
         {"var s = ''; try { s += 'a'; throw 1 } catch (x) { s += 'b' } finally { s += 'c' } s",
          "abc"},
         {"function f() { try { return 'r' } finally { g = 'f' } } f() + g", "rf"},
         {"function f() { for (;;) { try { break } finally { return 'out' } } } f()", "out"},
         {"var s = ''; try { try { throw 1 } finally { s += 'f' } } catch (e) { s += e } s", "f1"},
         {"var s = ''; for (var i = 0; i < 3; i++) { try { if (i == 1) continue; s += i } finally "
          "{ s += '.' } } s",
          "0..2."},
         {"function f(n) { if (n == 0) throw 'deep'; f(n - 1) } try { f(50) } catch (e) { e } 1",
          "1"},
         {"function f() { try { with ({a: 1}) { throw a } } catch (e) { var a = 7; return e + a } "
          "} "
          "f()",
          "8"}});
}

TEST(Machine, AContextLivesOnAfterAFailure)
{
    ESContext context;
    EXPECT_EQ(run(context, "var n = 1; function f() { n++; return null.x } f()"),
              "thrown TypeError: line 1: can't convert null to an object");
    EXPECT_EQ(run(context, "n"), "2");
    EXPECT_EQ(run(context, "function r(n) { return r(n + 1) + 1 } r(0)"),
              "fatal virtual machine stack too small");
    EXPECT_EQ(run(context, "n + 1"), "3");
    EXPECT_EQ(run(context, "function d(n) { return n ? d(n - 1) : 'bottom' } d(200)"), "bottom");
}

TEST(Machine, TheHostEndsAnEndlessLoop)
{
    struct Impatient : ESContext {
        bool carryOnExecuting() override { return ++polls < 5; }
        int polls = 0;
    } context;
    run(context, "function f() { for (;;) n++; } var n = 0; f(); n = 'went on'");
    EXPECT_EQ(context.polls, 5);
    context.polls = -1000;
    EXPECT_NE(run(context, "n"), "went on");
}

TEST(Machine, LongTextsAreBuiltPieceByPiece)
{
    EXPECT_EQ(
        run("var s = ''; for (var i = 0; i < 100000; i++) s += 'x'; var t = s + 'y'; var u = s + "
            "'z'; (s + s == s + s) + '' + (t == u) + (s == s + '')"),
        "truefalsetrue");
    EXPECT_EQ(run("var s = 'a'; s += 'b'; var t = s; s += 'c'; t += 'd'; s + t"), "abcabd");
}

} // namespace
