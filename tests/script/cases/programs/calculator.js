// A recursive-descent parser and evaluator of arithmetic, with variables and errors.
function Parser(text) {
    this.text = text;
    this.at = 0;
}

Parser.variables = { ten: 10, six: 6 };

Parser.prototype.blank = function () {
    while (this.text.charAt(this.at) == " ")
        this.at++;
};

Parser.prototype.take = function (c) {
    this.blank();
    if (this.text.charAt(this.at) != c)
        return false;
    this.at++;
    return true;
};

Parser.prototype.fail = function (what) {
    throw new SyntaxError(what + " at " + this.at);
};

function isDigit(c) { return c != "" && c >= "0" && c <= "9"; }
function isLetter(c) { return c != "" && c >= "a" && c <= "z"; }

Parser.prototype.word = function (accepts) {
    var start = this.at;
    while (accepts(this.text.charAt(this.at)))
        this.at++;
    return this.text.substring(start, this.at);
};

Parser.prototype.primary = function () {
    this.blank();
    var c = this.text.charAt(this.at);
    if (isDigit(c))
        return Number(this.word(isDigit));
    if (isLetter(c)) {
        var name = this.word(isLetter);
        if (this.take("=")) {
            return Parser.variables[name] = this.sum();
        }
        if (!Parser.variables.hasOwnProperty(name))
            this.fail("unknown " + name);
        return Parser.variables[name];
    }
    if (this.take("-"))
        return -this.primary();
    if (this.take("(")) {
        var value = this.sum();
        if (!this.take(")"))
            this.fail("missing )");
        return value;
    }
    this.fail(c == "" ? "unexpected end" : "unexpected " + c);
};

Parser.prototype.power = function () {
    var base = this.primary();
    return this.take("^") ? Math.pow(base, this.power()) : base;
};

Parser.prototype.product = function () {
    var value = this.power();
    for (;;) {
        if (this.take("*"))
            value *= this.power();
        else if (this.take("/")) {
            var by = this.power();
            if (by == 0)
                throw new RangeError("division by zero");
            value /= by;
        } else if (this.take("%"))
            value %= this.power();
        else
            return value;
    }
};

Parser.prototype.sum = function () {
    var value = this.product();
    for (;;) {
        if (this.take("+"))
            value += this.product();
        else if (this.take("-"))
            value -= this.product();
        else
            return value;
    }
};

function evaluate(text) {
    try {
        var parser = new Parser(text);
        var value = parser.sum();
        parser.blank();
        if (parser.at < text.length)
            parser.fail("unexpected " + text.charAt(parser.at));
        return value;
    } catch (e) {
        return e.name + ": " + e.message;
    }
}

var lines = ["1 + 2 * 3", "(1 + 2) * 3", "2 ^ 3 ^ 2", "-2 * -(3 - 8)", "ten * six % 7", "x = 6 * 7",
             "x + x / 2", "1 / 0", "2 * (3", "y + 1", "3 $ 4", "", "100 / 8 * 2"];
for (var i = 0; i < lines.length; i++)
    WScript.Echo(lines[i] + " -> " + evaluate(lines[i]));
