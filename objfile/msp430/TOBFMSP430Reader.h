#pragma once

#include "objfile/format/TOBFReader.h"

class TOBFMSP430Reader final : public TOBFReader {
public:
    using TOBFReader::TOBFReader;

protected:
    TOBFInsn* makeInsn() override;
    const char* processorName() const override { return "MSP430"; }
};
