#include "objfile/loadfiles/LoadFileWriter.h"

#include "objfile/loadfiles/CodeBuffer.h"
#include "objfile/loadfiles/LoadFile.h"

void writeLoadFile(LoadFileInterface& loadFile, CodeBuffer& out)
{
    loadFile.sortLoadFileSections();
    for (const auto& section : loadFile.loadFileSections().sections()) {
        out.setAddress(section->address());
        const unsigned char* bytes = section->data(false);
        for (unsigned int i = 0; i < section->length(); ++i)
            out.addByte(bytes[i]);
    }
    out.endRecord(loadFile.hasEntryPoint() ? static_cast<unsigned int>(loadFile.entryPoint()) : 0);
}
