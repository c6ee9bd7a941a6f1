// Counts words, with an object as a table, and a binary tree beside it.
var text = "the quick brown fox jumps over the lazy dog and the dog sleeps while the fox runs";

function Node(key) { this.key = key; this.count = 1; this.left = null; this.right = null; }

function insert(node, key) {
    if (node == null) return new Node(key);
    if (key == node.key) node.count++;
    else if (key < node.key) node.left = insert(node.left, key);
    else node.right = insert(node.right, key);
    return node;
}

function walk(node, visit) {
    if (node == null) return;
    walk(node.left, visit);
    visit(node);
    walk(node.right, visit);
}

var words = text.split(" ");
var table = {};
var tree = null;
for (var i = 0; i < words.length; i++) {
    var word = words[i];
    table[word] = table[word] ? table[word] + 1 : 1;
    tree = insert(tree, word);
}

var lines = 0;
walk(tree, function (node) {
    if (node.count != table[node.key]) WScript.Echo("differs: " + node.key);
    if (node.count > 1) WScript.Echo(node.key + " " + node.count);
    lines++;
});
WScript.Echo(words.length + " words, " + lines + " different");

var distinct = 0;
for (var name in table) if (table.hasOwnProperty(name)) distinct++;
WScript.Echo(distinct);

function caesar(text, shift) {
    var result = "";
    for (var i = 0; i < text.length; i++) {
        var code = text.charCodeAt(i);
        if (code >= 97 && code <= 122) code = (code - 97 + shift + 26) % 26 + 97;
        result += String.fromCharCode(code);
    }
    return result;
}
var secret = caesar(text, 3);
WScript.Echo(secret);
WScript.Echo(caesar(secret, -3) == text);
