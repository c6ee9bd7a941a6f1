function f(n) { try { if (n) throw {a: n}; return 1; } catch (e) { return e.a; } finally { g = n; } }
f(0) + f(2);
try { null.x } catch (e) { e.message } finally { }
eval("undefined.y"); new Function('a', 'return a * 2')(4);
