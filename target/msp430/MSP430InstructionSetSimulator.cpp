#include "target/msp430/MSP430InstructionSetSimulator.h"

template class MSP430Core<MSP430InstructionSetSimulator>;

MSP430InstructionSetSimulator::~MSP430InstructionSetSimulator() = default;

void MSP430InstructionSetSimulator::calla(unsigned target) { enterA(target); }

void MSP430InstructionSetSimulator::call(unsigned target) { enter(target); }
