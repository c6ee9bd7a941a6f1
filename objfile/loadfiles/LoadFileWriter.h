#pragma once

class CodeBuffer;
class LoadFileInterface;

/// Writes the ordinary sections of a load file, by ascending address, and its entry point.
void writeLoadFile(LoadFileInterface& loadFile, CodeBuffer& out);
