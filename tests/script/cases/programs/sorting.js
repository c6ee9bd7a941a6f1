// Textbook sorts of the same pseudo-random numbers: all must agree.
function Random(seed) { this.seed = seed; }
Random.prototype.next = function () {
    this.seed = (this.seed * 16807) % 2147483647;
    return this.seed;
};

function numbers(count) {
    var random = new Random(42);
    var list = [];
    for (var i = 0; i < count; i++)
        list.push(random.next() % 1000);
    return list;
}

function bubbleSort(a) {
    for (var end = a.length - 1; end > 0; end--)
        for (var i = 0; i < end; i++)
            if (a[i] > a[i + 1]) {
                var t = a[i];
                a[i] = a[i + 1];
                a[i + 1] = t;
            }
}

function insertionSort(a) {
    for (var i = 1; i < a.length; i++) {
        var value = a[i];
        for (var j = i; j > 0 && a[j - 1] > value; j--)
            a[j] = a[j - 1];
        a[j] = value;
    }
}

function shellSort(a) {
    for (var gap = a.length >> 1; gap > 0; gap >>= 1)
        for (var i = gap; i < a.length; i++) {
            var value = a[i];
            for (var j = i; j >= gap && a[j - gap] > value; j -= gap)
                a[j] = a[j - gap];
            a[j] = value;
        }
}

function quickSort(a) {
    function partition(low, high) {
        var pivot = a[(low + high) >> 1], i = low, j = high;
        while (i <= j) {
            while (a[i] < pivot) i++;
            while (a[j] > pivot) j--;
            if (i <= j) {
                var t = a[i];
                a[i++] = a[j];
                a[j--] = t;
            }
        }
        if (low < j) partition(low, j);
        if (i < high) partition(i, high);
    }
    partition(0, a.length - 1);
}

function heapSort(a) {
    function sift(root, end) {
        for (var child; (child = 2 * root + 1) < end; root = child) {
            if (child + 1 < end && a[child] < a[child + 1]) child++;
            if (a[root] >= a[child]) return;
            var t = a[root];
            a[root] = a[child];
            a[child] = t;
        }
    }
    for (var start = (a.length >> 1) - 1; start >= 0; start--) sift(start, a.length);
    for (var end = a.length - 1; end > 0; end--) {
        var t = a[0];
        a[0] = a[end];
        a[end] = t;
        sift(0, end);
    }
}

function mergeSort(a) {
    function sorted(list) {
        if (list.length < 2) return list;
        var left = sorted(list.slice(0, list.length >> 1));
        var right = sorted(list.slice(list.length >> 1, list.length));
        var merged = [];
        while (left.length && right.length)
            merged.push(left[0] <= right[0] ? left.shift() : right.shift());
        return merged.concat(left, right);
    }
    var result = sorted(a);
    for (var i = 0; i < a.length; i++) a[i] = result[i];
}

function builtIn(a) { a.sort(function (x, y) { return x - y; }); }

function checksum(a) {
    var sum = 0;
    for (var i = 0; i < a.length; i++) {
        if (i > 0 && a[i - 1] > a[i]) return "not sorted at " + i;
        sum = (sum * 31 + a[i]) % 1000003;
    }
    return sum;
}

var sorts = { bubble: bubbleSort, insertion: insertionSort, shell: shellSort, quick: quickSort,
              heap: heapSort, merge: mergeSort, "built in": builtIn };
var names = ["bubble", "insertion", "shell", "quick", "heap", "merge", "built in"];
WScript.Echo("unsorted: " + checksum(numbers(300)));
for (var i = 0; i < names.length; i++) {
    var list = numbers(300);
    sorts[names[i]](list);
    WScript.Echo(names[i] + ": " + checksum(list) + ", from " + list[0] + " to " + list[299]);
}
