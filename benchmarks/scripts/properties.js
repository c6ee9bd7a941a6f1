// Reading and writing properties of objects, and calling methods.
function Point(x, y) { this.x = x; this.y = y; }
Point.prototype.move = function (dx, dy) { this.x += dx; this.y = this.y + dy; };
function run(limit) {
    var p = new Point(1, 2);
    var other = { x: 3, y: 4, weight: 2 };
    for (var i = 0; i < limit; i++) {
        p.move(other.x, other.weight);
        other.y = p.x - p.y;
    }
    return p.x + p.y + other.y;
}
var result = run(600000);
