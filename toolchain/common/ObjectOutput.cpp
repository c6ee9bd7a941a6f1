#include "toolchain/common/ObjectOutput.h"

#include "objfile/format/TOBFWriter.h"
#include "objfile/model/TOBFModule.h"
#include "toolchain/common/OutputFile.h"

void writeObjectFile(TOBFModule* module, const std::string& path)
{
    TOBFWriter writer;
    module->externalize(&writer, false);
    writer.finish();
    OutputFile out(path);
    out.write({reinterpret_cast<const char*>(writer.data().data()), writer.data().size()});
    out.commit();
}
