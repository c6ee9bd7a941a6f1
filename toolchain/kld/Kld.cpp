#include "toolchain/kld/Kld.h"

#include "base/HException.h"
#include "objfile/msp430/TOBFMSP430Insn.h"
#include "toolchain/common/ObjectOutput.h"
#include "toolchain/common/ToolMain.h"
#include "toolchain/kld/Checksums.h"
#include "toolchain/kld/Encoder.h"
#include "toolchain/kld/InitTable.h"
#include "toolchain/kld/Layout.h"
#include "toolchain/kld/LinkImage.h"
#include "toolchain/kld/LinkInputs.h"
#include "toolchain/kld/MapFile.h"
#include "toolchain/kld/Optimizations.h"

namespace {

constexpr ToolDescription Description = {
    "kld", "[OPTION]... FILE... -o OUTPUT",
    "Links native objects and libraries (.kva) to an executable. What nothing refers to is left\n"
    "out."};

void link(const LinkerOptions& options, const std::vector<std::string>& files,
          Diagnostics& diagnostics)
{
    LinkInputs inputs(diagnostics);
    for (const std::string& file : files)
        inputs.add(file);
    LinkImage image(options, inputs, diagnostics);
    image.collect();
    if (diagnostics.failed())
        return;
    addInitTable(image);
    optimize(image);
    Checksums checksums(image);
    Layout layout(image);
    if (!layout.run() || diagnostics.failed())
        return;
    encodeImage(image);
    if (diagnostics.failed())
        return;
    checksums.compute();
    if (!options.mapFile.empty())
        writeMap(image, layout, options.mapFile);
    writeObjectFile(image.module(), options.output);
}

} // namespace

void kld(std::span<const std::string> words, Diagnostics& diagnostics)
{
    LinkerOptions options;
    const std::vector<ToolOption> table = linkerOptionTable(options);
    if (answerToolHelp(Description, table, words))
        return;
    const std::vector<std::string> files = parseToolOptions(words, table);
    if (files.empty())
        throw HException("no object file has been named");
    if (options.output.empty())
        throw HException("no output file; name it with -o");
    diagnostics.suppressWarnings(options.suppressWarnings);
    diagnostics.treatWarningsAsErrors(options.warningsAreErrors);
    g_msp430x = options.extendedCore;
    Pool pool;
    const CurrentPool current(&pool);
    link(options, files, diagnostics);
}
