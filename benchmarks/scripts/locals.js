// Loops over local variables.
function count(limit) {
    var sum = 0;
    for (var i = 0; i < limit; i++) {
        sum = (sum + i * 3) % 65521;
    }
    return sum;
}
var result = count(4000000);
