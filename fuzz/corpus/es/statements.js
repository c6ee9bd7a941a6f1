var a = [1, 2, , 'x'], o = {b: 1, 'c': 2, 3: a};
outer: for (var i = 0; i < 3; i++) { for (var k in o) { if (i == 1) continue outer; else break; } }
do { a[i] = i--; } while (i > 0)
switch (a.length) { case 1: a = 2; break; case '4': default: a.push(3); }
with (o) { b = b + 1; delete o.b; }
while (false);
