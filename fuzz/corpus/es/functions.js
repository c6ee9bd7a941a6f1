function counter(n) { var value = n; return { up: function () { return ++value; }, down: function () { return value--; } }; }
function P(x) { this.x = x; }
P.prototype.get = function () { return arguments.length + this.x; };
var c = counter(5); c.up(); c['down']() + new P(3).get(1, 2);
(function (f) { return f ? f(null) : 1; })(function (g) { return typeof g; });
