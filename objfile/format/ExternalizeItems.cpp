// The records of items.

#include "objfile/format/TOBFWriter.h"
#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"

void TOBFInsn::writeCommon(TOBFWriter* writer)
{
    if (m_pc != -1) {
        writer->externalizeLiteral(static_cast<std::uint32_t>(m_pc));
        writer->externalizeTag(TAG_SETPC);
    }
    if (m_stackAdjustment != writer->stackAdjustment()) {
        writer->externalizeSigned(m_stackAdjustment);
        writer->externalizeTag(TAG_ADJUST_STACK);
        writer->setStackAdjustment(m_stackAdjustment);
    }
}

void TOBFInsn::writeBytes(TOBFWriter* writer)
{
    if (m_byteCount == 0)
        return;
    writer->externalizeString(reinterpret_cast<const char*>(m_bytes), m_byteCount);
    writer->externalizeTag(TAG_SETBYTES);
}

void TOBFInsn::writeInstrumentationData(TOBFWriter* writer)
{
    if (m_instrumentationData == 0)
        return;
    writer->externalizeSigned(m_instrumentationData);
    writer->externalizeTag(TAG_INSTRUMENTATION_DATA);
}

void TOBFDefBytesInsn::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    operand(0)->externalize(writer);
    writer->externalizeSigned(m_size);
    writer->externalizeTag(TAG_DEFBYTES);
    writeBytes(writer);
    writeInstrumentationData(writer);
}

void TOBFDefAddrInsn::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    operand(0)->externalize(writer);
    writer->externalizeTag(TAG_DEFADDR);
    writeBytes(writer);
    writeInstrumentationData(writer);
}

void TOBFInitInsn::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    writer->externalizeString(m_sectionName);
    writer->externalizeTag(TAG_INIT);
}

void TOBFLinkIf::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    operand(0)->externalize(writer);
    writer->externalizeTag(TAG_LINKIF);
}

void TOBFEndLinkIf::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    writer->externalizeTag(TAG_ENDLINKIF);
}

void TOBFAlignInsn::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    writer->externalizeSigned(m_alignment);
    writer->externalizeTag(TAG_ALIGN);
}

void TOBFOriginInsn::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    writer->externalizeSigned(m_origin);
    writer->externalizeTag(TAG_ORIGIN);
}

void TOBFFillInsn::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    writer->externalizeLiteral(m_fill);
    writer->externalizeSigned(m_count);
    writer->externalizeTag(TAG_FILL);
    writeInstrumentationData(writer);
}

void TOBFBreakInsn::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    writeInstrumentationData(writer);
}

void TOBFSpaceInsn::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    if (operand(0)->isConstant())
        writer->externalizeLiteral(static_cast<unsigned long long>(operand(0)->evaluate().value));
    else
        operand(0)->externalize(writer);
    writer->externalizeTag(TAG_SPACE);
    writeInstrumentationData(writer);
}

void TOBFLocalInsn::externalize(TOBFWriter* writer)
{
    operand(0)->externalize(writer);
    writer->externalizeTag(TAG_LOCAL_INSN);
}

void TOBFResetLocusInsn::externalize(TOBFWriter* writer)
{
    writer->externalizeTag(TAG_RESET_LOCUS);
}

std::int32_t TOBFMarker::markerNumber(TOBFWriter* writer)
{
    if (m_markerNumber == -1)
        m_markerNumber = writer->newMarker();
    return m_markerNumber;
}

void TOBFMarker::externalize(TOBFWriter* writer)
{
    writeCommon(writer);
    writer->externalizeString(name());
    writer->externalizeSigned(markerNumber(writer));
    writer->externalizeTag(TAG_MARKERDEF);
}

void TOBFFilename::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    writer->externalizeString(m_file);
    writer->externalizeTag(TAG_MKFILENAME);
    writeMakeAlias(writer);
}

/// A declaration's position stands between the records of its symbol, where no address belongs.
void TOBFLocus::externalize(TOBFWriter* writer)
{
    if (m_tag == TAG_LOCUS)
        writeCommon(writer);
    m_filename->externalize(writer);
    m_filename->writeReference(writer);
    writer->externalizeSigned(m_line);
    writer->externalizeTag(m_tag);
}
