var t = 'abc,def'; t.split(',').reverse() + t.charAt(1) + t.replace('a', 'b') + t.slice(-2);
[3, 1, 2].sort(function (a, b) { return b - a; }).concat([4]).shift();
Math.max(1, 2) + Math.round(-0.4) + parseInt('0x1f') + parseFloat('1e3') + (5).toFixed(2);
new Date(2000, 1, 29).getTime() + new Date('2001-02-03').toString() + new Number(255).toString(16);
'\x41\u0042\103' + isNaN('x') + new Array(5).length + String.fromCharCode(65);
