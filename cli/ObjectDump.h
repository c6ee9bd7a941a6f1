#pragma once

class TOBFModule;

/// The parts of a module as text on the standard output.
namespace ObjectDump {

void sections(TOBFModule* module);
void symbols(TOBFModule* module);
void types(TOBFModule* module);
void lines(TOBFModule* module);
void listing(TOBFModule* module);

} // namespace ObjectDump
