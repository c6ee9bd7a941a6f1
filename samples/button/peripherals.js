// The board of this sample: the device's peripherals, and a user who presses the button.

Simulator.load("msp430peripherals.js");

function press() {
    setPin(1, 3, 0);
    schedule(5000, release);
}

function release() {
    setPin(1, 3, 1);
    schedule(20000, press);
}

started = function() {
    setPin(1, 3, 1);
    schedule(50000, press);
};
