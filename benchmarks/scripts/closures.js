// Variables of functions that others have captured.
function counter(step) {
    var value = 0;
    return function () { value += step; return value; };
}
function run(limit) {
    var up = counter(1);
    var down = counter(-2);
    var sum = 0;
    for (var i = 0; i < limit; i++) sum += up() + down();
    return sum;
}
var result = run(500000);
