// Eight queens, the towers of Hanoi, primes, and factorials beyond the numbers of the machine.
function queens(size) {
    var columns = [], up = [], down = [], first = "", count = 0;
    function place(row) {
        if (row == size) {
            if (count++ == 0)
                for (var i = 0; i < size; i++) first += columns[i] + 1;
            return;
        }
        for (var column = 0; column < size; column++) {
            if (up[row + column] || down[row - column + size]) continue;
            var taken = false;
            for (var above = 0; above < row && !taken; above++)
                taken = columns[above] == column;
            if (taken) continue;
            columns[row] = column;
            up[row + column] = down[row - column + size] = true;
            place(row + 1);
            up[row + column] = down[row - column + size] = false;
        }
    }
    place(0);
    return count + " ways, the first is " + first;
}

function hanoi(discs) {
    var moves = 0, pegs = [[], [], []];
    for (var disc = discs; disc > 0; disc--) pegs[0].push(disc);
    function move(count, from, to, over) {
        if (count == 0) return;
        move(count - 1, from, over, to);
        var disc = pegs[from].pop();
        if (pegs[to].length && pegs[to][pegs[to].length - 1] < disc) throw "disc " + disc + " on a smaller one";
        pegs[to].push(disc);
        moves++;
        move(count - 1, over, to, from);
    }
    move(discs, 0, 2, 1);
    return moves + " moves, the last peg has " + pegs[2];
}

function primes(below) {
    var found = [];
    next: for (var n = 2; n < below; n++) {
        for (var i = 0; i < found.length && found[i] * found[i] <= n; i++)
            if (n % found[i] == 0) continue next;
        found[found.length] = n;
    }
    return found;
}

function factorial(n) {
    var digits = [1];
    for (var factor = 2; factor <= n; factor++) {
        var carry = 0;
        for (var i = 0; i < digits.length || carry > 0; i++) {
            var product = carry + (i < digits.length ? digits[i] * factor : 0);
            digits[i] = product % 10;
            carry = Math.floor(product / 10);
        }
    }
    var text = "";
    for (i = digits.length - 1; i >= 0; i--) text += digits[i];
    return text;
}

function roman(n) {
    var values = [1000, 900, 500, 400, 100, 90, 50, 40, 10, 9, 5, 4, 1];
    var letters = ["M", "CM", "D", "CD", "C", "XC", "L", "XL", "X", "IX", "V", "IV", "I"];
    var text = "";
    for (var i = 0; i < values.length; i++)
        while (n >= values[i]) {
            text += letters[i];
            n -= values[i];
        }
    return text;
}

WScript.Echo(queens(8));
WScript.Echo(hanoi(10));
WScript.Echo(primes(60) + "; " + primes(2000).length + " below 2000");
WScript.Echo(factorial(30));
WScript.Echo(roman(1994) + " " + roman(2026));
