// Reading and writing elements of arrays: a sieve, several times.
function sieve(size) {
    var composite = [];
    var count = 0;
    for (var i = 0; i <= size; i++) composite[i] = false;
    for (var n = 2; n <= size; n++) {
        if (composite[n]) continue;
        count++;
        for (var m = n + n; m <= size; m += n) composite[m] = true;
    }
    return count;
}
var result = 0;
for (var turn = 0; turn < 8; turn++) result += sieve(100000);
