// Building texts, and looking into them.
function build(limit) {
    var text = "";
    for (var i = 0; i < limit; i++) text += "item " + i + ", ";
    return text;
}
function count(text, c) {
    var n = 0;
    for (var i = 0; i < text.length; i++) if (text.charAt(i) == c) n++;
    return n;
}
var result = 0;
for (var turn = 0; turn < 20; turn++) result += count(build(400), "1");
