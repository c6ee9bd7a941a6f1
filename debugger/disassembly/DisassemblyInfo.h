#pragma once

#include "objfile/query/FileMappings.h"

#include <QStringList>

/// One instruction as text.
struct DisassembledInstruction {
    QString text;
    unsigned length = 0;     ///< bytes
    bool isTransfer = false; ///< a jump, a call, a branch
    unsigned target = 0;     ///< where a transfer goes, as far as the instruction tells
};

/// The text of a stretch of memory, with the addresses that its lines show. Lines count from 1.
struct DisassemblyInfo {
    unsigned first = 0;
    unsigned last = 0; ///< exclusive
    QStringList lines;
    FileMappings mappings;

    bool holds(unsigned address) const { return address >= first && address < last; }
};
