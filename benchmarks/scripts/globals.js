// Loops over global variables.
var sum = 0;
for (var i = 0; i < 3000000; i++) {
    sum = (sum + i * 3) % 65521;
}
var result = sum;
