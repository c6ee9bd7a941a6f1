// Conway's game of life on a torus: a glider comes back to its place after 4 * 8 generations.
var SIZE = 8;

function Board() {
    this.cells = new Array(SIZE);
    for (var row = 0; row < SIZE; row++) {
        this.cells[row] = new Array(SIZE);
        for (var column = 0; column < SIZE; column++)
            this.cells[row][column] = 0;
    }
}

Board.prototype.neighbours = function (row, column) {
    var sum = 0;
    for (var dr = -1; dr <= 1; dr++)
        for (var dc = -1; dc <= 1; dc++)
            if (dr != 0 || dc != 0)
                sum += this.cells[(row + dr + SIZE) % SIZE][(column + dc + SIZE) % SIZE];
    return sum;
};

Board.prototype.next = function () {
    var board = new Board();
    for (var row = 0; row < SIZE; row++)
        for (var column = 0; column < SIZE; column++) {
            var n = this.neighbours(row, column);
            board.cells[row][column] = n == 3 || (n == 2 && this.cells[row][column]) ? 1 : 0;
        }
    return board;
};

Board.prototype.print = function () {
    for (var row = 0; row < SIZE; row++) {
        var line = "";
        for (var column = 0; column < SIZE; column++)
            line += this.cells[row][column] ? "*" : ".";
        WScript.Echo(line);
    }
};

var board = new Board();
var glider = [[0, 1], [1, 2], [2, 0], [2, 1], [2, 2]];
for (var i = 0; i < glider.length; i++)
    board.cells[glider[i][0]][glider[i][1]] = 1;
board.print();
for (var generation = 0; generation < 6; generation++)
    board = board.next();
WScript.Echo("after 6 generations");
board.print();
for (; generation < 4 * SIZE; generation++)
    board = board.next();
WScript.Echo("after " + generation + " generations");
board.print();
