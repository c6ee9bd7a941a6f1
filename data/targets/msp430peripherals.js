// Peripherals of the MSP430: ports, watchdog, Timer_A and Timer_B, clocks, serial ports, ADC.
//
// The simulator calls the five functions at the end. What modules a device has, and where, stands
// in msp430peripherals/DEVICE.js. Nothing here makes an object, a text or a closure while a program
// runs, since those live as long as the context.
//
// A file of your own can load this one and add to it:
//
//     Simulator.load("msp430peripherals.js");
//     analogInput = function(channel) { return channel == 10 ? 0.4 : 0; };  // 0 to 1
//     started = function() { schedule(50000, function() { setPin(1, 3, 0); }); };
//
// (Declared functions would be there before the file is loaded, and be replaced by it.)
// connected() runs when the device is known, started() at each reset; schedule(cycles, action) does
// something later, setPin(port, bit, level) drives an input, and outputChanged(port, value) sees
// what the program puts on a port. capture(timer, channel, level) drives a capture input, with
// timer numbers in the order of the device file.
//
// Registers and timing follow the family guides SLAU049 (1xx), SLAU144 (2xx), SLAU056 (4xx) and
// SLAU208 (5xx and 6xx).

var ACLK = 32768;         // the watch crystal
var DEFAULT_DCO = 1048576;

var modules = [];
var wordAt = [];          // handler of a word register, by its even address
var byteAt = [];          // handler of a byte register
var memory = [];          // registers without a handler, by bytes
var now = 0;              // cycles
var clock;                // the device's clock module
var scheduleTimes = [];
var scheduleActions = [];
var watchdogCaused = false;

function analogInput(channel) { return 0.5; }
function outputChanged(port, value) { }
function connected() { }
function started() { }

// Math.min and Math.max cut their arguments to whole numbers.
function least(a, b) { return a < b ? a : b; }
function most(a, b) { return a > b ? a : b; }

function schedule(cycles, action) {
    scheduleTimes.push(Simulator.cycleCount() + cycles);
    scheduleActions.push(action);
}

function wordRegisters(handler, first, count) {
    for (var i = 0; i < count; i++)
        wordAt[first + 2 * i] = handler;
}

function getWord(address) { return memory[address] | memory[address + 1] << 8; }
function putWord(address, value) {
    memory[address] = value & 0xFF;
    memory[address + 1] = value >> 8 & 0xFF;
}

// Clocks. All frequencies are in Hz; the processor's cycles are those of MCLK.

function Clock(kind, registers) {
    this.kind = kind;
    this.r = registers;
    this.mclk = DEFAULT_DCO;
    this.smclk = DEFAULT_DCO;
    this.aclk = ACLK;
}

// Nominal frequencies by RSEL at DCO = 3 (SLAS504 for eight and more ranges, SLAS272 else).
var RANGES_2XX = [60000, 100000, 140000, 200000, 280000, 400000, 550000, 1000000, 1600000, 2300000,
                  3400000, 4250000, 5800000, 7800000, 11250000, 15250000];
var RANGES_1XX = [120000, 190000, 300000, 490000, 800000, 1200000, 1900000, 2900000];

Clock.prototype.update = function() {
    if (this.kind == "fixed")
        return;
    var dco = DEFAULT_DCO, divideM = 0, divideS = 0, divideA = 0;
    if (this.kind == "basic") {            // registers: DCOCTL, BCSCTL1, BCSCTL2
        var control1 = memory[this.r[1]], control2 = memory[this.r[2]];
        dco = this.r[3] ? RANGES_2XX[control1 & 15] : RANGES_1XX[control1 & 7];
        divideA = control1 >> 4 & 3;
        divideM = control2 >> 4 & 3;
        divideS = control2 >> 1 & 3;
        this.mclk = (control2 >> 6) == 3 ? ACLK : dco;
        this.smclk = (control2 & 8) != 0 ? ACLK : dco;
    } else if (this.kind == "fll") {       // SCFI0, SCFQCTL, FLL_CTL0, FLL_CTL1
        dco = ACLK * ((memory[this.r[1]] & 0x7F) + 1);
        if ((memory[this.r[2]] & 0x80) != 0)
            dco = dco * (1 << (memory[this.r[0]] >> 6));
        divideA = memory[this.r[3]] & 3;
        this.mclk = (memory[this.r[3]] >> 3 & 3) == 3 ? ACLK : dco;
        this.smclk = dco;
    } else {                               // UCSCTL2, UCSCTL4, UCSCTL5
        var loop = getWord(this.r[0]), select = getWord(this.r[1]), divide = getWord(this.r[2]);
        dco = ACLK * ((loop & 0x3FF) + 1);
        var factor = 1 << least(loop >> 12 & 7, 5);
        this.mclk = this.sourceOf(select & 7, dco, factor);
        this.smclk = this.sourceOf(select >> 4 & 7, dco, factor);
        this.aclk = this.sourceOf(select >> 8 & 7, dco, factor);
        divideM = divide & 7;
        divideS = divide >> 4 & 7;
        divideA = divide >> 8 & 7;
        this.aclk = this.aclk / (1 << divideA);
    }
    if (this.kind != "ucs")
        this.aclk = ACLK / (1 << divideA);
    this.mclk = this.mclk / (1 << divideM);
    this.smclk = this.smclk / (1 << divideS);
};
Clock.prototype.sourceOf = function(select, dco, factor) {
    if (select == 3)
        return dco * factor;
    if (select == 4)
        return dco;
    return select == 1 ? 10000 : ACLK; // VLO; crystals and REFO
};
/// Cycles of one period of SMCLK or ACLK.
Clock.prototype.smclkCycles = function() { return this.mclk / this.smclk; };
Clock.prototype.aclkCycles = function() { return this.mclk / this.aclk; };
Clock.prototype.changed = function() {
    this.update();
    for (var i = 0; i < modules.length; i++)
        if (modules[i].clockChanged != undefined)
            modules[i].clockChanged();
};
Clock.prototype.load = function(address, debug) { return memory[address]; };
Clock.prototype.store = function(address, value) {
    advanceAll();
    memory[address] = value;
    this.changed();
};
Clock.prototype.loadWord = function(address, debug) { return getWord(address); };
Clock.prototype.storeWord = function(address, value) {
    advanceAll();
    putWord(address, value);
    this.changed();
};
Clock.prototype.reset = function() {
    if (this.kind == "fixed")
        return;
    if (this.kind == "basic") {
        memory[this.r[0]] = 0x60;
        memory[this.r[1]] = this.r[3] ? 0x87 : 0x84;
        memory[this.r[2]] = 0;
    } else if (this.kind == "fll") {
        memory[this.r[0]] = 0x40;
        memory[this.r[1]] = 0x1F;
        memory[this.r[2]] = 0x03;
        memory[this.r[3]] = 0;
    } else {
        putWord(this.r[0], 0x101F);
        putWord(this.r[1], 0x0044);
        putWord(this.r[2], 0);
    }
    this.update();
};
Clock.prototype.advance = function() { };
Clock.prototype.due = function() { return 0; };
Clock.prototype.next = function() { return Infinity; };

// Digital ports. The registers are bytes: IN, OUT, DIR, IFG, IES, IE; the last three of a port
// without interrupts are -1.

function Port(number, registers, vector, iv) {
    this.isPort = true;
    this.number = number;
    this.r = registers;
    this.vector = vector;
    this.iv = iv;
    this.inputs = 0;
    this.pins = 0;
    for (var i = 0; i < registers.length; i++)
        if (registers[i] >= 0)
            byteAt[registers[i]] = this;
    if (iv >= 0)
        wordAt[iv] = this;
}
Port.prototype.reset = function() {
    for (var i = 0; i < this.r.length; i++)
        if (this.r[i] >= 0 && i != 1)
            memory[this.r[i]] = 0;
    memory[this.r[1]] = 0;
    this.pins = this.levels();
};
Port.prototype.levels = function() {
    var dir = memory[this.r[2]];
    return memory[this.r[1]] & dir | this.inputs & ~dir & 0xFF;
};
/// An edge of the direction that IES asks for sets a flag.
Port.prototype.pinsChanged = function() {
    var before = this.pins;
    this.pins = this.levels();
    var changed = before ^ this.pins;
    if (this.r[3] >= 0 && changed != 0) {
        var falling = memory[this.r[4]];
        memory[this.r[3]] = memory[this.r[3]] | changed & (falling & before | ~falling & this.pins);
    }
};
Port.prototype.load = function(address, debug) {
    return address == this.r[0] ? this.pins : memory[address];
};
Port.prototype.store = function(address, value) {
    if (address == this.r[0])
        return;
    memory[address] = value;
    if (address == this.r[1] || address == this.r[2]) {
        this.pinsChanged();
        outputChanged(this.number, memory[this.r[1]] & memory[this.r[2]]);
    }
};
Port.prototype.loadWord = function(address, debug) {
    var due = memory[this.r[3]] & memory[this.r[5]];
    for (var bit = 0; bit < 8; bit++)
        if ((due & 1 << bit) != 0) {
            if (!debug)
                memory[this.r[3]] = memory[this.r[3]] & ~(1 << bit);
            return 2 * bit + 2;
        }
    return 0;
};
Port.prototype.storeWord = function(address, value) { };
Port.prototype.advance = function() { };
Port.prototype.due = function() {
    return this.r[3] >= 0 && (memory[this.r[3]] & memory[this.r[5]]) != 0 ? this.vector : 0;
};
Port.prototype.accept = function(vector) { };
Port.prototype.next = function() { return Infinity; };

function setPin(number, bit, level) {
    for (var i = 0; i < modules.length; i++)
        if (modules[i].isPort && modules[i].number == number) {
            var port = modules[i];
            port.inputs = level ? port.inputs | 1 << bit : port.inputs & ~(1 << bit);
            port.pinsChanged();
        }
}

// Timer_A and Timer_B. The counter is brought up to date when somebody looks: it stands at
// `position` of a round of `length` counts at the time `since`.

function Timer(isB, channels, control, counter, capture, compare, extension, iv, vector0, vector1,
               overflowIV) {
    this.isTimer = true;
    this.isB = isB;
    this.channels = channels;
    this.control = control;
    this.counter = counter;
    this.cctl = capture;   // of channel 0; the others follow
    this.ccr = compare;
    this.extension = extension;
    this.iv = iv;
    this.vector0 = vector0;
    this.vector1 = vector1;
    this.overflowIV = overflowIV;
    this.position = 0;
    this.length = 0x10000;
    this.since = 0;
    this.period = 1;       // cycles of one count
    this.running = false;
    wordAt[control] = this;
    wordAt[counter] = this;
    wordRegisters(this, capture, channels);
    wordRegisters(this, compare, channels);
    if (extension >= 0)
        wordAt[extension] = this;
    if (iv >= 0)
        wordAt[iv] = this;
}
Timer.prototype.reset = function() {
    putWord(this.control, 0);
    for (var i = 0; i < this.channels; i++) {
        putWord(this.cctl + 2 * i, 0);
        putWord(this.ccr + 2 * i, 0);
    }
    if (this.extension >= 0)
        putWord(this.extension, 0);
    this.position = 0;
    this.since = now;
    this.configure(0);
};
/// The largest count: shorter for a Timer_B that is told so.
Timer.prototype.top = function() {
    if (!this.isB)
        return 0xFFFF;
    switch (getWord(this.control) >> 11 & 3) {
    case 1: return 0xFFF;
    case 2: return 0x3FF;
    case 3: return 0xFF;
    }
    return 0xFFFF;
};
/// Takes the settings over, with the counter at a value.
Timer.prototype.configure = function(count) {
    var control = getWord(this.control), mode = control >> 4 & 3;
    var limit = least(getWord(this.ccr), this.top());
    var source = control >> 8 & 3;
    this.period = (source == 1 ? clock.aclkCycles() : clock.smclkCycles()) * (1 << (control >> 6 & 3));
    if (this.extension >= 0)
        this.period = this.period * ((getWord(this.extension) & 7) + 1);
    // The external clocks are not driven.
    this.running = mode != 0 && source != 0 && source != 3 && (mode == 2 || limit != 0);
    if (mode == 2 || mode == 0)
        this.length = this.top() + 1;
    else
        this.length = mode == 1 ? limit + 1 : most(2 * limit, 1);
    this.position = count < this.length ? count : 0;
};
Timer.prototype.clockChanged = function() {
    var count = this.count();
    this.since = now;
    this.configure(count);
};
Timer.prototype.isUpDown = function() { return (getWord(this.control) & 0x30) == 0x30; };
Timer.prototype.count = function() {
    if (this.isUpDown() && this.position > this.length / 2)
        return this.length - this.position;
    return this.position;
};
/// Counts until the round is at a position again: 1 to its length.
Timer.prototype.distance = function(position) {
    var d = (position - this.position) % this.length;
    return d <= 0 ? d + this.length : d;
};
/// Counts until a channel's compare value is met; Infinity if it never is.
Timer.prototype.untilCompare = function(channel) {
    var value = getWord(this.ccr + 2 * channel);
    if (!this.isUpDown())
        return value < this.length ? this.distance(value) : Infinity;
    if (value > this.length / 2)
        return Infinity;
    var up = this.distance(value);
    if (value == 0 || value == this.length / 2)
        return up;
    return least(up, this.distance(this.length - value));
};
Timer.prototype.advance = function() {
    if (!this.running)
        return;
    var counts = Math.floor((now - this.since) / this.period);
    if (counts <= 0)
        return;
    for (var i = 0; i < this.channels; i++) {
        var register = this.cctl + 2 * i;
        if ((memory[register + 1] & 1) == 0 && this.untilCompare(i) <= counts)
            memory[register] = memory[register] | 1;
    }
    if (this.distance(0) <= counts)
        memory[this.control] = memory[this.control] | 1;
    this.position = (this.position + counts) % this.length;
    this.since = this.since + counts * this.period;
};
Timer.prototype.loadWord = function(address, debug) {
    if (!debug)
        this.advance();
    if (address == this.counter)
        return this.count();
    if (address == this.iv)
        return this.vectorWord(debug);
    return getWord(address);
};
Timer.prototype.vectorWord = function(debug) {
    for (var i = 1; i < this.channels; i++) {
        var register = this.cctl + 2 * i;
        if ((memory[register] & 0x11) == 0x11) {
            if (!debug)
                memory[register] = memory[register] & 0xFE;
            return 2 * i;
        }
    }
    if ((memory[this.control] & 3) == 3) {
        if (!debug)
            memory[this.control] = memory[this.control] & 0xFE;
        return this.overflowIV;
    }
    return 0;
};
Timer.prototype.storeWord = function(address, value) {
    this.advance();
    var count = this.count();
    if (address == this.iv)
        return;
    if (address == this.counter) {
        count = value;
    } else if (address == this.control) {
        if ((value & 4) != 0)
            count = 0;
        putWord(address, value & 0xFFFB);
    } else if (address >= this.cctl && address < this.cctl + 2 * this.channels) {
        this.storeCapture(address, value, count);
    } else {
        putWord(address, value);
    }
    if (!this.running || address == this.control || address == this.counter)
        this.since = now;
    var descending = this.isUpDown() && this.position > this.length / 2 && address != this.control;
    this.configure(count);
    if (descending)
        this.position = this.length - this.position;
};
/// A capture input that is switched between ground and supply captures like an edge.
Timer.prototype.storeCapture = function(address, value, count) {
    var before = getWord(address);
    putWord(address, value);
    var high = (value >> 12 & 3) == 3, wasHigh = (before >> 12 & 3) == 3;
    var fixed = (value >> 13 & 1) == 1 && (before >> 13 & 1) == 1;
    if ((value & 0x100) != 0 && fixed && high != wasHigh)
        this.edge(address, high, count);
};
Timer.prototype.edge = function(register, rising, count) {
    var value = getWord(register), mode = value >> 14;
    if ((value & 0x100) == 0 || mode == 0 || mode == 1 && !rising || mode == 2 && rising)
        return;
    if ((value & 1) != 0)
        value = value | 2; // overflow: the last capture was not read
    putWord(register, value | 1);
    putWord(this.ccr + (register - this.cctl), count);
};
Timer.prototype.due = function() {
    if ((memory[this.cctl] & 0x11) == 0x11)
        return this.vector0;
    for (var i = 1; i < this.channels; i++)
        if ((memory[this.cctl + 2 * i] & 0x11) == 0x11)
            return this.vector1;
    return (memory[this.control] & 3) == 3 ? this.vector1 : 0;
};
Timer.prototype.accept = function(vector) {
    if (vector == this.vector0)
        memory[this.cctl] = memory[this.cctl] & 0xFE;
};
/// The time of the next interrupt.
Timer.prototype.next = function() {
    if (!this.running)
        return Infinity;
    var counts = Infinity;
    for (var i = 0; i < this.channels; i++) {
        var register = this.cctl + 2 * i;
        if ((memory[register] & 0x10) != 0 && (memory[register + 1] & 1) == 0)
            counts = least(counts, this.untilCompare(i));
    }
    if ((memory[this.control] & 2) != 0)
        counts = least(counts, this.distance(0));
    return this.since + counts * this.period;
};

function capture(number, channel, level) {
    var at = 0;
    for (var i = 0; i < modules.length; i++)
        if (modules[i].isTimer && at++ == number) {
            now = Simulator.cycleCount();
            modules[i].advance();
            modules[i].edge(modules[i].cctl + 2 * channel, level != 0, modules[i].count());
        }
}

// The watchdog. It resets the processor, or interrupts as an interval timer.

function Watchdog(control, enable, flags, vector, isA) {
    this.control = control;
    this.ie = enable;
    this.ifg = flags;
    this.vector = vector;
    this.isA = isA;        // WDT_A: more sources and intervals
    this.value = 0;
    this.began = 0;
    wordAt[control] = this;
}
Watchdog.prototype.reset = function() {
    this.value = this.isA ? 4 : 0;
    this.began = now;
    if (watchdogCaused)
        memory[this.ifg] = memory[this.ifg] | 1;
    watchdogCaused = false;
};
var WATCHDOG_COUNTS = [32768, 8192, 512, 64];
var WATCHDOG_A_COUNTS = [2147483648, 134217728, 8388608, 524288, 32768, 8192, 512, 64];
Watchdog.prototype.interval = function() {
    var counts = this.isA ? WATCHDOG_A_COUNTS[this.value & 7] : WATCHDOG_COUNTS[this.value & 3];
    var aclk = this.isA ? (this.value >> 5 & 3) == 1 : (this.value & 4) != 0;
    return counts * (aclk ? clock.aclkCycles() : clock.smclkCycles());
};
Watchdog.prototype.isInterval = function() { return (this.value & 0x10) != 0; };
Watchdog.prototype.isHeld = function() { return (this.value & 0x80) != 0; };
Watchdog.prototype.loadWord = function(address, debug) { return 0x6900 | this.value; };
Watchdog.prototype.storeWord = function(address, value) {
    this.advance();
    if ((value >> 8) != 0x5A) { // the password
        this.bite();
        return;
    }
    if ((value & 8) != 0 || ((value ^ this.value) & 0x97) != 0)
        this.began = now;
    this.value = value & 0xF7;
};
Watchdog.prototype.bite = function() {
    watchdogCaused = true;
    Simulator.reset();
};
Watchdog.prototype.advance = function() {
    if (this.isHeld())
        return;
    var interval = this.interval();
    var elapsed = now - this.began;
    if (elapsed < interval)
        return;
    this.began = now - elapsed % interval;
    if (this.isInterval())
        memory[this.ifg] = memory[this.ifg] | 1;
    else
        this.bite();
};
Watchdog.prototype.due = function() {
    return this.isInterval() && (memory[this.ie] & memory[this.ifg] & 1) != 0 ? this.vector : 0;
};
Watchdog.prototype.accept = function(vector) { memory[this.ifg] = memory[this.ifg] & 0xFE; };
Watchdog.prototype.next = function() {
    if (this.isHeld() || this.isInterval() && (memory[this.ie] & 1) == 0)
        return Infinity;
    return this.began + this.interval();
};

// Serial ports in UART mode: USART, USCI_A and eUSCI_A. Registers: the one with SWRST, that with the
// clock source, the divider's low and high bytes, receive and transmit buffer, enable and flags.

function Uart(kind, registers, receiveBit, transmitBit, receiveVector, transmitVector, iv) {
    this.kind = kind;      // "usart", "usci" or "usci5" (with an interrupt vector word)
    this.r = registers;
    this.rxBit = receiveBit;
    this.txBit = transmitBit;
    this.rxVector = receiveVector;
    this.txVector = transmitVector;
    this.iv = iv;
    this.shiftEnd = 0;     // when the byte on the line is out
    this.waiting = -1;     // the byte behind it
    this.nextReceive = 0;
    this.ended = false;    // no more input will come
    this.full = false;     // what was received has not been read
    for (var i = 0; i < registers.length; i++)
        byteAt[registers[i]] = this;
    if (iv >= 0)
        wordAt[iv] = this;
}
Uart.prototype.reset = function() {
    memory[this.r[0]] = 1;
    this.flush();
};
Uart.prototype.flush = function() {
    this.shiftEnd = now;
    this.waiting = -1;
    this.full = false;
    this.nextReceive = now;
    memory[this.r[7]] = memory[this.r[7]] & ~this.rxBit | this.txBit;
};
Uart.prototype.isHeld = function() { return (memory[this.r[0]] & 1) != 0; };
/// Cycles of a character of ten bits.
Uart.prototype.characterCycles = function() {
    var select = memory[this.r[1]];
    var source = this.kind == "usart" ? select >> 4 & 3 : select >> 6 & 3;
    var divider = most(memory[this.r[2]] | memory[this.r[3]] << 8, 1);
    return 10 * divider * (source == 1 ? clock.aclkCycles() : clock.smclkCycles());
};
Uart.prototype.put = function(value) {
    if (this.isHeld())
        return;
    if (now >= this.shiftEnd) {
        this.shiftEnd = now + this.characterCycles();
        Simulator.send(value);
        memory[this.r[7]] = memory[this.r[7]] | this.txBit;
    } else {
        this.waiting = value;
        memory[this.r[7]] = memory[this.r[7]] & ~this.txBit;
    }
};
Uart.prototype.advance = function() {
    if (this.isHeld())
        return;
    if (this.waiting >= 0 && now >= this.shiftEnd) {
        Simulator.send(this.waiting);
        this.waiting = -1;
        this.shiftEnd = this.shiftEnd + this.characterCycles();
        memory[this.r[7]] = memory[this.r[7]] | this.txBit;
    }
    if (!this.ended && now >= this.nextReceive && !this.full) {
        this.nextReceive = now + this.characterCycles();
        var byte = Simulator.receive();
        if (byte >= 0) {
            memory[this.r[4]] = byte;
            this.full = true;
            memory[this.r[7]] = memory[this.r[7]] | this.rxBit;
        } else if (byte == -2) {
            this.ended = true;
        }
    }
};
Uart.prototype.load = function(address, debug) {
    if (!debug)
        this.advance();
    if (address == this.r[4] && !debug) {
        memory[this.r[7]] = memory[this.r[7]] & ~this.rxBit;
        this.full = false;
    }
    // USART: TXEPT in the register with the clock source.
    if (this.kind == "usart" && address == this.r[1])
        return memory[address] & 0xFE | (now >= this.shiftEnd && this.waiting < 0 ? 1 : 0);
    // USCI: UCBUSY in the status register, which stands as the ninth.
    if (this.kind != "usart" && address == this.r[8])
        return now < this.shiftEnd || this.waiting >= 0 ? 1 : 0;
    return memory[address];
};
Uart.prototype.store = function(address, value) {
    this.advance();
    var held = this.isHeld();
    memory[address] = value;
    if (address == this.r[5])
        this.put(value);
    else if (address == this.r[0] && this.isHeld() && !held)
        this.flush();
};
Uart.prototype.pending = function() {
    return memory[this.r[6]] & memory[this.r[7]] & (this.rxBit | this.txBit);
};
Uart.prototype.loadWord = function(address, debug) {
    var pending = this.pending();
    var bit = (pending & this.rxBit) != 0 ? this.rxBit : pending;
    if (!debug)
        memory[this.r[7]] = memory[this.r[7]] & ~bit;
    return bit == 0 ? 0 : bit == this.rxBit ? 2 : 4;
};
Uart.prototype.storeWord = function(address, value) { };
Uart.prototype.due = function() {
    var pending = this.isHeld() ? 0 : this.pending();
    return (pending & this.rxBit) != 0 ? this.rxVector : pending != 0 ? this.txVector : 0;
};
/// The USART's flags are taken back when the interrupt is; the USCI's by an access of the buffer.
Uart.prototype.accept = function(vector) {
    if (this.kind != "usart")
        return;
    var bit = vector == this.rxVector ? this.rxBit : this.txBit;
    memory[this.r[7]] = memory[this.r[7]] & ~bit;
};
Uart.prototype.next = function() {
    if (this.isHeld())
        return Infinity;
    var time = this.waiting >= 0 ? this.shiftEnd : Infinity;
    if (!this.ended && !this.full && (memory[this.r[6]] & this.rxBit) != 0)
        time = least(time, this.nextReceive);
    return time;
};

// ADC10 and ADC12 with software start. A conversion takes some dozen clocks of about 5 MHz.

var CONVERSION_SECONDS = 0.000005;

function Adc(bits, control0, control1, result, channels, flags, enable, iv, vector) {
    this.bits = bits;
    this.control0 = control0;
    this.control1 = control1;
    this.result = result;    // of the first memory
    this.channels = channels; // of the first channel register, -1 for the ADC10
    this.flags = flags;      // -1 for the ADC10, whose flag and enable are in control0
    this.enable = enable;
    this.iv = iv;
    this.vector = vector;
    this.doneAt = Infinity;
    this.at = 0;
    wordAt[control0] = this;
    wordAt[control1] = this;
    if (bits == 10) {
        wordAt[result] = this;
    } else {
        wordRegisters(this, result, 16);
        wordAt[flags] = this;
        wordAt[enable] = this;
        wordAt[iv] = this;
    }
}
Adc.prototype.reset = function() {
    putWord(this.control0, 0);
    putWord(this.control1, 0);
    if (this.bits == 12) {
        putWord(this.flags, 0);
        putWord(this.enable, 0);
    }
    this.doneAt = Infinity;
};
Adc.prototype.conversionCycles = function() {
    return most(Math.ceil(CONVERSION_SECONDS * clock.mclk), 1);
};
Adc.prototype.sequence = function() { return getWord(this.control1) >> 1 & 3; };
Adc.prototype.begin = function() {
    if (this.doneAt != Infinity)
        return;
    this.at = getWord(this.control1) >> 12;
    this.doneAt = now + this.conversionCycles();
};
Adc.prototype.advance = function() {
    // A repeated conversion that nobody looks at needs to be done once only.
    for (var i = 0; i < 16 && now >= this.doneAt; i++)
        this.convert();
    if (now >= this.doneAt)
        this.doneAt = now + this.conversionCycles();
};
Adc.prototype.convert = function() {
    var full = this.bits == 12 ? 4095 : 1023, channel, last, again = (this.sequence() & 2) != 0;
    if (this.bits == 12) {
        var select = memory[this.channels + this.at];
        channel = select & 15;
        last = (this.sequence() & 1) == 0 || (select & 0x80) != 0 || this.at == 15;
    } else {
        channel = this.at;
        last = (this.sequence() & 1) == 0 || channel == 0;
    }
    var level = most(0, least(1, analogInput(channel)));
    var value = Math.round(level * full);
    if (this.bits == 12) {
        putWord(this.result + 2 * this.at, value);
        putWord(this.flags, getWord(this.flags) | 1 << this.at);
    } else {
        putWord(this.result, value);
        putWord(this.control0, getWord(this.control0) | 4);
    }
    if (last && !again) {
        this.doneAt = Infinity;
        putWord(this.control0, getWord(this.control0) & 0xFFFE);
        return;
    }
    if (last)
        this.at = getWord(this.control1) >> 12;
    else if ((this.sequence() & 1) != 0)
        this.at = this.bits == 12 ? this.at + 1 : this.at - 1;
    this.doneAt = this.doneAt + this.conversionCycles();
};
Adc.prototype.loadWord = function(address, debug) {
    if (!debug)
        this.advance();
    if (address == this.control1)
        return getWord(address) & 0xFFFE | (this.doneAt != Infinity ? 1 : 0);
    if (this.bits == 12 && address == this.iv)
        return this.vectorWord(debug);
    if (this.bits == 12 && address >= this.result && address < this.result + 32 && !debug)
        putWord(this.flags, getWord(this.flags) & ~(1 << (address - this.result) / 2));
    return getWord(address);
};
Adc.prototype.vectorWord = function(debug) {
    var due = getWord(this.flags) & getWord(this.enable);
    for (var i = 0; i < 16; i++)
        if ((due & 1 << i) != 0) {
            if (!debug)
                putWord(this.flags, getWord(this.flags) & ~(1 << i));
            return 6 + 2 * i;
        }
    return 0;
};
Adc.prototype.storeWord = function(address, value) {
    this.advance();
    if (address == this.iv)
        return;
    putWord(address, value);
    if (address != this.control0)
        return;
    if ((value & 3) == 3 && (value & 0x10) != 0)
        this.begin();
    else if ((value & 2) == 0 && (this.sequence() & 2) == 0)
        this.doneAt = Infinity;
};
Adc.prototype.due = function() {
    if (this.bits == 12)
        return (getWord(this.flags) & getWord(this.enable)) != 0 ? this.vector : 0;
    return (memory[this.control0] & 0x0C) == 0x0C ? this.vector : 0;
};
Adc.prototype.accept = function(vector) {
    if (this.bits == 10)
        memory[this.control0] = memory[this.control0] & 0xFB;
};
Adc.prototype.next = function() { return this.doneAt; };

// What the device files call.

function addClock(kind, registers) {
    clock = new Clock(kind, registers);
    var last = kind == "basic" ? 3 : registers.length;
    for (var i = 0; i < last; i++)
        if (kind == "ucs")
            wordAt[registers[i]] = clock;
        else
            byteAt[registers[i]] = clock;
    modules.push(clock);
}
function addPort(number, registers, vector, iv) {
    modules.push(new Port(number, registers, vector, iv));
}
function addTimer(isB, channels, control, counter, cctl, ccr, extension, iv, vector0, vector1,
                  overflowIV) {
    modules.push(new Timer(isB, channels, control, counter, cctl, ccr, extension, iv, vector0,
                           vector1, overflowIV));
}
function addWatchdog(control, enable, flags, vector, isA) {
    modules.push(new Watchdog(control, enable, flags, vector, isA));
}
function addUart(kind, registers, rxBit, txBit, rxVector, txVector, iv) {
    modules.push(new Uart(kind, registers, rxBit, txBit, rxVector, txVector, iv));
}
function addAdc(bits, control0, control1, result, channels, flags, enable, iv, vector) {
    modules.push(new Adc(bits, control0, control1, result, channels, flags, enable, iv, vector));
}

// What the simulator calls.

function advanceAll() {
    now = Simulator.cycleCount();
    for (var i = 0; i < modules.length; i++)
        modules[i].advance();
}

function runSchedule() {
    for (var i = 0; i < scheduleTimes.length; i++)
        if (scheduleTimes[i] <= now) {
            scheduleTimes[i] = Infinity;
            scheduleActions[i]();
        }
}

function loadByte(address, debug) {
    var handler = byteAt[address];
    if (handler != undefined)
        return handler.load(address, debug);
    handler = wordAt[address & ~1];
    if (handler != undefined)
        return handler.loadWord(address & ~1, debug) >> 8 * (address & 1) & 0xFF;
    return memory[address];
}

function storeByte(address, value) {
    var handler = byteAt[address];
    if (handler != undefined)
        return handler.store(address, value);
    var even = address & ~1;
    handler = wordAt[even];
    if (handler == undefined)
        memory[address] = value;
    else if ((address & 1) == 0)
        handler.storeWord(even, handler.loadWord(even, true) & 0xFF00 | value);
    else
        handler.storeWord(even, handler.loadWord(even, true) & 0xFF | value << 8);
}

function loadPeripheral(address, size, debug) {
    now = Simulator.cycleCount();
    if (!debug)
        runSchedule();
    var handler = wordAt[address];
    if (size == 2 && handler != undefined)
        return handler.loadWord(address, debug);
    if (size == 2)
        return loadByte(address, debug) | loadByte(address + 1, debug) << 8;
    return loadByte(address, debug);
}

function storePeripheral(address, size, value) {
    now = Simulator.cycleCount();
    runSchedule();
    var handler = wordAt[address];
    if (size == 2 && handler != undefined) {
        handler.storeWord(address, value);
    } else {
        storeByte(address, value & 0xFF);
        if (size == 2)
            storeByte(address + 1, value >> 8);
    }
}

function pollForInterrupts(cycles) {
    advanceAll();
    runSchedule();
    var vector = 0, owner, next = Infinity, i;
    for (i = 0; i < modules.length; i++) {
        var due = modules[i].due();
        if (due > vector) {
            vector = due;
            owner = modules[i];
        }
    }
    if (vector != 0) {
        owner.accept(vector);
        Simulator.quiet(0);
        return vector;
    }
    for (i = 0; i < modules.length; i++)
        next = least(next, modules[i].next());
    for (i = 0; i < scheduleTimes.length; i++)
        next = least(next, scheduleTimes[i]);
    Simulator.quiet(Math.ceil(next - now));
    return 0;
}

function reset() {
    now = Simulator.cycleCount();
    for (var i = 0; i < 0x1000; i++)
        memory[i] = 0;
    for (i = 0; i < modules.length; i++)
        modules[i].reset();
    scheduleTimes = [];
    scheduleActions = [];
    started();
}

function connect(name) {
    modules = [];
    wordAt = [];
    byteAt = [];
    for (var i = 0; i < 0x1000; i++) {
        memory[i] = 0;
        wordAt[i] = undefined;
        byteAt[i] = undefined;
    }
    if (!Simulator.load("msp430peripherals/" + name + ".js"))
        WScript.Echo("No peripherals are known for " + name);
    if (clock == undefined)
        addClock("fixed", []);
    connected();
    reset();
}
